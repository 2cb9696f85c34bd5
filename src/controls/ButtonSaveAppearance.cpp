#include "controls/ButtonSaveAppearance.h"

#include "controls/ControlNotifications.h"

namespace trimora::controls {

ButtonSaveAppearance::ButtonSaveAppearance(const ControlContext& context, QWidget* parent)
    : CallToActionButton(context, notifications::kSavePicture, parent) {}

}  // namespace trimora::controls
