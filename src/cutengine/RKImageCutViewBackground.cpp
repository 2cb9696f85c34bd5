// What shows behind the cut-out picture, and the result that both make together.

#include <utility>

#include "cutengine/RKImageCutView.h"
#include "cutengine/imageutil/FilterImage.h"
#include "cutengine/imageutil/PictureActions.h"
#include "cutengine/kernels/ResultComposer.h"
#include "foundation/Log.h"

namespace trimora::cutengine {

using foundation::Bitmap;
using foundation::Pixel;
using foundation::Result;

namespace {

/// What the background plane's layer shows, as the composer takes it. The contents are borrowed.
kernels::Background backgroundOf(const Layer& layer, const LayerContents& contents) {
    kernels::Background background;
    if (layer.isHidden())
        return background;
    if (const auto* colour = std::get_if<Pixel>(&contents)) {
        background.kind = kernels::Background::Kind::colour;
        background.colour = *colour;
    } else if (const auto* blurred = std::get_if<std::shared_ptr<const DrawablePicture>>(&contents)) {
        background.kind = kernels::Background::Kind::picture;
        background.picture = (*blurred)->pyramid.level(0);
    }
    return background;
}

}  // namespace

PicturePtr RKImageCutView::getResult() {
    if (!image_ || !image_->isValid())
        return nullptr;
    finishPendingBlur();
    const int width = image_->pixelWidth();
    const int height = image_->pixelHeight();
    Result<Bitmap> result = Bitmap::create(width, height, foundation::AlphaMode::straight);
    if (!result) {
        foundation::log::warning("no result: %s", result.error().message.c_str());
        return nullptr;
    }

    const LayerContents behind = bluredLayer_->contents();
    const kernels::MaskSnapshotPtr shownMask = mask();
    const PicturePtr whole = resize(image_, width, height, services_.queues.workers());
    if (!whole)
        return nullptr;
    kernels::composeResult(whole->bestRepresentation()->view(), shownMask.get(),
                           backgroundOf(*bluredLayer_, behind), result->view(), services_.queues.workers());
    return Picture::create(std::move(*result));
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
            auto blurred = makeDrawable(blurredCopy(picture, workers), workers);
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

/// A result that is asked for while its blur is still being made waits for it.
void RKImageCutView::finishPendingBlur() {
    if (!blurPending_ || bluredLayer_->isHidden())
        return;
    foundation::Workers& workers = services_.queues.workers();
    auto blurred = makeDrawable(blurredCopy(image_, workers), workers);
    showBlur(blurRequest_, std::move(blurred));
    ++blurRequest_;
}

}  // namespace trimora::cutengine
