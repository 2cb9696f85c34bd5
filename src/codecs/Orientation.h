#pragma once

#include <cstdint>

#include "codecs/Bytes.h"
#include "foundation/Bitmap.h"
#include "foundation/Queues.h"
#include "foundation/Result.h"

namespace trimora::codecs {

/// How a stored picture must be turned to stand upright, with the numbers that EXIF and TIFF use. Named
/// after where the stored first row and first column belong.
enum class Orientation : std::uint8_t {
    topLeft = 1,      ///< as it is
    topRight = 2,     ///< mirrored left to right
    bottomRight = 3,  ///< turned by 180 degrees
    bottomLeft = 4,   ///< mirrored top to bottom
    leftTop = 5,      ///< rows and columns exchanged
    rightTop = 6,     ///< to be turned clockwise by 90 degrees
    rightBottom = 7,  ///< exchanged across the other diagonal
    leftBottom = 8,   ///< to be turned counter-clockwise by 90 degrees
};

/// The orientation of that number; topLeft for a number that means nothing.
[[nodiscard]] Orientation orientationOf(std::uint32_t number);

/// What a block of EXIF data (beginning with its byte-order mark) says; topLeft where it says nothing or
/// is damaged.
[[nodiscard]] Orientation exifOrientation(Bytes exif);

/// The picture standing upright: itself where it does already, else a new one. Fails only for want of
/// memory.
[[nodiscard]] foundation::Result<foundation::Bitmap> upright(foundation::Bitmap stored,
                                                             Orientation orientation,
                                                             foundation::Workers& workers);

}  // namespace trimora::codecs
