#pragma once

#include <cmath>
#include <cstdint>

#include "foundation/Bitmap.h"

namespace trimora::benchmarks {

/// An opaque picture that is neither flat nor pure noise: waves of several lengths and some grain.
inline foundation::Bitmap photograph(int width, int height) {
    foundation::Bitmap picture =
        foundation::Bitmap::create(width, height, foundation::AlphaMode::opaque).value();
    std::uint32_t grain = 1;
    for (int y = 0; y < height; ++y) {
        const double wave = std::sin(y * 0.011);
        for (int x = 0; x < width; ++x) {
            grain = grain * 1664525U + 1013904223U;
            const int base =
                128 + static_cast<int>(50 * wave) + (x * 37 / width) + static_cast<int>(grain >> 27);
            picture.setPixel(x, y,
                             {static_cast<std::uint8_t>(base), static_cast<std::uint8_t>(base / 2 + x % 61),
                              static_cast<std::uint8_t>(255 - base), 255});
        }
    }
    return picture;
}

}  // namespace trimora::benchmarks
