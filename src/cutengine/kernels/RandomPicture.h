#pragma once

#include <algorithm>
#include <random>

#include "foundation/Bitmap.h"

namespace trimora::cutengine::kernels {

/// A picture of random pixels for tests: premultiplied with every alpha, or opaque.
inline foundation::Bitmap randomPicture(std::mt19937_64& random, int width, int height,
                                        foundation::AlphaMode mode = foundation::AlphaMode::premultiplied) {
    foundation::Bitmap picture = foundation::Bitmap::create(width, height, mode).value();
    const bool opaque = mode == foundation::AlphaMode::opaque;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto bits = random();
            // Clear and solid pixels are as frequent as in a cut-out.
            const unsigned kind = bits >> 60;
            const unsigned alpha = opaque || kind < 4 ? 255 : kind < 6 ? 0 : bits >> 24 & 255;
            const auto component = [&](unsigned shift) {
                return static_cast<std::uint8_t>((bits >> shift & 255) * alpha / 255);
            };
            picture.setPixel(x, y,
                             {component(0), component(8), component(16), static_cast<std::uint8_t>(alpha)});
        }
    }
    return picture;
}

inline int randomBetween(std::mt19937_64& random, int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
}

}  // namespace trimora::cutengine::kernels
