#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "foundation/Bitmap.h"

namespace trimora::benchmarks {

/// A mask as work leaves it: a subject of half the picture's area shown, with an edge `softness`
/// pixels wide, and the rest cut away.
inline foundation::Bitmap paintedMask(int width, int height, double softness) {
    foundation::Bitmap plane = foundation::Bitmap::create(width, height).value();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double dx = (x - width * 0.5) / (width * 0.4);
            const double dy = (y - height * 0.5) / (height * 0.4);
            const double wobble = 0.03 * std::sin(9 * std::atan2(dy, dx));
            const double inside = (1 + wobble - std::hypot(dx, dy)) * height * 0.4 / softness + 0.5;
            plane.setPixel(x, y, {0, 0, 0, static_cast<std::uint8_t>(std::clamp(inside, 0.0, 1.0) * 255)});
        }
    }
    return plane;
}

}  // namespace trimora::benchmarks
