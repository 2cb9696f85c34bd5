#pragma once

#include <cstdint>

/// How much of each pixel a brush stamp covers, in 255ths.
///
/// All kinds of SIMD unit give the same bytes: no operation is fused and every one of them is exactly
/// rounded.
///
/// ## Hard coverage
/// The area of a pixel inside the ellipse, exactly. With u and v the coordinates divided by the radii,
/// the ellipse is the unit disc and the pixel a rectangle; one that lies across an axis is cut there,
/// and each part is mirrored to u, v >= 0. There, in u from `near` to `far` and v from `low` to `high`,
/// the disc is as tall as the rectangle up to a = sqrt(1 - high^2), and gone from b = sqrt(1 - low^2)
/// on. Between them runs the arc, under which lie a trapezoid below its chord and the segment between
/// chord and arc. A segment of chord L = 2 s holds asin(s) - s sqrt(1 - s^2) = s^3 P(s^2); P is a
/// polynomial of degree 11, fitted at Chebyshev nodes to a relative error of 3e-11 on s^2 <= 1/2, which
/// is a quarter of the circle. The area is right to 1e-9 pixels, so the coverage is the 255th nearest to
/// the true one.
///
/// ## Soft coverage
/// The stamp's radial profile averaged over the pixel, to within 1/255. The pixel is cut into n x n
/// cells so small that the fading ring is at least five cells wide. Over a cell, the distance from the
/// centre has the mean sqrt(d^2 + k), d being that of the cell's middle and k = 1/12, somewhat more
/// next to the centre where the profile has its tip; and it spreads like a box one cell wide (a square
/// has the same variance, 1/12, seen from all sides), over which the profile's two straight pieces
/// integrate in closed form. A ring too narrow for that (8 x 8 cells would not do), or one that is no
/// circle, is the mean of hard ellipses: a profile is an even mixture of discs of all radii from where
/// it begins to fade to where it ends.
namespace trimora::cutengine::kernels {

/// One stamp in the plane: pixels, y-down, the origin at the plane's top left corner.
struct StampEllipse {
    double cx = 0;
    double cy = 0;
    double rx = 0;  ///< above 0
    double ry = 0;  ///< above 0

    [[nodiscard]] bool hasSizeOf(const StampEllipse& other) const { return rx == other.rx && ry == other.ry; }
};

/// The coverage of `count` pixels of row `y` from `x` on, in 255ths: the definition of what stamps are
/// painted with. `solid` is the share of the radius within which coverage is full; 1 for hard stamps.
void stampCoverage(const StampEllipse& ellipse, double solid, int x, int y, int count,
                   std::uint8_t* coverage);

}  // namespace trimora::cutengine::kernels
