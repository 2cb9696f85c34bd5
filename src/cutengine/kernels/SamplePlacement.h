#pragma once

#include <algorithm>
#include <cmath>

#include "cutengine/kernels/SampleRows.h"

/// Where a rectangle stands on the screen and where the samples stretched over it lie. One axis at a
/// time: only scaled and moved rectangles occur, so rows and columns are independent. Screen
/// coordinates are device pixels, top row first; pixel i reaches from i to i + 1.
namespace trimora::cutengine::kernels {

/// A place between the sample `index` and the one after it.
struct SamplePlace {
    int index;
    Share weight;  ///< of the one after it
};

/// The extent of a rectangle along one axis.
struct PlacedExtent {
    double start = 0;
    double length = 0;

    [[nodiscard]] bool isDrawable() const {
        return std::isfinite(start) && std::isfinite(length) && length > 0;
    }

    /// The share of a device pixel that lies inside.
    [[nodiscard]] float coverageOf(int pixel) const {
        const double inside = std::min(pixel + 1.0, start + length) - std::max<double>(pixel, start);
        return static_cast<float>(std::clamp(inside, 0.0, 1.0));
    }
};

/// A line of `count` samples laid along an extent.
struct PlacedSamples {
    double start = 0;
    double pitch = 1;  ///< device pixels from one sample to the next
    int count = 1;

    /// Where the centre of a device pixel lies, edges repeated.
    [[nodiscard]] SamplePlace at(int pixel) const {
        const double place = std::clamp((pixel + 0.5 - start) / pitch - 0.5, 0.0, count - 1.0);
        const int index = std::max(std::min(static_cast<int>(place), count - 2), 0);
        const double weight = std::min((place - index) * 32768 + 0.5, double{kFullShare});
        return {index, static_cast<Share>(weight)};
    }

    /// The sample after `index`, or the last again.
    [[nodiscard]] int next(int index) const { return std::min(index + 1, count - 1); }
};

/// The level whose samples are just finer than the screen's pixels, where a sample of level 0 is
/// `pitch` device pixels wide: level k for a pitch in (2^-(k+1), 2^-k].
[[nodiscard]] inline int levelFor(double pitch, int levelCount) {
    int level = 0;
    for (; level + 1 < levelCount && pitch * 2 <= 1; pitch *= 2)
        ++level;
    return level;
}

/// The samples of level `level` of a line of which level 0 has `count` along the extent and this one
/// `levelCount`.
[[nodiscard]] inline PlacedSamples placed(const PlacedExtent& extent, int count, int level, int levelCount) {
    return {extent.start, extent.length / count * std::ldexp(1.0, level), levelCount};
}

}  // namespace trimora::cutengine::kernels
