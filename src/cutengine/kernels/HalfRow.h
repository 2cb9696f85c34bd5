#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "foundation/Bitmap.h"

namespace trimora::cutengine::kernels {

/// Makes one row of a picture half as large from two rows of `width` pixels: every pixel the mean of
/// four, each component rounded to the nearest, halves up. An odd last column counts twice; (width + 1)
/// / 2 pixels are written. What lies `ahead` bytes after both rows is fetched into the cache meanwhile; 0
/// fetches nothing.
void halveRows(const std::uint8_t* top, const std::uint8_t* bottom, int width, std::uint8_t* half,
               std::size_t ahead = 0);

/// Row `y` of a picture half as large, of the two rows that it stands for; a last row that is alone counts
/// twice.
inline void halveInto(foundation::MutableBitmapView half, int y, foundation::BitmapView picture) {
    halveRows(picture.row(2 * y), picture.row(std::min(2 * y + 1, picture.height - 1)), picture.width,
              half.row(y));
}

/// Makes one row as halveRows() does, and writes both rows past the caches to where they stay, at multiples
/// of 64 bytes.
void keepAndHalveRows(const std::uint8_t* top, const std::uint8_t* bottom, int width, std::uint8_t* keptTop,
                      std::uint8_t* keptBottom, std::uint8_t* half);

}  // namespace trimora::cutengine::kernels
