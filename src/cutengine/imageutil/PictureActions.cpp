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
    return {Picture::create(std::move(decoded->representations), std::move(decoded->copies)),
            std::move(decoded->notice)};
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

/// A smaller copy of the bitmap that is still twice as large as wanted, where the picture has one: the
/// filter, which looks at every pixel some six times, then has far fewer to look at.
foundation::BitmapView reducedFor(const Picture& picture, const Bitmap& bitmap, int width, int height) {
    const MipPyramidPtr& copies = picture.copies();
    if (!copies || copies->level(0).pixels != bitmap.view().pixels)
        return bitmap.view();
    int level = 0;
    while (level + 1 < copies->levelCount() && bitmap.width() >> (level + 2) >= width &&
           bitmap.height() >> (level + 2) >= height)
        ++level;
    return copies->level(level);
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
    kernels::resample(reducedFor(*picture, *best, width, height), scaled->view(), workers);
    return Picture::create(std::move(*scaled));
}

std::shared_ptr<const DrawablePicture> makeDrawable(const PicturePtr& picture, foundation::Workers& workers) {
    if (!picture || !picture->isValid())
        return nullptr;
    PicturePtr ready = Picture::withCopies(picture, workers);
    MipPyramidPtr copies = ready->copies();
    return std::make_shared<const DrawablePicture>(DrawablePicture{std::move(ready), std::move(copies)});
}

}  // namespace trimora::cutengine
