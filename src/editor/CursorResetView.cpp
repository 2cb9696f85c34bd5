#include "editor/CursorResetView.h"

#include "controls/ControlNotifications.h"

namespace trimora::editor {

void CursorResetView::enterEvent(QEnterEvent* event) {
    QWidget::enterEvent(event);
    setCursor(Qt::ArrowCursor);
}

void CursorResetView::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    notifications_.post(controls::notifications::kNeedsCursorUpdate);
}

}  // namespace trimora::editor
