#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "foundation/Geometry.h"

namespace trimora::cutengine {

/// An outline of straight lines and cubic curves, as plain values that any toolkit can draw.
///
/// Coordinates are y-up, in the points of whoever draws it. A path may have several subpaths; each
/// begins with a move. A value: copies share nothing. Default-made it is empty and allocates nothing.
class BezierPath {
 public:
    enum class Kind : std::uint8_t { move, line, curve, close };

    /// One step of the outline. `points` holds as many as the kind needs: none for a close, one for a
    /// move or a line, and for a curve its two control points and then its end.
    struct Element {
        Kind kind = Kind::move;
        std::array<foundation::Point, 3> points{};
        friend bool operator==(const Element&, const Element&) = default;
    };

    /// The width of the line that strokeInside draws, in points.
    double lineWidth = 1;

    [[nodiscard]] static BezierPath rectangle(const foundation::Rect& rect);

    /// The ellipse that touches all four sides of the rectangle, begun at its rightmost point.
    [[nodiscard]] static BezierPath oval(const foundation::Rect& rect);

    /// The rectangle with its corners rounded; a radius above half a side is taken as that half.
    [[nodiscard]] static BezierPath roundedRectangle(const foundation::Rect& rect, double radius);

    /// Part of a circle, counter-clockwise from one angle to the other, in radians from the positive
    /// x axis. An end that does not lie beyond the start is reached one turn later. Not closed.
    [[nodiscard]] static BezierPath bezierPathWithArcInCenter(foundation::Point centre, double radius,
                                                              double fromAngle, double toAngle);

    void moveTo(foundation::Point point);
    void lineTo(foundation::Point point);
    void curveTo(foundation::Point control1, foundation::Point control2, foundation::Point end);
    void close();

    [[nodiscard]] const std::vector<Element>& elements() const { return elements_; }
    [[nodiscard]] bool isEmpty() const { return elements_.empty(); }

    /// The smallest rectangle that holds the outline itself (not the control points); the zero
    /// rectangle for an empty path.
    [[nodiscard]] foundation::Rect bounds() const;

    [[nodiscard]] BezierPath transformed(const foundation::AffineTransform& transform) const;

    friend bool operator==(const BezierPath&, const BezierPath&) = default;

 private:
    std::vector<Element> elements_;
};

/// The same outline, element by element and in order; where no close element was met, the last subpath
/// is closed at the end. An empty path stays empty.
[[nodiscard]] BezierPath quartzPath(const BezierPath& path);

/// quartzPath, scaled about the origin so that its bounds get this size. A side of the bounds that is 0
/// long keeps its length.
[[nodiscard]] BezierPath quartzPathWithSize(const BezierPath& path, foundation::Size size);

}  // namespace trimora::cutengine
