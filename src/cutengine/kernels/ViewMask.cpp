#include "cutengine/kernels/ViewMask.h"

#include <algorithm>
#include <cstring>

#include "cutengine/kernels/MaskRow.h"

namespace trimora::cutengine::kernels {
namespace {

float real(Share weight) {
    return static_cast<float>(weight) / 32768;
}

Cover coverOfValues(const std::uint8_t* values, int count) {
    constexpr int kStep = sizeof(std::uint64_t);
    std::uint64_t any = 0;
    std::uint64_t all = ~std::uint64_t{0};
    const auto take = [&](const std::uint8_t* from) {
        std::uint64_t word = 0;
        std::memcpy(&word, from, kStep);
        any |= word;
        all &= word;
    };
    if (count < kStep) {
        const auto are = [&](int value) {
            return std::all_of(values, values + count, [value](std::uint8_t v) { return v == value; });
        };
        if (are(0))
            return Cover::none;
        return are(255) ? Cover::whole : Cover::mixed;
    }
    for (int i = 0; i + kStep <= count; i += kStep)
        take(values + i);
    take(values + count - kStep);
    if (any == 0)
        return Cover::none;
    return ~all == 0 ? Cover::whole : Cover::mixed;
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
    const Cover all = coverOfValues(line.values.data(), columns_);
    line.covers.fill(all);
    for (int block = 0; all == Cover::mixed && block < blocks_; ++block) {
        const auto begin = static_cast<std::size_t>(block * kViewBlockWidth);
        const int first = left_[begin];
        const int last = left_[begin + kViewBlockWidth - 1] + across_.next(0);
        line.covers[static_cast<std::size_t>(block)] = coverOfValues(line.values.data() + first, last - first + 1);
    }
}

}  // namespace trimora::cutengine::kernels
