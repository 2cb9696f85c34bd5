#pragma once

#include <array>
#include <cstdint>

#include "cutengine/kernels/SamplePlacement.h"
#include "cutengine/kernels/SampleRows.h"
#include "foundation/Bitmap.h"

namespace trimora::cutengine::kernels {

/// The renderer works on strips of columns this wide, whose rows stay in the cache nearest the core.
inline constexpr int kViewStripWidth = 1024;

/// ... and decides for blocks of this many columns at a time what has to be drawn at all. Blocks stand
/// at multiples of their width in the view, whatever part of it is drawn: the same pixel is always
/// treated in the same way.
inline constexpr int kViewBlockWidth = 16;
static_assert(kViewBlockWidth % kGroupPixels == 0);

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
    /// How the pixels that a row of the screen reads stand in a row of the bitmap.
    enum class Reading : std::uint8_t {
        aligned,  ///< each on one of its own
        run,      ///< each between the pixels after those of its neighbour
        picked,   ///< anywhere, each at most two further than its neighbour
        apart,    ///< anywhere
    };

    /// A row of the bitmap interpolated across, as far as it has been asked for.
    struct StretchedRow {
        int row = -1;
        int begin = 0;
        int end = 0;
        alignas(64) std::array<Sample, kSamplesPerPixel * kViewStripWidth> samples;
    };

    [[nodiscard]] Reading readingOf(int width) const;
    const Sample* stretchedRow(int row, int begin, int end);
    void stretch(int row, int begin, int end, Sample* to);
    void stretchApart(const std::uint8_t* row, int begin, int end, Sample* to);
    void fetchAhead(int row, int begin, int end) const;
    [[nodiscard]] int indexOf(int column) const {
        return static_cast<int>(indices_[static_cast<std::size_t>(column)]);
    }

    foundation::BitmapView bitmap_;
    PlacedSamples across_;
    PlacedSamples down_;
    SamplePlace place_{};
    Reading reading_ = Reading::apart;
    std::array<std::uint32_t, kViewStripWidth> indices_;
    alignas(64) std::array<Share, kSharesPerPixel * kViewStripWidth> weights_;
    std::array<StretchedRow, 2> stretched_;  ///< an even row of the bitmap and an odd one
    std::array<std::uint8_t, 2 * kSamplesPerPixel * kViewStripWidth> sides_;  ///< pixels to go between
};

}  // namespace trimora::cutengine::kernels
