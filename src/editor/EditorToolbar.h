#pragma once

class QAbstractButton;

namespace trimora::cutengine {
class RKImageCutView;
}

namespace trimora::editor {

/// The window's toolbar as far as the editor screen reaches into it. The window controller implements
/// it; the editor screen is handed one before its view loads. Main thread only.
class EditorToolbar {
 public:
    /// The Save button: off when a picture comes or goes, on from the first stroke.
    [[nodiscard]] virtual QAbstractButton* btnSave() = 0;

    /// Brings Back, Forward and Restore image in step with the history of the view.
    virtual void updateHistoryButtons(const cutengine::RKImageCutView& view) = 0;

 protected:
    ~EditorToolbar() = default;
};

}  // namespace trimora::editor
