#pragma once

#include "cutengine/kernels/MaskSnapshot.h"

namespace trimora::cutengine::kernels {

/// Copies `count` values of row `y`, from column `x` on, out of the tiles into one line.
void copyMaskRow(const MaskSnapshot::Level& level, int x, int y, int count, std::uint8_t* line);

/// Whether `count` values, at least one, are all the same as `value`.
[[nodiscard]] bool isConstant(const std::uint8_t* values, int count, std::uint8_t value);

}  // namespace trimora::cutengine::kernels
