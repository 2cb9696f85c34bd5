#include "controls/CustomViewWithButton.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "controls/AccessFactory.h"
#include "controls/ArrowKeys.h"
#include "controls/ControlNotifications.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "foundation/Log.h"

namespace trimora::controls {
namespace {

class PanelAccess final : public QAccessibleWidget {
 public:
    explicit PanelAccess(CustomViewWithButton& panel) : QAccessibleWidget(&panel, QAccessible::Pane) {}
};

}  // namespace

CustomViewWithButton::CustomViewWithButton(const ControlContext& context, QWidget* parent)
    : QWidget(parent),
      notifications_(context.notifications),
      observation_(context.notifications.observe(notifications::kAddViewWithButton,
                                                 [this](const auto&) { unHideView(); })) {
    installAccess<CustomViewWithButton, PanelAccess>();
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(tr("Floating panel, moved by the arrow keys"));
    auto* const frame = new QVBoxLayout(this);
    frame->setContentsMargins(metrics::kGap, metrics::kGap, metrics::kGap, metrics::kGap);
    hide();
}

void CustomViewWithButton::setButton(QAbstractButton* button) {
    delete clickedObject_;
    clickedObject_ = button;
    layout()->addWidget(button);
    adjustSize();
}

void CustomViewWithButton::unHideView() {
    show();
    raise();
}

QPointF CustomViewWithButton::viewCenter() const {
    return QRectF(geometry()).center();
}

void CustomViewWithButton::mousePressEvent(QMouseEvent* event) {
    if (!isActiveWindow())
        foundation::log::debug("Got first mouse event");
    lastDragLocation_ = event->globalPosition().toPoint();
}

void CustomViewWithButton::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const QPoint location = event->globalPosition().toPoint();
    move(pos() + location - lastDragLocation_);
    lastDragLocation_ = location;
}

void CustomViewWithButton::keyPressEvent(QKeyEvent* event) {
    const QPoint way = arrowStep(*event);
    if (way.isNull())
        QWidget::keyPressEvent(event);
    else
        move(pos() + way);
}

void CustomViewWithButton::enterEvent(QEnterEvent* event) {
    QWidget::enterEvent(event);
    mouseIn_ = true;
    setCursor(Qt::ArrowCursor);
}

void CustomViewWithButton::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    mouseIn_ = false;
    notifications_.post(notifications::kNeedsCursorUpdate);
}

void CustomViewWithButton::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void CustomViewWithButton::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

void CustomViewWithButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(palette::kRaised);
    painter.setPen(QPen(hasFocus() ? palette::kFocus : palette::kLine, 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), metrics::kCornerRadius,
                            metrics::kCornerRadius);
}

}  // namespace trimora::controls
