#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "cutengine/kernels/StampCoverage.h"
#include "cutengine/kernels/StrokePainter.h"

/// The definition of painting, for the tests: every stamp over every pixel of the plane, one after
/// another, nothing skipped.
namespace trimora::cutengine::kernels::plain {

/// The area of the unit disc within 0..x and 0..y, both 0 or more.
inline double quarterDisc(double x, double y) {
    const double right = std::min(x, 1.0);
    const double top = std::min(y, 1.0);
    if (right * right + top * top <= 1)
        return right * top;
    const auto leftOf = [](double t) { return (t * std::sqrt(1 - t * t) + std::asin(t)) / 2; };
    const double flat = std::sqrt(1 - top * top);
    return flat * top + leftOf(right) - leftOf(flat);
}

/// The signed area between the axes and (x, y).
inline double cornerDisc(double x, double y) {
    return std::copysign(quarterDisc(std::abs(x), std::abs(y)), x) * (y < 0 ? -1 : 1);
}

/// The share of pixel (x, y) inside the ellipse, through the areas of its four corners.
inline double ellipseShare(const StampEllipse& e, int x, int y) {
    const double left = (x - e.cx) / e.rx;
    const double right = (x + 1 - e.cx) / e.rx;
    const double top = (y - e.cy) / e.ry;
    const double bottom = (y + 1 - e.cy) / e.ry;
    const double area =
        cornerDisc(right, bottom) - cornerDisc(left, bottom) - cornerDisc(right, top) + cornerDisc(left, top);
    return area * e.rx * e.ry;
}

inline StampEllipse ellipseIn(const foundation::Rect& stamp, int planeHeight) {
    return {stamp.x + stamp.width / 2, planeHeight - (stamp.y + stamp.height / 2), stamp.width / 2,
            stamp.height / 2};
}

inline void coverageOfRow(const StampEllipse& ellipse, double solid, int y, std::span<std::uint8_t> covered) {
    const int width = static_cast<int>(covered.size());
    if (solid < 1)
        return stampCoverage(ellipse, solid, 0, y, width, covered.data());
    for (int x = 0; x < width; ++x)
        covered[static_cast<std::size_t>(x)] = static_cast<std::uint8_t>(
            std::clamp(std::floor(ellipseShare(ellipse, x, y) * 255 + 0.5), 0.0, 255.0));
}

inline void paintStamps(foundation::MutableBitmapView plane, std::span<const foundation::Rect> stamps,
                        const Brush& brush) {
    const double solid = brush.soft == nullptr ? 1 : static_cast<double>(brush.soft->hardness());
    const std::uint8_t fill[4] = {brush.fill.blue, brush.fill.green, brush.fill.red, brush.fill.alpha};
    std::vector<std::uint8_t> covered(static_cast<std::size_t>(plane.width));
    for (const foundation::Rect& stamp : stamps) {
        const StampEllipse ellipse = ellipseIn(stamp, plane.height);
        for (int y = 0; y < plane.height; ++y) {
            coverageOfRow(ellipse, solid, y, covered);
            for (int x = 0; x < plane.width; ++x) {
                const int cover = covered[static_cast<std::size_t>(x)];
                for (int k = 0; k < 4; ++k) {
                    std::uint8_t& value = plane.row(y)[4 * x + k];
                    value = static_cast<std::uint8_t>((value * (255 - cover) + fill[k] * cover + 127) / 255);
                }
            }
        }
    }
}

}  // namespace trimora::cutengine::kernels::plain
