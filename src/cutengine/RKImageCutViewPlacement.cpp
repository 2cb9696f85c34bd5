// The cut view's zoom and position: one transform shared by the picture and what is behind it.

#include "cutengine/RKImageCutView.h"
#include "cutengine/ViewPlacement.h"
#include "foundation/Log.h"

namespace trimora::cutengine {

using foundation::AffineTransform;
using foundation::Point;
using foundation::Size;

namespace {

constexpr double kZoomSeconds = 0.1;
constexpr double kLimitSeconds = 0.2;

}  // namespace

bool RKImageCutView::hasPlacedPicture() const {
    return imageLayer_ && !imageLayer_->size().isEmpty();
}

AffineTransform RKImageCutView::transform() const {
    return imageLayer_ ? imageLayer_->transform() : AffineTransform{};
}

void RKImageCutView::scaleImg(Point pointer, double deltaY) {
    if (!hasPlacedPicture())
        return;
    const AffineTransform before = imageLayer_->transform();
    const AffineTransform scaled = placement::zoomed(before, placement::scrollFactor(deltaY));
    const AffineTransform placed = placement::anchored(scaled, before, pointer);
    foundation::log::debug("trans.tx %f", placed.tx);
    foundation::log::debug("trans.ty %f", placed.ty);
    foundation::log::debug("newScale %f", placement::zoomLevel(placed));
    foundation::log::debug("anchor2 %f", pointer.x);
    animateLayers(placed, kZoomSeconds);
    correctImagePositionWithFiting(deltaY < 0);
}

void RKImageCutView::setScale(float factor) {
    if (!hasPlacedPicture())
        return;
    const AffineTransform before = imageLayer_->transform();
    const Point centre{viewSize_.width / 2, viewSize_.height / 2};
    imageLayer_->removeAllAnimations();
    imageLayer_->setTransform(placement::anchored(placement::zoomed(before, factor), before, centre));
    needsDisplay();
}

void RKImageCutView::correctImagePositionWithFiting(bool fit) {
    if (!hasPlacedPicture())
        return;
    const Size picture = imageLayer_->size();
    if (!imageFit_ && fit) {
        const Size displayed = placement::displayedSize(imageLayer_->transform(), picture);
        imageFit_ = viewSize_.width >= displayed.width && viewSize_.height >= displayed.height;
    }
    if (imageFit_)
        animateLayers(placement::fitted(picture, viewSize_), kZoomSeconds);
    else
        limitDrag();
}

void RKImageCutView::limitDrag() {
    if (!hasPlacedPicture())
        return;
    const Size picture = imageLayer_->size();
    const AffineTransform limited = placement::limited(imageLayer_->transform(), picture, viewSize_);
    const Size displayed = placement::displayedSize(limited, picture);
    foundation::log::debug("%f %f", displayed.width, displayed.height);
    if (displayed.height != 0) {
        const auto SootnX = static_cast<float>(2 * limited.tx / displayed.width);
        const auto SootnY = static_cast<float>(2 * limited.ty / displayed.height);
        const auto SizeW = static_cast<float>(viewSize_.width / displayed.width);
        const auto SizeH = static_cast<float>(viewSize_.height / displayed.height);
        foundation::log::debug("SootnX %f", static_cast<double>(SootnX));
        if (delegate_ != nullptr)
            delegate_->RectBorderForMiniMap(this, SootnX, SootnY, SizeW, SizeH);
    }
    foundation::log::debug("%f %f", viewSize_.width, viewSize_.height);
    foundation::log::debug("%f %f", limited.tx, limited.ty);
    animateLayers(limited, kLimitSeconds);
}

void RKImageCutView::moveBy(Point way) {
    if (!hasPlacedPicture())
        return;
    imageFit_ = false;
    AffineTransform moved = imageLayer_->transform();
    moved.tx += way.x;
    moved.ty += way.y;
    placeLayers(moved);
    correctImagePositionWithFiting(false);
    removeAnimations();
}

void RKImageCutView::setViewSize(Size size) {
    viewSize_ = size;
    correctImagePositionWithFiting(true);
    if (imageLayer_)
        removeAnimations();
    needsDisplay();
}

void RKImageCutView::placeLayers(const AffineTransform& transform) {
    imageLayer_->setTransform(transform);
    bluredLayer_->setTransform(transform);
    needsDisplay();
}

void RKImageCutView::animateLayers(const AffineTransform& transform, double duration) {
    const double now = services_.clock.seconds();
    imageLayer_->animateTransform(transform, now, duration);
    bluredLayer_->animateTransform(transform, now, duration);
    needsDisplay();
}

void RKImageCutView::removeAnimations() {
    imageLayer_->removeAllAnimations();
    bluredLayer_->removeAllAnimations();
}

bool RKImageCutView::isAnimating() const {
    if (!imageLayer_)
        return false;
    const double now = services_.clock.seconds();
    return imageLayer_->isAnimating(now) || bluredLayer_->isAnimating(now);
}

void RKImageCutView::needsDisplay() {
    host_.setNeedsDisplay({0, 0, viewSize_.width, viewSize_.height});
}

}  // namespace trimora::cutengine
