#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "codecs/Bytes.h"
#include "foundation/Result.h"

namespace trimora::codecs {

/// The pieces of a PNG file, told apart without inflating any.
///
/// The bytes of the pieces that make the picture are listed for the library to read; all others (texts,
/// private data) it never sees, so that it cannot be made to unpack them.
struct PngChunks {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    int bitDepth = 0;
    int colourType = 0;
    bool isInterlaced = false;
    bool hasTransparency = false;  ///< a tRNS chunk
    bool isCutShort = false;       ///< the file ends before its end mark

    Bytes icc;   ///< contents of iCCP: name, 0, method, compressed profile; empty where absent
    Bytes gama;  ///< contents of gAMA
    Bytes chrm;  ///< contents of cHRM
    Bytes exif;  ///< contents of eXIf
    bool isSrgb = false;

    /// What the library is to read, in order. Where the file ends in the middle of picture data, that
    /// piece is described as being as long as it is.
    std::vector<Bytes> picture;
    std::vector<Bytes> data;                 ///< the whole IDAT chunks: type, contents, checksum
    std::array<std::uint8_t, 8> lastHead{};  ///< rewritten length and type; `picture` points to it
};

/// Tells the pieces of the file apart. `chunks` must not move afterwards. An error where the file does not
/// begin as a PNG must.
[[nodiscard]] foundation::Result<void> readPngChunks(Bytes file, PngChunks& chunks);

/// The ICC profile in the contents of an iCCP chunk; empty where it is damaged or longer than
/// kMostProfileBytes once unpacked.
[[nodiscard]] std::vector<std::uint8_t> unpackedIcc(Bytes icc);

}  // namespace trimora::codecs
