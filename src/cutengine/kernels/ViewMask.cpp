#include "cutengine/kernels/ViewMask.h"

#include <algorithm>

#include "cutengine/kernels/MaskRow.h"

namespace trimora::cutengine::kernels {
namespace {

float real(Share weight) {
    return static_cast<float>(weight) / 32768;
}

}  // namespace

void ViewMask::moveToColumns(int x, int width) {
    blocks_ = width / kViewBlockWidth;
    row_ = -1;
    firstColumn_ = across_.at(x).index / kMaskPiece * kMaskPiece;
    columns_ = across_.next(across_.at(x + width - 1).index) - firstColumn_ + 1;
    for (Line& line : lines_) {
        line.row = -1;
        line.values.resize(static_cast<std::size_t>(maskPieces(columns_)));
        line.tiles.resize(static_cast<std::size_t>(columns_ / MaskSnapshot::kTileSide + 2));
    }
    for (int i = 0; i < width; ++i) {
        const SamplePlace place = across_.at(x + i);
        const auto slot = static_cast<std::size_t>(i);
        left_[slot] = place.index - firstColumn_;
        weights_[slot] = real(place.weight);
    }
    blocksBefore_.resize(static_cast<std::size_t>(columns_) + 1);
    auto from = blocksBefore_.begin();
    for (int block = 0; block < blocks_; ++block) {
        const auto to = blocksBefore_.begin() + lastColumnOf(block) + 1;
        std::fill(from, std::max(from, to), static_cast<std::uint8_t>(block));
        from = std::max(from, to);
    }
    std::fill(from, blocksBefore_.end(), static_cast<std::uint8_t>(blocks_));
}

bool ViewMask::moveToRow(int y) {
    const SamplePlace place = down_.at(y);
    weight_ = real(place.weight);
    if (place.index == row_)
        return false;
    row_ = place.index;
    top_ = lineOf(row_);
    bottom_ = lineOf(down_.next(row_));
    return true;
}

void ViewMask::findShares(int begin, int end, const float* columnCoverage, float rowCoverage, Share* shares) {
    const auto first = static_cast<std::size_t>(begin) * kViewBlockWidth;
    const std::size_t count = static_cast<std::size_t>(end - begin) * kViewBlockWidth;
    const std::uint8_t* const top = top_->values.data();
    const std::uint8_t* const bottom = bottom_->values.data();
    const int next = across_.next(0);  // 0 in a mask of one column, whose only value stands for both
    for (std::size_t i = first; i < first + count; ++i) {
        const int left = left_[i];
        const int right = left + next;
        quads_[i] = static_cast<std::uint32_t>(top[left] | top[right] << 8 | bottom[left] << 16) |
                    static_cast<std::uint32_t>(bottom[right]) << 24;
    }
    maskShares({&quads_[first], &weights_[first], weight_, columnCoverage + first, rowCoverage}, count,
               shares);
}

const ViewMask::Line* ViewMask::lineOf(int row) {
    Line& line = lines_[static_cast<std::size_t>(row % 2)];
    if (line.row != row) {
        line.row = row;
        copyMaskRow(level_, firstColumn_, row, columns_, line.values.data(), line.tiles.data());
        findCovers(line);
    }
    return &line;
}

void ViewMask::findCovers(Line& line) const {
    line.covers = BlockCovers::allOf(Cover::mixed);
    for (int block = 0; block < blocks_;) {
        const int first = firstColumnOf(block);
        const std::uint8_t value = line.values[static_cast<std::size_t>(first)];
        if (value != 0 && value != 255) {
            ++block;
            continue;
        }
        const int end = endOfEqual(line, first);
        const int decided = blocksBefore_[static_cast<std::size_t>(end)];
        if (block < decided)
            line.covers.set(block, decided, value == 0 ? Cover::none : Cover::whole);
        block = std::max(block, decided);
        if (block < blocks_ && firstColumnOf(block) < end)
            ++block;
    }
}

/// Where the values that equal that of `column` end. Tiles whose row is of one value are not looked at.
int ViewMask::endOfEqual(const Line& line, int column) const {
    constexpr int kSide = MaskSnapshot::kTileSide;
    const std::uint8_t value = line.values[static_cast<std::size_t>(column)];
    const int before = firstColumn_ % kSide;  // of the first tile
    for (int tile = (before + column) / kSide; column < columns_; ++tile) {
        const int end = std::min(columns_, (tile + 1) * kSide - before);
        if (line.tiles[static_cast<std::size_t>(tile)] != value) {
            const int stop = endOfEqualValues(line.values.data(), column, end, value);
            if (stop < end)
                return stop;
        }
        column = end;
    }
    return columns_;
}

}  // namespace trimora::cutengine::kernels
