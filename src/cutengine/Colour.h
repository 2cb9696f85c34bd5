#pragma once

#include "foundation/Bitmap.h"

namespace trimora::cutengine {

/// A colour in sRGB, components 0..1, not premultiplied.
struct Colour {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    friend bool operator==(const Colour&, const Colour&) = default;
};

/// The colour as a premultiplied pixel, each component rounded to the nearest; values outside 0..1 are
/// clamped.
[[nodiscard]] foundation::Pixel premultipliedPixel(const Colour& colour);

}  // namespace trimora::cutengine
