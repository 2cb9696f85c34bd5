#pragma once

#include <optional>

#include "cutengine/kernels/MipPyramid.h"
#include "cutengine/kernels/SamplePlacement.h"
#include "cutengine/kernels/ViewMask.h"
#include "cutengine/kernels/ViewPlane.h"
#include "foundation/Geometry.h"

namespace trimora::cutengine::kernels {

/// What a layer of the view shows and where; nothing drawable by default. All borrowed.
struct ViewLayerSource {
    PlacedExtent across;
    PlacedExtent down;
    const MipPyramid* picture = nullptr;  ///< stretched over the extents, or none for one colour:
    foundation::Pixel colour;             ///< premultiplied
    const MaskSnapshot* mask = nullptr;   ///< stretched over the extents, or none
};

/// One layer of the view, drawn row by row over one strip of columns: pixels, mask and the smooth
/// border of its rectangle. Blocks are counted from the strip's left edge.
class ViewLayer {
 public:
    explicit ViewLayer(const ViewLayerSource& source);

    /// As ViewPlane::moveToColumns().
    void moveToColumns(int x, int width);
    void moveToRow(int y);

    /// How much of the layer shows over one block of the row; alpha of its pixels does not count.
    [[nodiscard]] Cover coverOf(int block) const { return covers_.of(block); }
    /// The first block after `block`, `end` at the latest, over which more or less of it shows.
    [[nodiscard]] int endOfRun(int block, int end) const { return covers_.endOfRun(block, end); }

    /// Whether the layer hides everything below it where it shows wholly.
    [[nodiscard]] bool isOpaque() const { return opaque_; }

    /// As of ViewPlane, for blocks `begin` to `end` of the row.
    void sample(int begin, int end, Sample* to);
    void draw(int begin, int end, std::uint8_t* to);

    /// Draws the layer over what is in `base`, for blocks `begin` to `end` of the row.
    void drawOver(int begin, int end, Sample* base);

 private:
    void findCovers();

    /// How much each sample shows, border and mask together.
    void findShares(int begin, int end, Share* shares);

    ViewLayerSource source_;
    bool drawable_;
    bool opaque_ = false;
    std::optional<ViewPlane> plane_;
    std::optional<ViewMask> mask_;
    float rowCoverage_ = 0;
    std::array<float, kViewStripWidth> columnCoverage_;
    BlockCovers columnCovers_;                                            ///< by the columns alone
    BlockCovers covers_;                                                  ///< in the present row
    std::array<Sample, kSamplesPerPixel * kViewBlockWidth> colourBlock_;  ///< a block of the colour
    alignas(64) std::array<Sample, kSamplesPerPixel * kViewStripWidth> samples_;
    alignas(64) std::array<Share, kSharesPerPixel * kViewStripWidth> shares_;
};

}  // namespace trimora::cutengine::kernels
