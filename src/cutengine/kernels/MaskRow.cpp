#include "cutengine/kernels/MaskRow.h"

#include <algorithm>
#include <cstring>

namespace trimora::cutengine::kernels {

void copyMaskRow(const MaskSnapshot::Level& level, int x, int y, int count, std::uint8_t* line) {
    constexpr int kSide = MaskSnapshot::kTileSide;
    const int end = x + count;
    while (x < end) {
        const int inTile = x % kSide;
        const int here = std::min(end - x, kSide - inTile);
        const auto tile = static_cast<std::size_t>(y / kSide) * static_cast<std::size_t>(level.tilesAcross) +
                          static_cast<std::size_t>(x / kSide);
        const auto offset = static_cast<std::size_t>(y % kSide * kSide + inTile);
        std::memcpy(line, level.tiles[tile]->alpha.data() + offset, static_cast<std::size_t>(here));
        line += here;
        x += here;
    }
}

bool isConstant(const std::uint8_t* values, int count, std::uint8_t value) {
    std::uint64_t pattern = 0;
    std::memset(&pattern, value, sizeof pattern);
    const auto differs = [&](const std::uint8_t* at) {
        std::uint64_t word = 0;
        std::memcpy(&word, at, sizeof word);
        return word != pattern;
    };
    constexpr int kWord = sizeof pattern;
    if (count < kWord)
        return std::all_of(values, values + count, [value](std::uint8_t v) { return v == value; });
    for (int i = 0; i + kWord <= count; i += kWord) {
        if (differs(values + i))
            return false;
    }
    return !differs(values + count - kWord);
}

}  // namespace trimora::cutengine::kernels
