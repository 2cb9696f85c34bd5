#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "foundation/Bitmap.h"
#include "foundation/Result.h"

/// Mask planes as PNG files: RGB with alpha, 8 bits a component, un-premultiplied as the format asks.
///
/// The files carry a private ancillary chunk with a checksum of the pixels, so that a damaged file is
/// told from a good one; a PNG written by any other program, which has no such chunk, is read as it
/// stands.
namespace trimora::cutengine::kernels {

[[nodiscard]] foundation::Result<std::vector<std::uint8_t>> encodeMask(foundation::BitmapView plane);

/// The picture in the file, premultiplied. A file that is no PNG, is damaged, or whose checksum does
/// not match returns an error; so does one larger than `maxSide` pixels a side.
[[nodiscard]] foundation::Result<foundation::Bitmap> decodeMask(std::span<const std::uint8_t> file,
                                                                int maxSide);

}  // namespace trimora::cutengine::kernels
