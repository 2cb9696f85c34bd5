#pragma once

#include <cstdint>
#include <memory>

#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"

namespace trimora::cutengine {

/// The shape of the brush cursor in view points, y-up, origin at the bottom left of its square: an
/// outline circle with a margin all round and, for large brushes, a cross at the centre.
struct BrushCursorShape {
    /// Empty space round the circle, in view points.
    static constexpr int kMargin = 3;

    double side = 0;            ///< width and height of the cursor picture
    foundation::Point hotSpot;  ///< the circle's centre
    foundation::Rect circle;    ///< the ellipse whose outline is stroked, 1 point wide
    bool hasCross = false;      ///< whether the two bars below are drawn
    float armLength = 0;        ///< from the centre to the end of a bar
    foundation::Rect horizontal;
    foundation::Rect vertical;

    /// The shape for a brush of this diameter in view points.
    [[nodiscard]] static BrushCursorShape forDiameter(float diameter);

    /// The same shape in a square of another side: what a size preview draws.
    friend bool operator==(const BrushCursorShape&, const BrushCursorShape&) = default;
};

/// Draws the shape in black with a soft white glow, so that it shows on dark and on light, into a
/// transparent premultiplied bitmap of round(side x scaleFactor) pixels a side. `scaleFactor` is device
/// pixels per view point. Returns an error when there is no memory; nothing changed.
[[nodiscard]] foundation::Result<foundation::Bitmap> drawBrushCursor(const BrushCursorShape& shape,
                                                                     double scaleFactor);

/// The pointer that a host shows over the cut view.
struct Cursor {
    enum class Kind : std::uint8_t { arrow, openHand, closedHand, brush };
    Kind kind = Kind::arrow;
    /// Of Kind::brush: its shape, and its picture at the scale factor asked for.
    BrushCursorShape shape;
    std::shared_ptr<const foundation::Bitmap> picture;
};

}  // namespace trimora::cutengine
