#pragma once

#include <cstdint>

namespace trimora::cutengine::kernels {

/// Makes one row of a picture half as large from two rows of `width` pixels: every pixel the mean of
/// four, each component rounded to the nearest, halves up. An odd last column counts twice; (width + 1)
/// / 2 pixels are written.
void halveRows(const std::uint8_t* top, const std::uint8_t* bottom, int width, std::uint8_t* half);

}  // namespace trimora::cutengine::kernels
