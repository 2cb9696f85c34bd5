#pragma once

#include "foundation/Bitmap.h"
#include "foundation/Queues.h"

namespace trimora::cutengine::kernels {

enum class Filter {
    lanczos,   ///< three lobes: keeps pictures crisp
    triangle,  ///< never leaves the range of what it weighs: for masks, round whose edges lobes leave a halo
};

/// Scales `from` over the whole of `to` in high quality: by a filter that is widened when the picture
/// becomes smaller, on premultiplied values, edges repeated, results kept within 0..alpha. Views of the
/// same size are copied. Bands of rows run on `workers`.
void resample(foundation::BitmapView from, foundation::MutableBitmapView to, foundation::Workers& workers,
              Filter filter = Filter::lanczos);

}  // namespace trimora::cutengine::kernels
