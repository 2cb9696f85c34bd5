#pragma once

#include <span>

#include "cutengine/kernels/BrushStamp.h"
#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"

namespace trimora::cutengine::kernels {

/// What a stamp leaves in the plane.
struct Brush {
    foundation::Pixel fill;            ///< premultiplied
    const BrushStamp* soft = nullptr;  ///< the soft stamp, or none for a hard-edged ellipse
};

/// Paints the stamps, in order, into a premultiplied plane and returns the rectangle of pixels that
/// may have changed (top row first; empty where nothing was touched).
///
/// Each stamp is a rectangle in plane pixels, y-up with the origin at the plane's bottom left; parts
/// outside the plane are dropped. A pixel's coverage by a stamp is the share of its area inside the
/// ellipse inscribed in the rectangle (hard), or the soft stamp's alpha over it, as a whole number c of
/// 255ths, within 1/255 of the true area. Painting replaces in proportion, every component by itself:
///
///     new = round((old * (255 - c) + fill * c) / 255)
///
/// rounded to the nearest, stamp by stamp, so the plane depends on the sequence of stamps alone and
/// never on how it was divided into calls.
foundation::IntRect paintStamps(foundation::MutableBitmapView plane, std::span<const foundation::Rect> stamps,
                                const Brush& brush);

}  // namespace trimora::cutengine::kernels
