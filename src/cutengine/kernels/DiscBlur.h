#pragma once

#include "foundation/Bitmap.h"
#include "foundation/Queues.h"

namespace trimora::cutengine::kernels {

/// Blurs with a flat disc, exactly: every pixel of `to` is the mean, rounded to the nearest, of the
/// pixels of `from` whose centres lie within `radius` pixels of it (dx^2 + dy^2 <= radius^2), every
/// component by itself on the stored (premultiplied) values. Beyond an edge the edge pixel repeats.
///
/// Both views have the same size and do not overlap. A radius below 1 copies. Bands of rows run on
/// `workers`.
void discBlur(foundation::BitmapView from, foundation::MutableBitmapView to, double radius,
              foundation::Workers& workers);

/// The same pixels, but no more than some rows of them: `to` is as wide as `from` and its first row is row
/// `firstRow` of the whole blur. Each call sums its first row anew, which costs what some rows more would.
void discBlurRows(foundation::BitmapView from, int firstRow, foundation::MutableBitmapView to, double radius,
                  foundation::Workers& workers);

}  // namespace trimora::cutengine::kernels
