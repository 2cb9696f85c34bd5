#include "cutengine/kernels/ViewMask.h"

#include <algorithm>
#include <cstring>

#include "cutengine/kernels/MaskRow.h"

namespace trimora::cutengine::kernels {
namespace {

float real(Share weight) {
    return static_cast<float>(weight) / 32768;
}

/// Where the values that equal the first one end.
int endOfRun(const std::uint8_t* values, int begin, int end) {
    constexpr int kStep = sizeof(std::uint64_t);
    const std::uint8_t value = values[begin];
    const std::uint64_t same = value * 0x0101010101010101U;
    std::uint64_t word = same;
    for (; begin + kStep <= end; begin += kStep) {
        std::memcpy(&word, values + begin, kStep);
        if (word != same)
            break;
    }
    while (begin < end && values[begin] == value)
        ++begin;
    return begin;
}

}  // namespace

BlockCovers ViewMask::covers() const {
    BlockCovers both;
    for (std::size_t block = 0; block < both.size(); ++block)
        both[block] = top_->covers[block] | bottom_->covers[block];
    return both;
}

void ViewMask::moveToColumns(int x, int width) {
    blocks_ = width / kViewBlockWidth;
    row_ = -1;
    firstColumn_ = across_.at(x).index / kMaskPiece * kMaskPiece;
    columns_ = across_.next(across_.at(x + width - 1).index) - firstColumn_ + 1;
    for (Line& line : lines_) {
        line.row = -1;
        line.values.resize(static_cast<std::size_t>(maskPieces(columns_)));
    }
    for (TileRow& tiles : tileRows_)
        tiles.row = -1;
    for (int i = 0; i < width; ++i) {
        const SamplePlace place = across_.at(x + i);
        const auto slot = static_cast<std::size_t>(i);
        left_[slot] = place.index - firstColumn_;
        weights_[slot] = real(place.weight);
    }
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
        const Cover all = coverOfTiles(row / MaskSnapshot::kTileSide);
        if (all == Cover::mixed) {
            copyMaskRow(level_, firstColumn_, row, columns_, line.values.data());
            findCovers(line);
        } else {
            std::fill(line.values.begin(), line.values.end(), all == Cover::none ? 0 : 255);
            line.covers.fill(all);
        }
    }
    return &line;
}

/// What a row of tiles leaves of the whole strip. Large parts of a mask are of one value.
Cover ViewMask::coverOfTiles(int row) {
    TileRow& tiles = tileRows_[static_cast<std::size_t>(row % 2)];
    if (tiles.row == row)
        return tiles.cover;
    constexpr int kSide = MaskSnapshot::kTileSide;
    const MaskSnapshot::TilePtr* const first =
        &level_.tiles[static_cast<std::size_t>(row) * static_cast<std::size_t>(level_.tilesAcross)];
    const std::uint8_t value = first[firstColumn_ / kSide]->alpha.front();
    const bool constant =
        (value == 0 || value == 255) &&
        std::all_of(first + firstColumn_ / kSide, first + (firstColumn_ + columns_ - 1) / kSide + 1,
                    [value](const MaskSnapshot::TilePtr& tile) {
                        return isConstant(tile->alpha.data(), kSide * kSide, value);
                    });
    const Cover whole = value == 0 ? Cover::none : Cover::whole;
    tiles = {row, constant ? whole : Cover::mixed};
    return tiles.cover;
}

void ViewMask::findCovers(Line& line) const {
    line.covers.fill(Cover::mixed);
    for (int block = 0; block < blocks_;) {
        const int first = firstColumnOf(block);
        const std::uint8_t value = line.values[static_cast<std::size_t>(first)];
        const bool decided = value == 0 || value == 255;
        const int end = decided ? endOfRun(line.values.data(), first, columns_) : first + 1;
        for (; decided && block < blocks_ && lastColumnOf(block) < end; ++block)
            line.covers[static_cast<std::size_t>(block)] = value == 0 ? Cover::none : Cover::whole;
        if (block < blocks_ && firstColumnOf(block) < end)
            ++block;
    }
}

}  // namespace trimora::cutengine::kernels
