// What shows behind the cut-out picture, and the result that both make together.

#include <utility>

#include "cutengine/RKImageCutView.h"
#include "cutengine/imageutil/FilterImage.h"
#include "cutengine/imageutil/PictureActions.h"

namespace trimora::cutengine {

using foundation::Pixel;

PicturePtr RKImageCutView::getResult() {
    const auto rows = resultRows();
    return rows ? rows->whole() : nullptr;
}

std::shared_ptr<const ResultRows> RKImageCutView::resultRows() {
    if (!image_ || !image_->isValid())
        return nullptr;
    const PicturePtr whole =
        resize(image_, image_->pixelWidth(), image_->pixelHeight(), services_.queues.workers());
    if (!whole)
        return nullptr;
    return std::make_shared<const ResultRows>(whole->bestRepresentation(), mask(), resultBackground(),
                                              services_.queues.workers());
}

/// What the background plane's layer shows, or will show when its blur is done.
ResultBackground RKImageCutView::resultBackground() {
    using Kind = ResultBackground::Kind;
    if (bluredLayer_->isHidden())
        return {};
    if (!blurPending_) {
        const LayerContents contents = bluredLayer_->contents();
        if (const auto* colour = std::get_if<Pixel>(&contents))
            return {Kind::colour, *colour, nullptr};
        const auto* blurred = std::get_if<std::shared_ptr<const DrawablePicture>>(&contents);
        if (blurred == nullptr)
            return {};
        if ((*blurred)->picture)
            return {Kind::picture, {}, (*blurred)->picture->bestRepresentation()};
    }
    const BitmapPtr sharp = image_->bestRepresentation();
    if (sharp->width() == image_->pixelWidth() && sharp->height() == image_->pixelHeight())
        return {Kind::blurred, {}, sharp};
    const PicturePtr copy = blurredCopy(image_, services_.queues.workers());
    return copy ? ResultBackground{Kind::picture, {}, copy->bestRepresentation()} : ResultBackground();
}

void RKImageCutView::setBlurOn(bool on) {
    blurOn_ = on;
    if (bluredLayer_)
        bluredLayer_->setHidden(false);
    drawBackground();
    needsDisplay();
}

void RKImageCutView::setColorOn(bool on) {
    colorOn_ = on;
    if (!on)
        return;
    if (bluredLayer_)
        bluredLayer_->setHidden(true);
    needsDisplay();
}

void RKImageCutView::drawBackground() {
    if (!bluredLayer_)
        return;
    ++blurRequest_;
    blurPending_ = false;
    if (blurOn_) {
        startBlur();
        return;
    }
    bluredLayer_->setContents(brushColor_ ? premultipliedPixel(*brushColor_) : Pixel{});
    needsDisplay();
}

void RKImageCutView::startBlur() {
    if (!image_)
        return;
    blurPending_ = true;
    services_.queues.backgroundQueue().async([this, alive = std::weak_ptr(alive_), picture = image_,
                                              request = blurRequest_, &main = services_.queues.mainQueue(),
                                              &workers = services_.queues.workers()] {
        const auto blur = [&] {
            auto blurred = blurredDrawable(picture, workers);
            main.async([this, alive, request, blurred = std::move(blurred)]() mutable {
                if (!alive.expired())
                    showBlur(request, std::move(blurred));
            });
        };
        doQueued(blur, main, *this, alive);
    });
}

void RKImageCutView::showBlur(std::uint64_t request, std::shared_ptr<const DrawablePicture> blurred) {
    if (request != blurRequest_)
        return;
    blurPending_ = false;
    bluredLayer_->setContents(blurred ? LayerContents(std::move(blurred)) : LayerContents());
    needsDisplay();
}

}  // namespace trimora::cutengine
