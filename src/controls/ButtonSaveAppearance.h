#pragma once

#include "controls/CallToActionButton.h"

namespace trimora::controls {

/// The call to save the result: posts "savePictureWithHelpNotification".
class ButtonSaveAppearance final : public CallToActionButton {
 public:
    explicit ButtonSaveAppearance(const ControlContext& context, QWidget* parent = nullptr);
};

}  // namespace trimora::controls
