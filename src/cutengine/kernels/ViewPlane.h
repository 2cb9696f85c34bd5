#pragma once

#include <array>

#include "cutengine/kernels/SamplePlacement.h"
#include "cutengine/kernels/SampleRows.h"
#include "foundation/Bitmap.h"

namespace trimora::cutengine::kernels {

/// The renderer works on strips of columns this wide, whose rows stay in the cache nearest the core.
inline constexpr int kViewStripWidth = 256;

/// ... and decides for blocks of this many columns at a time what has to be drawn at all. Blocks stand
/// at multiples of their width in the view, whatever part of it is drawn: the same pixel is always
/// treated in the same way.
inline constexpr int kViewBlockWidth = 16;
static_assert(kViewBlockWidth * 4 % kSampleGranule == 0);

/// A bitmap laid on the screen, sampled row by row over one strip of columns. The bitmap is borrowed.
/// Positions within the strip are in pixels from its left edge.
class ViewPlane {
 public:
    ViewPlane(foundation::BitmapView bitmap, PlacedSamples across, PlacedSamples down)
        : bitmap_(bitmap), across_(across), down_(down) {}

    /// Goes to the strip of `width` columns from view column `x` on; both are multiples of the block's
    /// width.
    void moveToColumns(int x, int width);

    void moveToRow(int y) { place_ = down_.at(y); }

    /// The samples of pixels `begin` to `end` of the row, interpolated.
    void sample(int begin, int end, Sample* to);

    /// The same, rounded to bytes.
    void draw(int begin, int end, std::uint8_t* to);

 private:
    const Sample* stretchedRow(int row);
    void gatherPairs(int row);
    void fetchAhead(int row) const;

    foundation::BitmapView bitmap_;
    PlacedSamples across_;
    PlacedSamples down_;
    SamplePlace place_{};
    int width_ = 0;
    bool aligned_ = false;     ///< every column falls on a sample; implies contiguous_
    bool contiguous_ = false;  ///< every column reads the sample after the one that its neighbour reads
    std::array<int, 2> heldRows_{-1, -1};  ///< rows in stretched_: an even one and an odd one
    std::array<int, kViewStripWidth> indices_;
    alignas(64) std::array<Share, 4 * kViewStripWidth> weights_;  ///< the same for a pixel's four samples
    alignas(64) std::array<std::array<Sample, 4 * kViewStripWidth>, 2> stretched_;
    alignas(64) std::array<std::uint8_t, 8 * kViewStripWidth> pairs_;  ///< pixels to go between
};

}  // namespace trimora::cutengine::kernels
