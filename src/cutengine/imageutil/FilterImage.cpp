#include "cutengine/imageutil/FilterImage.h"

#include <cmath>
#include <utility>

#include "cutengine/imageutil/PictureActions.h"
#include "cutengine/kernels/DiscBlur.h"
#include "foundation/Log.h"

namespace trimora::cutengine {

using foundation::Bitmap;
using foundation::BitmapView;
using foundation::IntRect;
using foundation::Rect;
using foundation::Result;

namespace {

/// From here on a frame drawn from the copy of half the size is within one level of one drawn from the whole;
/// at 64 a few pixels of drawings full of hard edges are two levels off.
constexpr double kRadiusThatLeavesNothingFine = 80;

}  // namespace

FilterImage::FilterImage(BitmapPtr whole)
    : extent_{0, 0, static_cast<double>(whole->width()), static_cast<double>(whole->height())},
      bitmap_(std::move(whole)),
      part_(bitmap_->view().bounds()) {}

FilterImage FilterImage::fromPicture(const PicturePtr& picture) {
    return picture && picture->isValid() ? FilterImage(picture->bestRepresentation()) : FilterImage();
}

BitmapView FilterImage::view() const {
    return bitmap_ ? subview(bitmap_->view(), part_) : BitmapView();
}

FilterImage FilterImage::discBlurred(double radius, foundation::Workers& workers) const {
    if (isEmpty())
        return {};
    Result<Bitmap> made = Bitmap::create(part_.width, part_.height, view().alphaMode);
    if (!made) {
        foundation::log::warning("no blurred picture: %s", made.error().message.c_str());
        return {};
    }
    kernels::discBlur(view(), made->view(), radius, workers);
    FilterImage image(std::make_shared<const Bitmap>(std::move(*made)));
    image.extent_ = extent_;
    return image;
}

FilterImage FilterImage::crop(const Rect& area) const {
    const Rect inside = intersected(area, extent_);
    const IntRect pixels{static_cast<int>(std::lround(inside.x - extent_.x)) + part_.x,
                         static_cast<int>(std::lround(extent_.maxY() - inside.maxY())) + part_.y,
                         static_cast<int>(std::lround(inside.width)),
                         static_cast<int>(std::lround(inside.height))};
    FilterImage image = *this;
    image.part_ = pixels;
    image.extent_ = {inside.x - area.x, inside.y - area.y, inside.width, inside.height};
    return image;
}

PicturePtr FilterImage::picture() const {
    if (isEmpty())
        return nullptr;
    if (part_ == bitmap_->view().bounds())
        return Picture::create(bitmap_);
    Result<Bitmap> copy = Bitmap::create(part_.width, part_.height, view().alphaMode);
    if (!copy)
        return nullptr;
    copyPixels(view(), copy->view());
    return Picture::create(std::move(*copy));
}

double backgroundBlurRadius(double width, double height) {
    return (width + height) / 200;
}

PicturePtr blurredCopy(const PicturePtr& picture, foundation::Workers& workers) {
    const FilterImage image = FilterImage::fromPicture(picture);
    const Rect extent = image.extent();
    const double radius = backgroundBlurRadius(extent.width, extent.height);
    return image.discBlurred(radius, workers).crop(extent).picture();
}

std::shared_ptr<const DrawablePicture> blurredDrawable(const PicturePtr& picture,
                                                       foundation::Workers& workers) {
    if (!picture || !picture->isValid())
        return nullptr;
    const BitmapPtr sharp = picture->bestRepresentation();
    const double radius = backgroundBlurRadius(sharp->width(), sharp->height());
    // Another size than the picture's is stretched over it, which takes all there is.
    const bool fits = sharp->width() == picture->pixelWidth() && sharp->height() == picture->pixelHeight();
    if (radius < kRadiusThatLeavesNothingFine || !fits)
        return makeDrawable(blurredCopy(picture, workers), workers);
    kernels::MipPyramid copies = kernels::MipPyramid::buildWithoutBase(
        sharp->width(), sharp->height(), sharp->alphaMode(),
        [&](int firstRow, foundation::MutableBitmapView rows) {
            kernels::discBlurRows(sharp->view(), firstRow, rows, radius, workers);
        },
        workers);
    if (copies.levelCount() == 0)
        return nullptr;
    auto kept = std::make_shared<const kernels::MipPyramid>(std::move(copies));
    return std::make_shared<const DrawablePicture>(DrawablePicture{nullptr, std::move(kept)});
}

}  // namespace trimora::cutengine
