#include "cutengine/imageutil/PictureActions.h"

#include <utility>

#include "cutengine/kernels/Resample.h"
#include "foundation/Log.h"

namespace trimora::cutengine {

using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::Result;

LoadedPicture imageFromURL(const std::filesystem::path& file, PictureDecoder& decoder) {
    Result<DecodedPicture> decoded = decoder.decode(file);
    if (!decoded)
        return {nullptr, decoded.error().message};
    return {Picture::create(std::move(decoded->representations)), std::move(decoded->notice)};
}

LoadedPicture imageFromURL_async(const std::filesystem::path& file, bool async, PictureDecoder& decoder,
                                 const Patience& patience) {
    constexpr int kFurtherTries = 10;
    constexpr int kShortestPause = 50'000;
    LoadedPicture loaded = imageFromURL(file, decoder);
    for (int i = 0; async && !loaded.picture && i < kFurtherTries; ++i) {
        patience.clock.sleep((kShortestPause + patience.randomMicroseconds()) / 1e6);
        loaded = imageFromURL(file, decoder);
    }
    return loaded;
}

namespace {

/// A smaller copy that is still twice as large as wanted: the filter, which looks at every pixel some six
/// times, then has far fewer to look at. Empty where the bitmap is not large enough for one, or memory is
/// refused.
Bitmap reducedFor(foundation::BitmapView bitmap, int width, int height, foundation::Workers& workers) {
    constexpr int kLevelsAtMost = 20;
    int level = 0;
    while (level < kLevelsAtMost && bitmap.width >> (level + 2) >= width &&
           bitmap.height >> (level + 2) >= height)
        ++level;
    if (level == 0)
        return {};
    Result<Bitmap> reduced = kernels::mipLevel(bitmap, level, workers);
    return reduced ? std::move(*reduced) : Bitmap();
}

}  // namespace

PicturePtr resize(const PicturePtr& picture, int width, int height, foundation::Workers& workers) {
    if (!picture || !picture->isValid()) {
        foundation::log::warning("Invalid Image");
        return nullptr;
    }
    const BitmapPtr best = picture->bestRepresentation(width, height);
    const bool isSo =
        picture->representations().size() == 1 && best->width() == width && best->height() == height;
    if (isSo)
        return picture;
    const bool opaque = best->alphaMode() == AlphaMode::opaque;
    Result<Bitmap> scaled =
        Bitmap::create(width, height, opaque ? AlphaMode::opaque : AlphaMode::premultiplied);
    if (!scaled) {
        foundation::log::warning("no scaled picture: %s", scaled.error().message.c_str());
        return nullptr;
    }
    const Bitmap reduced = reducedFor(best->view(), width, height, workers);
    kernels::resample(reduced.isEmpty() ? best->view() : reduced.view(), scaled->view(), workers);
    return Picture::create(std::move(*scaled));
}

std::shared_ptr<const DrawablePicture> makeDrawable(PicturePtr picture, foundation::Workers& workers) {
    if (!picture || !picture->isValid())
        return nullptr;
    auto drawable = std::make_shared<DrawablePicture>();
    drawable->pyramid = kernels::MipPyramid::build(picture->bestRepresentation()->view(), workers);
    drawable->picture = std::move(picture);
    return drawable;
}

}  // namespace trimora::cutengine
