#pragma once

#include "controls/CallToActionButton.h"

namespace trimora::controls {

/// The call to open a picture: posts "openPictureWithHelpNotification". Logs "enter" and "exit" as the
/// pointer comes and goes.
class ButtonOpenAppereance final : public CallToActionButton {
 public:
    explicit ButtonOpenAppereance(const ControlContext& context, QWidget* parent = nullptr);

 protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
};

}  // namespace trimora::controls
