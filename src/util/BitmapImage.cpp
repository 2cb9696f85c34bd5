#include "util/BitmapImage.h"

namespace trimora::util {

using foundation::AlphaMode;

namespace {

QImage::Format formatOf(AlphaMode mode) {
    switch (mode) {
        case AlphaMode::premultiplied:
            return QImage::Format_ARGB32_Premultiplied;
        case AlphaMode::straight:
            return QImage::Format_ARGB32;
        case AlphaMode::opaque:
            return QImage::Format_RGB32;
    }
    return QImage::Format_Invalid;
}

}  // namespace

QImage sharedImage(foundation::BitmapView pixels) {
    if (pixels.isEmpty())
        return {};
    return QImage(pixels.pixels, pixels.width, pixels.height, static_cast<qsizetype>(pixels.stride),
                  formatOf(pixels.alphaMode));
}

}  // namespace trimora::util
