#pragma once

#include <functional>
#include <vector>

#include "foundation/Bitmap.h"
#include "foundation/Queues.h"

namespace trimora::cutengine::kernels {

/// A picture in ever smaller copies, for drawing it small without shimmering.
///
/// Level 0 is the picture itself, borrowed, or not there at all; each further level is half as large, sides
/// rounded up, down to 1 x 1, its pixels the rounded mean of the (up to) four above. Immutable once built;
/// any thread may read.
class MipPyramid {
 public:
    MipPyramid() = default;

    /// Keeps `base` by reference: its owner outlives the pyramid. Out of memory leaves fewer levels.
    [[nodiscard]] static MipPyramid build(foundation::BitmapView base, foundation::Workers& workers);

    /// Fills a view with rows of a picture, the first of them row `firstRow`.
    using RowMaker = std::function<void(int firstRow, foundation::MutableBitmapView rows)>;

    /// The smaller copies of a picture that is nowhere whole: its rows are made some megabytes at a time,
    /// in order, and level 0 is left out. Without memory for level 1 it has no level at all.
    [[nodiscard]] static MipPyramid buildWithoutBase(int width, int height, foundation::AlphaMode alphaMode,
                                                     const RowMaker& makeRows, foundation::Workers& workers);

    [[nodiscard]] int levelCount() const {
        return base_.isEmpty() ? 0 : 1 + static_cast<int>(smaller_.size());
    }
    /// The first level that has pixels: 0, or 1 where level 0 is left out.
    [[nodiscard]] int finestLevel() const { return base_.pixels == nullptr ? 1 : 0; }

    /// Level 0 has its size and alpha mode even where it is left out.
    [[nodiscard]] foundation::BitmapView level(int index) const {
        return index == 0 ? base_ : smaller_[static_cast<std::size_t>(index) - 1].view();
    }

 private:
    friend class MipBands;

    /// Each further level, down to one pixel.
    void addSmaller(foundation::Workers& workers);
    /// Makes room for the next level; false after the last, and where memory is refused.
    bool addLevel();
    [[nodiscard]] foundation::BitmapView smallest() const;

    foundation::BitmapView base_;
    std::vector<foundation::Bitmap> smaller_;
};

}  // namespace trimora::cutengine::kernels
