#pragma once

#include <vector>

#include "foundation/Bitmap.h"
#include "foundation/Queues.h"

namespace trimora::cutengine::kernels {

/// A picture in ever smaller copies, for drawing it small without shimmering.
///
/// Level 0 is the picture itself, borrowed; each further level is half as large, sides rounded up,
/// down to 1 x 1, its pixels the rounded mean of the (up to) four above. Immutable once built; any
/// thread may read.
class MipPyramid {
 public:
    MipPyramid() = default;

    /// Keeps `base` by reference: its owner outlives the pyramid. Out of memory leaves fewer levels.
    [[nodiscard]] static MipPyramid build(foundation::BitmapView base, foundation::Workers& workers);

    [[nodiscard]] int levelCount() const {
        return base_.isEmpty() ? 0 : 1 + static_cast<int>(smaller_.size());
    }
    [[nodiscard]] foundation::BitmapView level(int index) const {
        return index == 0 ? base_ : smaller_[static_cast<std::size_t>(index) - 1].view();
    }

 private:
    foundation::BitmapView base_;
    std::vector<foundation::Bitmap> smaller_;
};

}  // namespace trimora::cutengine::kernels
