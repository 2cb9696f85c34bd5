#pragma once

#include <cstdint>
#include <vector>

#include "codecs/Bytes.h"
#include "codecs/Orientation.h"

namespace trimora::codecs {

/// What a JPEG file says beside its picture, as far as it is of use here. Everything else in its markers
/// is passed over without a copy.
struct JpegMetadata {
    Orientation orientation = Orientation::topLeft;
    std::vector<std::uint8_t> icc;  ///< empty where there is none or a piece of it is missing
};

/// Reads the markers before the first scan.
[[nodiscard]] JpegMetadata readJpegMetadata(Bytes file);

}  // namespace trimora::codecs
