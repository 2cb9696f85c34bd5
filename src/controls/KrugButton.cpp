#include "controls/KrugButton.h"

#include <QContextMenuEvent>
#include <QMouseEvent>

#include "controls/Motion.h"

namespace trimora::controls {

void KrugButton::showMenu() {
    timerHold_.reset();
    setDown(false);
    if (onShowMenu)
        onShowMenu(*this);
}

void KrugButton::mouseMoved(const QPointF& position) {
    timerHold_.reset();
    if (eventIsActive(position)) {
        timerHold_ =
            context().scheduler.after(motion::kHoldForMenu, context().mainQueue, [this] { showMenu(); });
    }
    ButtonAppearance::mouseMoved(position);
}

void KrugButton::mouseExited() {
    timerHold_.reset();
    ButtonAppearance::mouseExited();
}

void KrugButton::mousePressEvent(QMouseEvent* event) {
    ButtonAppearance::mousePressEvent(event);
    if (event->button() == Qt::RightButton && eventIsActive(event->position()))
        showMenu();
}

void KrugButton::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Keyboard)
        showMenu();
    event->accept();  // the right button has opened the menu at its press
}

}  // namespace trimora::controls
