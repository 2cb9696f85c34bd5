#include "controls/LayerButton.h"

#include <QEnterEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "controls/ControlNotifications.h"
#include "controls/Icons.h"
#include "controls/Metrics.h"
#include "controls/Motion.h"
#include "controls/Palette.h"
#include "controls/PathDrawing.h"

namespace trimora::controls {

using cutengine::BezierPath;

LayerButton::LayerButton(const ControlContext& context, Hover hover, QWidget* parent)
    : QAbstractButton(parent), context_(context), layers_(*this, context), hover_(hover) {
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    setIconSize(QSize(metrics::kToolIcon, metrics::kToolIcon));
}

LayerButton::~LayerButton() = default;

bool LayerButton::eventIsActive(const QPointF& position) const {
    return painterPath(clickPath_).contains(QPointF(position.x(), height() - position.y()));
}

bool LayerButton::hitButton(const QPoint& position) const {
    return eventIsActive(QPointF(position) + QPointF(0.5, 0.5));
}

double LayerButton::displayedScale() const {
    return layers_.root().presentation(layers_.now()).scale;
}

void LayerButton::setImage(const QString& name) {
    image_ = name;
    setIcon(controls::icon(name));
}

void LayerButton::setAlternateImage(const QString& name) {
    alternateImage_ = name;
    alternateIcon_ = controls::icon(name);
    update();
}

QIcon LayerButton::shownImage() const {
    return isDown() && !alternateIcon_.isNull() ? alternateIcon_ : icon();
}

double LayerButton::shownImageOpacity() const {
    return isDown() && alternateIcon_.isNull() ? palette::kPressedImageOpacity : 1;
}

QColor LayerButton::veilColor() const {
    if (isDown())
        return palette::kPressedVeil;
    return mouseIn_ ? palette::kHoverVeil : QColor(Qt::transparent);
}

void LayerButton::mouseMoved(const QPointF& position) {
    if (!eventIsActive(position)) {
        mouseExited();
        return;
    }
    if (std::exchange(mouseIn_, true))
        return;
    mouseEnteredAnimation();
    setCursor(Qt::ArrowCursor);
}

void LayerButton::mouseExited() {
    mouseIn_ = false;
    mouseExitedAnimation();
    context_.notifications.post(notifications::kNeedsCursorUpdate);
}

void LayerButton::mouseEnteredAnimation() {
    if (hover_ == Hover::grows)
        scaleTo(motion::kHoverScale, motion::kGrowTimePerScale, motion::kGrowCurve);
    update();
}

void LayerButton::mouseExitedAnimation() {
    if (hover_ == Hover::grows)
        scaleTo(1, motion::kShrinkTimePerScale, TimingCurve::standard());
    update();
}

void LayerButton::scaleTo(double scale, double timePerScale, const TimingCurve& curve) {
    const double from = displayedScale();
    // Shrinking counts the way back, growing the way still to go; a spring beyond its end has none.
    const double way = std::max(scale == 1 ? from - scale : scale - from, 0.0);
    layers_.root().addAnimation(
        PropertyAnimation{.keyPath = KeyPath::transformScale,
                          .from = from,
                          .to = scale,
                          .timing = {.duration = way * timePerScale, .fillForwards = true},
                          .curve = curve},
        "scale", layers_.now());
}

void LayerButton::changeEvent(QEvent* event) {
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled() && mouseIn_)
        mouseExited();
}

void LayerButton::hideEvent(QHideEvent* event) {
    QAbstractButton::hideEvent(event);
    if (mouseIn_)
        mouseExited();
}

void LayerButton::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    if (isEnabled())
        mouseMoved(event->position());
}

void LayerButton::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    mouseExited();
}

void LayerButton::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() == Qt::NoButton)
        mouseMoved(event->position());
    QAbstractButton::mouseMoveEvent(event);
    event->accept();
}

void LayerButton::mousePressEvent(QMouseEvent* event) {
    QAbstractButton::mousePressEvent(event);
    event->accept();  // what lies under the button's corners takes no press that was meant for it
}

void LayerButton::mouseReleaseEvent(QMouseEvent* event) {
    QAbstractButton::mouseReleaseEvent(event);
    event->accept();
}

void LayerButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void LayerButton::focusInEvent(QFocusEvent* event) {
    QAbstractButton::focusInEvent(event);
    const auto reason = event->reason();
    reachedByKeyboard_ =
        reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
    update();
}

void LayerButton::focusOutEvent(QFocusEvent* event) {
    QAbstractButton::focusOutEvent(event);
    reachedByKeyboard_ = false;
    update();
}

void LayerButton::refit() {
    layers_.fitToWidget();
    clickPath_ = layOut(layers_.root().bounds());
    update();
}

void LayerButton::resizeEvent(QResizeEvent* event) {
    QAbstractButton::resizeEvent(event);
    refit();
}

void LayerButton::paintEvent(QPaintEvent* /*event*/) {
    showState();
    layers_.root().opacity = isEnabled() ? 1 : palette::kDisabledOpacity;
    QPainter painter(this);
    layers_.paint(painter);
    if (!reachedByKeyboard_)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(0, height());
    painter.scale(1, -1);
    BezierPath ring = clickPath_;
    ring.lineWidth = metrics::kFocusLine;
    strokeInside(painter, ring, palette::kFocus);
}

}  // namespace trimora::controls
