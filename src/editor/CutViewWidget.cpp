#include "editor/CutViewWidget.h"

#include <QApplication>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPaintEvent>
#include <QPainter>
#include <chrono>
#include <cmath>

#include "editor/CutViewCursors.h"
#include "editor/CutViewInput.h"
#include "foundation/Log.h"
#include "util/BitmapImage.h"

namespace trimora::editor {

using cutengine::DragMode;
using cutengine::MouseButton;
using foundation::IntRect;

namespace {

constexpr std::chrono::milliseconds kFrameTime{16};

}  // namespace

CutViewWidget::CutViewWidget(const cutengine::RKImageCutView::Services& services, QWidget* parent)
    : QWidget(parent), view_(services, *this) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setAccessibleName(QStringLiteral("Picture"));
    nextFrame_.setSingleShot(true);
    nextFrame_.setTimerType(Qt::PreciseTimer);
    nextFrame_.setInterval(kFrameTime);
    nextFrame_.callOnTimeout(this, qOverload<>(&QWidget::update));
    qApp->installEventFilter(this);
}

CutViewWidget::~CutViewWidget() {
    qApp->removeEventFilter(this);
}

void CutViewWidget::setToolDragMode(DragMode mode) {
    toolMode_ = mode;
    perform(DragModeHeld{spaceHeld_ ? DragMode::pan : mode});
}

// ── Events in the cut view's own terms ─────────────────────────────────────────────────────────

void CutViewWidget::take(const CutViewEvent& event) {
    if (eventTaken_)
        eventTaken_(event);
    std::visit([this](const auto& each) { perform(each); }, event);
}

void CutViewWidget::perform(const MousePressed& event) {
    if (event.mouse.button == MouseButton::left)
        view_.mouseDown(event.mouse);
    else
        view_.rightMouseDown(event.mouse);
}

void CutViewWidget::perform(const PointerInside& event) {
    if (event.inside)
        view_.mouseEntered();
    else
        view_.mouseExited();
}

void CutViewWidget::perform(const cutengine::ScrollEvent& event) {
    view_.scrollWheel(event);
    placementWasTouched();
}

void CutViewWidget::placementWasTouched() const {
    if (placementTouched_)
        placementTouched_();
}

void CutViewWidget::perform(const cutengine::KeyEvent& event) {
    const float before = view_.brushAlphaValue();
    view_.keyDown(event);
    if (view_.brushAlphaValue() != before && brushSwapped_)
        brushSwapped_();
}

void CutViewWidget::perform(const DragModeHeld& event) {
    view_.setDragMode(event.mode);
    view_.updateCursor();
}

// ── What the cut view asks for ─────────────────────────────────────────────────────────────────

void CutViewWidget::openPicture(cutengine::RKImageCutView& /*sender*/) {
    if (openRequested_)
        openRequested_();
}

void CutViewWidget::setCursor(const cutengine::Cursor& cursor) {
    QWidget::setCursor(toolkitCursor(cursor, scaleFactor()));
}

void CutViewWidget::setNeedsDisplay(const foundation::Rect& area) {
    update(widgetRect(area, height()));
}

double CutViewWidget::scaleFactor() const {
    return devicePixelRatioF();
}

void CutViewWidget::historyCannotBeKept(const std::string& reason) {
    if (historyTrouble_)
        historyTrouble_(reason);
}

void CutViewWidget::memoryIsMissing() {
    if (memoryMissing_)
        memoryMissing_();
}

// ── Screen ─────────────────────────────────────────────────────────────────────────────────────

void CutViewWidget::fitFrame() {
    const IntRect whole = devicePixels(rect(), scaleFactor());
    if (frameScale_ == scaleFactor() && frame_.width() == whole.width && frame_.height() == whole.height)
        return;
    auto fresh = foundation::Bitmap::create(whole.width, whole.height, foundation::AlphaMode::opaque);
    if (!fresh) {
        foundation::log::warning("no frame buffer: %s", fresh.error().message.c_str());
        frame_ = {};
        return;
    }
    frame_ = std::move(*fresh);
    if (frameScale_ != scaleFactor()) {
        frameScale_ = scaleFactor();
        view_.updateCursor();
    }
}

void CutViewWidget::paintEvent(QPaintEvent* event) {
    // Asked before drawing: a move that ends meanwhile still gets the frame that shows its end.
    const bool moving = view_.isAnimating();
    fitFrame();
    if (frame_.isEmpty())
        return;
    QPainter painter(this);
    // Whole device pixels are copied, whatever the scale factor: no sample is drawn twice or blended.
    painter.scale(1 / frameScale_, 1 / frameScale_);
    for (const QRect& exposed : event->region()) {
        const IntRect area = intersected(devicePixels(exposed, frameScale_), frame_.view().bounds());
        view_.drawRect(frame_.view(), area);
        painter.drawImage(QPoint(area.x, area.y), util::sharedImage(subview(frame_.view(), area)));
    }
    if (moving)
        nextFrame_.start();
}

void CutViewWidget::resizeEvent(QResizeEvent* /*event*/) {
    view_.setViewSize({static_cast<double>(width()), static_cast<double>(height())});
    placementWasTouched();
}

// ── Mouse ──────────────────────────────────────────────────────────────────────────────────────

cutengine::MouseEvent CutViewWidget::mouseEvent(const QMouseEvent& event, MouseButton button) {
    const QPointF moved = event.position() - previousPlace_;
    previousPlace_ = event.position();
    return {.button = button,
            .location = viewPoint(event.position(), height()),
            .deltaX = moved.x(),
            .deltaY = moved.y()};
}

void CutViewWidget::mousePressEvent(QMouseEvent* event) {
    const auto button = mouseButton(event->button());
    if (!button || view_.isTracking())
        return;
    holdModifiers(event->modifiers());
    gestureButton_ = *button;
    previousPlace_ = event->position();
    take(MousePressed{mouseEvent(*event, *button)});
}

void CutViewWidget::mouseMoveEvent(QMouseEvent* event) {
    holdModifiers(event->modifiers());
    setPointerInside(rect().contains(event->position().toPoint()));
    const cutengine::MouseEvent move = mouseEvent(*event, gestureButton_);
    if (view_.isTracking())
        take(MouseDragged{move});
}

void CutViewWidget::mouseReleaseEvent(QMouseEvent* event) {
    const auto button = mouseButton(event->button());
    if (button && view_.isTracking())
        take(MouseReleased{mouseEvent(*event, *button)});
}

void CutViewWidget::enterEvent(QEnterEvent* /*event*/) {
    setPointerInside(true);
}

void CutViewWidget::leaveEvent(QEvent* /*event*/) {
    setPointerInside(false);
}

void CutViewWidget::setPointerInside(bool inside) {
    if (inside == pointerInside_)
        return;
    pointerInside_ = inside;
    take(PointerInside{inside});
}

void CutViewWidget::wheelEvent(QWheelEvent* event) {
    holdModifiers(event->modifiers());
    const double delta = scrollDelta(*event);
    // A movement that is sideways alone, and the marks round a trackpad's, say nothing to the view.
    if (delta != 0)
        take(cutengine::ScrollEvent{viewPoint(event->position(), height()), delta});
}

bool CutViewWidget::event(QEvent* event) {
    if (event->type() == QEvent::NativeGesture) {
        pinch(static_cast<const QNativeGestureEvent&>(*event));
        return true;
    }
    return QWidget::event(event);
}

void CutViewWidget::pinch(const QNativeGestureEvent& gesture) {
    if (gesture.gestureType() != Qt::ZoomNativeGesture || view_.isTracking())
        return;
    // As a wheel that zooms, which it does not while the brush is to be sized.
    if (held_.option)
        take(cutengine::Modifiers{.option = false, .command = held_.command});
    take(
        cutengine::ScrollEvent{viewPoint(gesture.position(), height()), scrollDeltaOfPinch(gesture.value())});
    if (held_.option)
        take(held_);
}

// ── Keyboard ───────────────────────────────────────────────────────────────────────────────────

bool CutViewWidget::eventFilter(QObject* watched, QEvent* event) {
    // A key goes to the window first and then to the widgets in it; once is enough.
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (key && watched->isWindowType())
        watchKey(static_cast<const QKeyEvent&>(*event));
    return false;
}

void CutViewWidget::watchKey(const QKeyEvent& event) {
    holdModifiers(event.modifiers());
    const auto code = keyCode(event);
    if (event.type() != QEvent::KeyPress || event.isAutoRepeat() || !code)
        return;
    take(cutengine::KeyEvent{*code, held_});
}

void CutViewWidget::holdModifiers(Qt::KeyboardModifiers held) {
    const cutengine::Modifiers now = modifiers(held);
    if (now == held_)
        return;
    held_ = now;
    take(now);
}

void CutViewWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space)
        holdSpace(true);
    else
        QWidget::keyPressEvent(event);
}

void CutViewWidget::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat())
        holdSpace(false);
    else
        QWidget::keyReleaseEvent(event);
}

void CutViewWidget::holdSpace(bool held) {
    if (held == spaceHeld_)
        return;
    spaceHeld_ = held;
    take(DragModeHeld{held ? DragMode::pan : toolMode_});
}

// ── Losing the person ──────────────────────────────────────────────────────────────────────────

void CutViewWidget::focusOutEvent(QFocusEvent* event) {
    endGesture();
    holdSpace(false);
    QWidget::focusOutEvent(event);
}

void CutViewWidget::hideEvent(QHideEvent* /*event*/) {
    letGo();
    setPointerInside(false);
}

void CutViewWidget::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ActivationChange && !isActiveWindow())
        letGo();
    QWidget::changeEvent(event);
}

void CutViewWidget::endGesture() {
    if (view_.isTracking())
        take(MouseReleased{{.button = gestureButton_, .location = viewPoint(previousPlace_, height())}});
}

void CutViewWidget::letGo() {
    endGesture();
    holdSpace(false);
    holdModifiers(Qt::NoModifier);
}

}  // namespace trimora::editor
