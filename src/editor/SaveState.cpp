#include "editor/SaveState.h"

#include <QAbstractButton>

#include "editor/EditorToolbar.h"

namespace trimora::editor {

bool SaveState::isUnsaved() const {
    const QAbstractButton* const save = toolbar_ != nullptr ? toolbar_->btnSave() : nullptr;
    return save != nullptr && save->isEnabled();
}

void SaveState::set(float flag, bool enabled) {
    saveEnabled_ = flag;
    panelButton_.setEnabled(enabled);
    if (QAbstractButton* const save = toolbar_ != nullptr ? toolbar_->btnSave() : nullptr)
        save->setEnabled(enabled);
}

}  // namespace trimora::editor
