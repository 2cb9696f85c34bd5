#include "controls/ButtonOpenAppereance.h"

#include "controls/ControlNotifications.h"
#include "foundation/Log.h"

namespace trimora::controls {

ButtonOpenAppereance::ButtonOpenAppereance(const ControlContext& context, QWidget* parent)
    : CallToActionButton(context, notifications::kOpenPicture, parent) {}

void ButtonOpenAppereance::enterEvent(QEnterEvent* event) {
    foundation::log::debug("enter");
    CallToActionButton::enterEvent(event);
}

void ButtonOpenAppereance::leaveEvent(QEvent* event) {
    foundation::log::debug("exit");
    CallToActionButton::leaveEvent(event);
}

}  // namespace trimora::controls
