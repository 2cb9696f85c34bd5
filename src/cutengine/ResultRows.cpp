#include "cutengine/ResultRows.h"

#include <utility>

#include "cutengine/imageutil/FilterImage.h"
#include "cutengine/kernels/DiscBlur.h"
#include "foundation/Log.h"

namespace trimora::cutengine {

using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::BitmapView;
using foundation::MutableBitmapView;
using foundation::Result;
using kernels::Background;

ResultRows::ResultRows(BitmapPtr picture, kernels::MaskSnapshotPtr mask, ResultBackground background,
                       foundation::Workers& workers)
    : picture_(std::move(picture)),
      mask_(std::move(mask)),
      background_(std::move(background)),
      workers_(workers) {}

Result<BitmapView> ResultRows::rows(int first, int end, Bitmap& room) const {
    const int count = end - first;
    if (room.width() != width() || room.height() < count) {
        room = Bitmap();
        Result<Bitmap> made = Bitmap::create(width(), count, AlphaMode::straight);
        if (!made)
            return made.error();
        room = std::move(*made);
    }
    const MutableBitmapView part = subview(room.view(), {0, 0, width(), count});
    compose(first, part);
    return BitmapView(part);
}

PicturePtr ResultRows::whole() const {
    Result<Bitmap> result = Bitmap::create(width(), height(), AlphaMode::straight);
    if (!result) {
        foundation::log::warning("no result: %s", result.error().message.c_str());
        return nullptr;
    }
    compose(0, result->view());
    return Picture::create(std::move(*result));
}

/// What lies behind the rows that are to be composed from `first` on. A blur is made in their own place.
Background ResultRows::backgroundOf(int first, MutableBitmapView rows) const {
    switch (background_.kind) {
        case ResultBackground::Kind::hidden:
            return {};
        case ResultBackground::Kind::colour:
            return {Background::Kind::colour, background_.colour, {}};
        case ResultBackground::Kind::picture:
            return {Background::Kind::picture, {}, background_.picture->view()};
        case ResultBackground::Kind::blurred:
            break;
    }
    const BitmapView sharp = background_.picture->view();
    rows.alphaMode = sharp.alphaMode;
    kernels::discBlurRows(sharp, first, rows, backgroundBlurRadius(sharp.width, sharp.height), workers_);
    return {Background::Kind::rows, {}, rows};
}

void ResultRows::compose(int first, MutableBitmapView rows) const {
    kernels::composeRows(picture_->view(), mask_.get(), backgroundOf(first, rows), first, rows, workers_);
}

}  // namespace trimora::cutengine
