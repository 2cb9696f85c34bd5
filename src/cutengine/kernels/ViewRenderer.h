#pragma once

#include "cutengine/kernels/MaskSnapshot.h"
#include "cutengine/kernels/MipPyramid.h"
#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"
#include "foundation/Queues.h"

namespace trimora::cutengine::kernels {

/// Everything that a frame of the cut view shows, bottom to top: outside colour, checkerboard,
/// background, masked picture. All references are borrowed for the call.
struct ViewScene {
    /// Device pixels per view point.
    double scaleFactor = 1;

    /// The picture's rectangle (0, 0, size) in picture points, y-up, is mapped by these into view
    /// points, y-up; both fields may differ while one of them is ahead. They scale and move only
    /// (b = c = 0); where a scale is not positive, or anything not finite, that layer is not drawn.
    foundation::Size pictureSize;
    foundation::AffineTransform pictureToView;
    foundation::AffineTransform backgroundToView;

    const MipPyramid* picture = nullptr;  ///< none: nothing but the pattern is drawn
    const MaskSnapshot* mask = nullptr;   ///< stretched over the picture; none: all of it shows
    bool backgroundHidden = true;
    const MipPyramid* background = nullptr;  ///< stretched over the rectangle, or none for one colour:
    foundation::Pixel backgroundColour;      ///< premultiplied

    /// Repeats over the whole view, its top left corner at the view's top left; in device pixels.
    foundation::BitmapView tile;
};

/// Draws the part of a frame inside `area` (device pixels of `target`, top row first) and nothing
/// else; `target` is the whole view, view height x scaleFactor pixels high, and comes out opaque.
///
/// Sampling: bilinear between pixel centres, edges repeated, from the level of the pyramid whose
/// pixels are just finer than the screen's: level k for a zoom (device pixels per pixel of level 0; the
/// larger one, should they differ across and down) in (2^-(k+1), 2^-k], or from the pyramid's finest where
/// that level is left out. A pixel of level k lies where the 2^k pixels of level 0 lie that it is made of.
/// The mask is sampled in the same way, at its own level.
///
/// Composing: every layer lies over what is below it, out = p s + b (1 - alpha(p) s), where the share s
/// is the mask times the part of the device pixel's area inside the picture's rectangle, so that the
/// border is smooth. All layers are put together in 128ths of a level and rounded once; the result is
/// within 0.6 levels of the real numbers.
///
/// Rows run in bands on `workers`. The result of a pixel does not depend on `area`.
void renderView(const ViewScene& scene, foundation::MutableBitmapView target, const foundation::IntRect& area,
                foundation::Workers& workers);

}  // namespace trimora::cutengine::kernels
