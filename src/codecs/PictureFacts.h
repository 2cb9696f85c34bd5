#pragma once

#include <cstdint>
#include <string>

#include "codecs/Orientation.h"
#include "codecs/PictureFormat.h"

namespace trimora::codecs {

/// What a picture file says of itself, read without decoding a pixel: for those who tell a person about a
/// file, and for those who must know what it will cost before they begin.
///
/// Nothing of it is vouched for. A file with facts may still fail to decode.
struct PictureFacts {
    PictureFormat format = PictureFormat::jpeg;
    std::uint64_t width = 0;   ///< of the first page as it is stored, before it is turned upright
    std::uint64_t height = 0;  ///< likewise
    std::uint64_t pixels = 0;  ///< of all pages together
    Orientation orientation = Orientation::topLeft;  ///< of the first page
    int bitsPerSample = 8;
    bool hasAlpha = false;  ///< whether there is room for transparency, used or not; never told of a GIF
    std::string profile;    ///< the name that the embedded colour profile bears; empty where there is none
};

}  // namespace trimora::codecs
