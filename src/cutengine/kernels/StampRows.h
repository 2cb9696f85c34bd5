#pragma once

#include <cstdint>

#include "cutengine/kernels/StampBatch.h"
#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"

/// Painting stamps into the plane pixel by pixel: inner part of StrokePainter.h, apart from it because
/// the source is compiled once for every kind of SIMD unit; the best that the processor has is chosen
/// at run time. All kinds give the same bytes.
namespace trimora::cutengine::kernels {

/// What the stamps of one call have in common.
struct StampPaint {
    std::uint32_t fill = 0;  ///< the premultiplied pixel as it lies in memory
    double solid = 1;        ///< the share of the radius within which coverage is full; 1 for hard stamps
};

/// Paints every stamp of the batch, in order, rounding after each; `bounds` holds every pixel of the
/// plane that they touch. A pixel that holds `fill` already is not looked at: no stamp changes it.
void paintBatch(foundation::MutableBitmapView plane, const StampBatch& batch,
                const foundation::IntRect& bounds, const StampPaint& paint);

}  // namespace trimora::cutengine::kernels
