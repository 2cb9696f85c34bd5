#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

/// Plain values for points, sizes, rectangles and affine maps.
///
/// Unless a function says otherwise, coordinates are y-up with the origin at the bottom left, in
/// `double`; IntRect alone is used for pixels, y-down with the top row first.
namespace trimora::foundation {

struct Point {
    double x = 0;
    double y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
    double width = 0;
    double height = 0;
    friend bool operator==(const Size&, const Size&) = default;
    [[nodiscard]] bool isEmpty() const { return !(width > 0 && height > 0); }
};

/// A rectangle given by its corner of smallest x and y. Negative sizes are kept as they are: some
/// callers use them as marks.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    friend bool operator==(const Rect&, const Rect&) = default;

    [[nodiscard]] Point centre() const { return {x + width / 2, y + height / 2}; }
    [[nodiscard]] double maxX() const { return x + width; }
    [[nodiscard]] double maxY() const { return y + height; }
    [[nodiscard]] Size size() const { return {width, height}; }
    [[nodiscard]] bool isZero() const { return *this == Rect{}; }
    [[nodiscard]] bool isEmpty() const { return size().isEmpty(); }
    [[nodiscard]] bool contains(Point p) const {
        return p.x >= x && p.y >= y && p.x < maxX() && p.y < maxY();
    }
};

/// The smallest rectangle that holds both; an empty one adds nothing.
[[nodiscard]] Rect united(const Rect& a, const Rect& b);

/// What both have in common; the zero rectangle where they do not meet.
[[nodiscard]] Rect intersected(const Rect& a, const Rect& b);

/// Whole pixels, top row first: x, y is the top left pixel, and width x height pixels follow.
struct IntRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    friend bool operator==(const IntRect&, const IntRect&) = default;

    [[nodiscard]] int right() const { return x + width; }
    [[nodiscard]] int bottom() const { return y + height; }
    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }
};

[[nodiscard]] IntRect united(const IntRect& a, const IntRect& b);
[[nodiscard]] IntRect intersected(const IntRect& a, const IntRect& b);

/// x' = a x + c y + tx,  y' = b x + d y + ty.
struct AffineTransform {
    double a = 1;
    double b = 0;
    double c = 0;
    double d = 1;
    double tx = 0;
    double ty = 0;
    friend bool operator==(const AffineTransform&, const AffineTransform&) = default;

    [[nodiscard]] static AffineTransform scale(double sx, double sy) { return {sx, 0, 0, sy, 0, 0}; }
    [[nodiscard]] static AffineTransform translation(double dx, double dy) { return {1, 0, 0, 1, dx, dy}; }

    [[nodiscard]] Point apply(Point p) const { return {a * p.x + c * p.y + tx, b * p.x + d * p.y + ty}; }

    /// The map that does `*this` first and `next` after it.
    [[nodiscard]] AffineTransform then(const AffineTransform& next) const;

    /// The inverse map, or none where the map flattens the plane (determinant 0 or not finite).
    [[nodiscard]] std::optional<AffineTransform> inverted() const;
};

/// `from` at t = 0, `to` at t = 1, and in between component by component.
[[nodiscard]] AffineTransform interpolated(const AffineTransform& from, const AffineTransform& to, double t);

}  // namespace trimora::foundation
