#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <vector>

#include "cutengine/kernels/MaskSnapshot.h"
#include "cutengine/kernels/SamplePlacement.h"
#include "cutengine/kernels/ViewPlane.h"

namespace trimora::cutengine::kernels {

/// How much of a layer shows over some pixels: a bit for some that show, and one for some that do not.
enum class Cover : std::uint8_t { none = 1, whole = 2, mixed = 3 };

/// The covers of all blocks of a strip: a bit for each block, the first the lowest.
struct BlockCovers {
    std::uint64_t shown = 0;
    std::uint64_t hidden = ~std::uint64_t{0};
    static_assert(kViewStripWidth / kViewBlockWidth == 64);

    static constexpr BlockCovers allOf(Cover cover) {
        const auto bits = static_cast<unsigned>(cover);
        return {bits & 2 ? ~std::uint64_t{0} : 0, bits & 1 ? ~std::uint64_t{0} : 0};
    }

    [[nodiscard]] Cover of(int block) const {
        return static_cast<Cover>((shown >> block & 1) << 1 | (hidden >> block & 1));
    }
    /// Says of blocks `begin` to `end`, at least one, how they are covered.
    void set(int begin, int end, Cover cover) {
        const std::uint64_t blocks = (end < 64 ? std::uint64_t{1} << end : 0) - (std::uint64_t{1} << begin);
        const BlockCovers all = allOf(cover);
        shown = (shown & ~blocks) | (all.shown & blocks);
        hidden = (hidden & ~blocks) | (all.hidden & blocks);
    }
    /// The first block after `block`, `end` at the latest, that is covered otherwise.
    [[nodiscard]] int endOfRun(int block, int end) const {
        const BlockCovers same = allOf(of(block));
        const std::uint64_t others = ((shown ^ same.shown) | (hidden ^ same.hidden)) >> block;
        return others == 0 ? end : std::min(end, block + std::countr_zero(others));
    }

    /// What shows over two lots of pixels together.
    friend BlockCovers operator|(const BlockCovers& a, const BlockCovers& b) {
        return {a.shown | b.shown, a.hidden | b.hidden};
    }
    /// What two things leave that both hide a part of a layer.
    friend BlockCovers operator&(const BlockCovers& a, const BlockCovers& b) {
        return {a.shown & b.shown, a.hidden | b.hidden};
    }
};

/// A mask laid on the screen, sampled row by row over one strip of columns. The level is borrowed.
class ViewMask {
 public:
    ViewMask(const MaskSnapshot::Level& level, PlacedSamples across, PlacedSamples down)
        : level_(level), across_(across), down_(down) {}

    /// As ViewPlane::moveToColumns().
    void moveToColumns(int x, int width);

    /// Whether the answers of covers() may be others than in the row before.
    bool moveToRow(int y);

    /// What the mask leaves of each block of the row. Mixed where in doubt.
    [[nodiscard]] BlockCovers covers() const { return top_->covers | bottom_->covers; }

    /// What shows of each sample of blocks `begin` to `end` of the row: the mask, interpolated, times
    /// `columnCoverage` of the pixel (counted from the strip's left edge) and `rowCoverage`, 0 to 1.
    void findShares(int begin, int end, const float* columnCoverage, float rowCoverage, Share* shares);

 private:
    /// A row of the level, as far as the strip reads it, and what it leaves of each block.
    struct Line {
        int row = -1;
        std::vector<std::uint8_t> values;
        std::vector<std::uint8_t> tiles;  ///< what each tile says of the row
        BlockCovers covers;
    };

    const Line* lineOf(int row);
    void findCovers(Line& line) const;
    [[nodiscard]] int endOfEqual(const Line& line, int column) const;

    /// Of the line, that the block reads.
    [[nodiscard]] int firstColumnOf(int block) const {
        return left_[static_cast<std::size_t>(block) * kViewBlockWidth];
    }
    [[nodiscard]] int lastColumnOf(int block) const {
        return left_[static_cast<std::size_t>(block + 1) * kViewBlockWidth - 1] + across_.next(0);
    }

    const MaskSnapshot::Level& level_;
    PlacedSamples across_;
    PlacedSamples down_;
    int firstColumn_ = 0;  ///< of the level, in lines_
    int columns_ = 0;
    int row_ = -1;  ///< of the level, in top_; the one after it is in bottom_
    float weight_ = 0;
    const Line* top_ = nullptr;
    const Line* bottom_ = nullptr;
    std::array<Line, 2> lines_;  ///< of an even row and an odd one
    int blocks_ = 0;
    std::vector<std::uint8_t> blocksBefore_;  ///< how many read no column from this one on
    std::array<int, kViewStripWidth> left_;   ///< columns of the lines
    std::array<float, kViewStripWidth> weights_;
    std::array<std::uint32_t, kViewStripWidth> quads_;
};

}  // namespace trimora::cutengine::kernels
