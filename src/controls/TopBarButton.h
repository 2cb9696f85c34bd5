#pragma once

#include "controls/LabelButton.h"

namespace trimora::controls {

/// A plain button of the toolbar: nothing but image and title until the pointer comes.
class TopBarButton final : public LabelButton {
 public:
    explicit TopBarButton(const ControlContext& context, QWidget* parent = nullptr);

 protected:
    void showState() override;
};

}  // namespace trimora::controls
