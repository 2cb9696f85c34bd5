#pragma once

#include <random>

#include "cutengine/kernels/MaskSnapshot.h"
#include "cutengine/kernels/RandomPicture.h"

namespace trimora::cutengine::kernels {

/// A mask plane for tests that looks painted: areas shown and cut away, hard and soft edges, and a few
/// pixels of every value.
inline foundation::Bitmap randomMaskPlane(std::mt19937_64& random, int width, int height) {
    foundation::Bitmap plane = foundation::Bitmap::createFilled(width, height, {0, 0, 0, 255}).value();
    for (int patch = randomBetween(random, 0, 6); patch > 0; --patch) {
        const int left = randomBetween(random, -width / 2, width - 1);
        const int top = randomBetween(random, -height / 2, height - 1);
        const int right = std::min(width, left + randomBetween(random, 1, width));
        const int bottom = std::min(height, top + randomBetween(random, 1, height));
        const int kind = randomBetween(random, 0, 3);
        for (int y = std::max(top, 0); y < bottom; ++y) {
            for (int x = std::max(left, 0); x < right; ++x) {
                const int soft = 255 * (x - left) / (right - left);
                const int alpha = kind == 0   ? 0
                                  : kind == 1 ? 255
                                  : kind == 2 ? soft
                                              : randomBetween(random, 0, 255);
                plane.setPixel(x, y, {0, 0, 0, static_cast<std::uint8_t>(alpha)});
            }
        }
    }
    return plane;
}

inline MaskSnapshotPtr snapshotOf(const foundation::Bitmap& plane) {
    return MaskSnapshotter().take(plane.view(), plane.view().bounds());
}

}  // namespace trimora::cutengine::kernels
