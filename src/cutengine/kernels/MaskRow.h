#pragma once

#include "cutengine/kernels/MaskSnapshot.h"

namespace trimora::cutengine::kernels {

/// Lines of mask values are copied in pieces of this many.
inline constexpr int kMaskPiece = 16;

/// `count` in whole pieces.
[[nodiscard]] inline constexpr int maskPieces(int count) {
    return (count + kMaskPiece - 1) / kMaskPiece * kMaskPiece;
}

/// Copies `count` values of row `y`, from column `x` on, out of the tiles into one line. `x` is a multiple of
/// kMaskPiece, and the line has room for maskPieces(count). What each tile says of the row goes to
/// `tileRows`, if there is one.
void copyMaskRow(const MaskSnapshot::Level& level, int x, int y, int count, std::uint8_t* line,
                 std::uint8_t* tileRows = nullptr);

/// Where the values from `begin` on that are `value` end, at `end` at the latest.
[[nodiscard]] int endOfEqualValues(const std::uint8_t* values, int begin, int end, std::uint8_t value);

}  // namespace trimora::cutengine::kernels
