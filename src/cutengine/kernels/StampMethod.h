#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "cutengine/kernels/StampCoverage.h"

/// By which of its ways a stamp's coverage is found, and what each way works out once for a stamp or
/// for a row of it. Inner part of StampCoverage.h, without SIMD.
namespace trimora::cutengine::kernels {

// How the coverage of a stamp is found.
enum class CoverageKind : std::uint8_t { hard, cells, layers };

struct CoverageMethod {
    CoverageKind kind = CoverageKind::hard;
    int steps = 1;  // cells a side of the pixel, or discs in the mixture
};

// How many cells a side a round stamp's pixels are cut into.
inline double cellsNeeded(double solidRadius, double ring) {
    constexpr double kCellsInRing = 5;
    constexpr double kCellsInCore = 2;       // a smaller solid core is neither flat nor a tip
    constexpr double kMostCellsForCore = 4;  // so small that what is wrong there no longer counts
    const double forRing = std::max(1.0, std::ceil(kCellsInRing / ring));
    if (solidRadius <= 0)
        return forRing;
    return std::max(forRing, std::min(kMostCellsForCore, std::ceil(kCellsInCore / solidRadius)));
}

inline CoverageMethod coverageMethod(const StampEllipse& ellipse, double solid) {
    constexpr double kMostCells = 8;
    constexpr double kLargestRadius = 1 << 22;  // beyond it a float cannot tell pixels apart
    constexpr double kLayersPerPixel = 8;
    if (solid >= 1)
        return {};
    const double ring = (1 - solid) * std::max(ellipse.rx, ellipse.ry);
    const double cells = cellsNeeded(solid * ellipse.rx, ring);
    const bool round = std::abs(ellipse.rx - ellipse.ry) <= 1e-3 * std::min(1.0, ellipse.rx);
    if (round && cells <= kMostCells && ellipse.rx < kLargestRadius)
        return {CoverageKind::cells, static_cast<int>(cells)};
    return {CoverageKind::layers,
            static_cast<int>(std::clamp(std::ceil(ring * kLayersPerPixel), 12.0, 4096.0))};
}

// P of the header comment, constant term first.
constexpr std::array<double, 12> kSegment = {
    0.66666666665664609, 0.20000000576263577,  0.10714231218483332,   0.069464486781103715,
    0.04933812763662461, 0.042021475264209726, 0.0013868863056523671, 0.1526514103351605,
    -0.3506330359815491, 0.69938081194612367,  -0.71568849070180018,  0.37710156759355962};

// A round stamp, measured in cells.
struct CellStamp {
    float radius = 0;
    float ring = 0;
    int cells = 1;        // a side of the pixel
    bool hasTip = false;  // whether the profile begins to fade at the centre, or next to it
};

// A soft stamp with what is the same for all of its pixels.
struct SoftStamp {
    StampEllipse ellipse;
    double solid = 0;
    CoverageMethod method;
    CellStamp cell;
    // Whole pixels from the centre's own pixel are exact in float; only the fraction is rounded.
    std::int32_t centre = 0;
    float offset = 0;  // from the centre to the middle of its pixel
    float scale = 0;   // from a sum over cells to 255ths

    SoftStamp() = default;
    SoftStamp(const StampEllipse& stamp, double solidShare)
        : ellipse(stamp), solid(solidShare), method(coverageMethod(stamp, solidShare)) {
        if (method.kind != CoverageKind::cells)
            return;
        const double radius = ellipse.rx * method.steps;
        constexpr double kFlat = 2;
        cell = {static_cast<float>(radius), static_cast<float>(radius * (1 - solid)), method.steps,
                radius * solid < kFlat};
        const double whole = std::floor(ellipse.cx);
        centre = static_cast<std::int32_t>(whole);
        offset = static_cast<float>(0.5 - (ellipse.cx - whole));
        scale = 255 / (cell.ring * static_cast<float>(cell.cells * cell.cells));
    }
};

}  // namespace trimora::cutengine::kernels
