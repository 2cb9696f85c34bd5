#include "cutengine/kernels/MaskRow.h"

#include <algorithm>
#include <cstring>

namespace trimora::cutengine::kernels {

static_assert(MaskSnapshot::kTileSide % kMaskPiece == 0);

void copyMaskRow(const MaskSnapshot::Level& level, int x, int y, int count, std::uint8_t* line,
                 std::uint8_t* tileRows) {
    constexpr int kSide = MaskSnapshot::kTileSide;
    constexpr int kRowsAhead = 2;  // callers go down row by row
    const int end = x + maskPieces(count);
    while (x < end) {
        const int inTile = x % kSide;
        const int here = std::min(end - x, kSide - inTile);
        const auto tile = static_cast<std::size_t>(y / kSide) * static_cast<std::size_t>(level.tilesAcross) +
                          static_cast<std::size_t>(x / kSide);
        const std::uint8_t row = level.tiles[tile]->rows[static_cast<std::size_t>(y % kSide)];
        if (tileRows != nullptr)
            *tileRows++ = row;
        if (row != MaskSnapshot::Tile::kMixed) {
            for (int i = 0; i < here; i += kMaskPiece)
                std::memset(line + i, row, kMaskPiece);
        } else {
            const auto offset = static_cast<std::size_t>(y % kSide * kSide + inTile);
            const std::uint8_t* const values = level.tiles[tile]->alpha.data() + offset;
            if (y % kSide + kRowsAhead < kSide)
                __builtin_prefetch(values + kRowsAhead * kSide);
            for (int i = 0; i < here; i += kMaskPiece)
                std::memcpy(line + i, values + i, kMaskPiece);
        }
        line += here;
        x += here;
    }
}

int endOfEqualValues(const std::uint8_t* values, int begin, int end, std::uint8_t value) {
    constexpr int kStep = sizeof(std::uint64_t);
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

}  // namespace trimora::cutengine::kernels
