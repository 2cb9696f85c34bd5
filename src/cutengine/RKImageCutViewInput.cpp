// The cut view's gestures and keys: what a press means, and what each movement of it does.

#include <algorithm>

#include "cutengine/RKImageCutView.h"

namespace trimora::cutengine {

using foundation::Point;
using foundation::Rect;

void RKImageCutView::mouseDown(const MouseEvent& event) {
    if (tracking_)
        return;
    dragging_ = pressPans();
    cutting_ = !dragging_;
    updateCursor();
    if (!image_) {
        dragging_ = cutting_ = false;
        if (event.button == MouseButton::left)
            host_.openPicture(*this);
        return;
    }
    beginGesture(event);
}

void RKImageCutView::rightMouseDown(const MouseEvent& event) {
    if (!image_ || tracking_)
        return;
    if (!dragging_ && !commandPressed_) {
        commandPressed_ = true;
        rightButtonSetCommand_ = true;
    }
    mouseDown(event);
}

void RKImageCutView::beginGesture(const MouseEvent& event) {
    tracking_ = true;
    if (delegate_ != nullptr)
        delegate_->cutViewWillStartDraw(this);
    continueGesture(event);
}

void RKImageCutView::mouseDragged(const MouseEvent& event) {
    if (tracking_)
        continueGesture(event);
}

void RKImageCutView::continueGesture(const MouseEvent& event) {
    if (dragging_)
        moveBy({event.deltaX, -event.deltaY});
    else if (cutting_)
        layStamps(event.location);
}

void RKImageCutView::mouseUp(const MouseEvent& /*event*/) {
    if (!tracking_)
        return;
    tracking_ = false;
    finishGestureWork();
    cutting_ = dragging_ = false;
    if (delegate_ != nullptr)
        delegate_->cutViewDidEndDraw(this);
    updateCursor();
}

void RKImageCutView::finishGestureWork() {
    stroke_.end();
    if (cutting_) {
        painter_.appendEndOfStroke();
        updateMap();
    }
    const bool rightButton = std::exchange(rightButtonSetCommand_, false);
    if (dragging_) {
        limitDrag();
        commandPressed_ = false;
    } else if (rightButton) {
        commandPressed_ = keyboardCommand_;
    }
}

void RKImageCutView::layStamps(Point pointer) {
    const auto toPicture = imageLayer_->toView(imageLayer_->transform()).inverted();
    if (!toPicture)
        return;
    const double d = brushDiameter_;
    const Point corner = toPicture->apply({pointer.x - d / 2, pointer.y - d / 2});
    const Rect stamp{corner.x, corner.y, toPicture->a * d, toPicture->d * d};
    const std::vector<Rect> stamps = stroke_.addSample(stamp, brushHardness_);
    if (stamps.empty())
        return;
    painter_.append(stamps, paintSettings());
    updateMap();
}

PaintSettings RKImageCutView::paintSettings() const {
    Colour fill{0, 0, 0, brushAlphaValue_};
    if (colorMode_)
        fill = brushColor_.value_or(Colour{0, 0, 0, 0});
    return {colorMode_, premultipliedPixel(fill), brushHardness_};
}

void RKImageCutView::mouseEntered() {
    mouseIn_ = true;
    updateCursor();
}

void RKImageCutView::mouseExited() {
    mouseIn_ = false;
    updateCursor();
}

void RKImageCutView::scrollWheel(const ScrollEvent& event) {
    if (tracking_)
        return;
    if (altPressed_) {
        setBrushDiameter(static_cast<float>(brushDiameter_ + event.deltaY));
        return;
    }
    imageFit_ = false;
    scaleImg(event.location, event.deltaY);
}

void RKImageCutView::keyDown(const KeyEvent& event) {
    const bool swaps = event.keyCode == kKeyCodeI && (event.modifiers.command || event.modifiers.option);
    if (swaps)
        brushAlphaValue_ = 1 - brushAlphaValue_;
}

void RKImageCutView::flagsChanged(Modifiers held) {
    altPressed_ = held.option;
    commandPressed_ = keyboardCommand_ = held.command;
    updateCursor();
}

}  // namespace trimora::cutengine
