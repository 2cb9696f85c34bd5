#pragma once

#include "foundation/Bitmap.h"
#include "foundation/Queues.h"

namespace trimora::cutengine::kernels {

/// Scales `from` over the whole of `to` in high quality: a Lanczos filter of three lobes, widened when
/// the picture becomes smaller, on premultiplied values, edges repeated, results kept within
/// 0..alpha. Views of the same size are copied. Bands of rows run on `workers`.
void resample(foundation::BitmapView from, foundation::MutableBitmapView to, foundation::Workers& workers);

}  // namespace trimora::cutengine::kernels
