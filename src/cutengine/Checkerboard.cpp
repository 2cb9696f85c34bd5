#include "cutengine/Checkerboard.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace trimora::cutengine {

using foundation::Bitmap;
using foundation::Pixel;
using foundation::Result;

Bitmap makeCheckerboardTile(double scaleFactor) {
    constexpr double kSquare = 8;
    constexpr Pixel kLight{76, 76, 76, 255};
    constexpr Pixel kDark{60, 60, 60, 255};
    const int square = std::max(1, static_cast<int>(std::lround(kSquare * scaleFactor)));
    Result<Bitmap> tile = Bitmap::create(2 * square, 2 * square, foundation::AlphaMode::opaque);
    if (!tile)
        return {};
    for (int y = 0; y < tile->height(); ++y) {
        for (int x = 0; x < tile->width(); ++x)
            tile->setPixel(x, y, (x < square) == (y < square) ? kLight : kDark);
    }
    return std::move(*tile);
}

}  // namespace trimora::cutengine
