#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "codecs/Bytes.h"
#include "codecs/JpegReading.h"
#include "codecs/JpegWalk.h"

namespace trimora::codecs {

/// The lower rows of a JPEG file's picture as a file of its own, in two pieces.
///
/// Above those rows lies one row of blocks that means nothing: it brings a reader to the state that the rows
/// want, the means that their first blocks build upon and the place within a byte. As rows may look at the
/// row of blocks above them, those of the second row of blocks are not all as they should be either; from
/// the third on they are.
struct JpegTail {
    std::vector<std::uint8_t> start;  ///< the header and the row that means nothing
    Bytes rest;                       ///< the data of the file itself
};

/// The tail from `place` on, where row of blocks `blockRow` begins. `header` has read the file's header.
/// None for a file whose codes cannot tell what is needed, which is rare.
[[nodiscard]] std::optional<JpegTail> jpegTail(const JpegReading& header, Bytes file, const JpegPlace& place,
                                               int blockRow);

}  // namespace trimora::codecs
