#include "codecs/PngChunks.h"

#include <libdeflate.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "codecs/ColourProfile.h"

namespace trimora::codecs {
namespace {

using foundation::Error;
using foundation::Result;

constexpr std::size_t kSignatureBytes = 8;
constexpr std::size_t kHeadBytes = 8;      // length and type
constexpr std::size_t kChecksumBytes = 4;  // after the contents
constexpr std::size_t kHeaderContents = 13;
constexpr std::size_t kLongestName = 80;  // of a profile, with its closing 0

/// Adds a piece for the library to read, joined to the one before where it follows it directly.
void append(std::vector<Bytes>& picture, Bytes piece) {
    if (!picture.empty() && picture.back().data() + picture.back().size() == piece.data())
        picture.back() = Bytes(picture.back().data(), picture.back().size() + piece.size());
    else
        picture.push_back(piece);
}

void readHeader(Bytes contents, PngChunks& chunks) {
    chunks.width = u32(contents, 0);
    chunks.height = u32(contents, 4);
    chunks.bitDepth = contents[8];
    chunks.colourType = contents[9];
    chunks.isInterlaced = contents[12] != 0;
}

void keepFirst(Bytes& kept, Bytes contents) {
    if (kept.empty())
        kept = contents;
}

/// Notes what a chunk beside the picture says, where it is of use.
void note(std::string_view type, Bytes contents, PngChunks& chunks) {
    if (type == "iCCP")
        keepFirst(chunks.icc, contents);
    else if (type == "gAMA")
        keepFirst(chunks.gama, contents);
    else if (type == "cHRM")
        keepFirst(chunks.chrm, contents);
    else if (type == "eXIf")
        keepFirst(chunks.exif, contents);
    else if (type == "sRGB")
        chunks.isSrgb = true;
}

/// Picture data whose end is missing: a head that gives the length that is there, so that the library
/// reads it to the last byte before it learns that no more follows.
void appendCutShort(Bytes data, PngChunks& chunks) {
    const auto length = static_cast<std::uint32_t>(data.size());
    chunks.lastHead = {static_cast<std::uint8_t>(length >> 24),
                       static_cast<std::uint8_t>(length >> 16),
                       static_cast<std::uint8_t>(length >> 8),
                       static_cast<std::uint8_t>(length),
                       'I',
                       'D',
                       'A',
                       'T'};
    static constexpr std::array<std::uint8_t, kChecksumBytes> kNoChecksum = {};
    chunks.picture.emplace_back(chunks.lastHead);
    chunks.picture.push_back(data);
    chunks.picture.emplace_back(kNoChecksum);
}

}  // namespace

Result<void> readPngChunks(Bytes file, PngChunks& chunks) {
    std::size_t at = kSignatureBytes;
    const Bytes header = part(file, at + kHeadBytes, kHeaderContents);
    if (!startsWith(part(file, at + 4), "IHDR") || header.size() < kHeaderContents)
        return Error{"the PNG file does not begin with its header"};
    readHeader(header, chunks);
    chunks.picture.push_back(file.first(kSignatureBytes));

    chunks.isCutShort = true;
    while (at + kHeadBytes <= file.size()) {
        const std::size_t length = u32(file, at);
        const Bytes contents = part(file, at + kHeadBytes, length);
        const std::string_view type(reinterpret_cast<const char*>(file.data()) + at + 4, 4);
        const std::size_t size = kHeadBytes + length + kChecksumBytes;
        const bool whole = at + size <= file.size();
        const bool isData = type == "IDAT";
        if (isData && !whole)
            appendCutShort(contents, chunks);
        if (!whole)
            break;
        if (isData)
            chunks.data.push_back(part(file, at + 4, 4 + length + kChecksumBytes));
        if (isData || type == "IHDR" || type == "PLTE" || type == "tRNS" || type == "IEND")
            append(chunks.picture, part(file, at, size));
        else
            note(type, contents, chunks);
        chunks.hasTransparency |= type == "tRNS";
        at += size;
        if (type == "IEND") {
            chunks.isCutShort = false;
            break;
        }
    }
    return {};
}

std::vector<std::uint8_t> unpackedIcc(Bytes icc) {
    const Bytes name = part(icc, 0, kLongestName);
    const auto nameEnd = std::find(name.begin(), name.end(), std::uint8_t{0});
    const Bytes packed = part(icc, static_cast<std::size_t>(nameEnd - name.begin()) + 2);
    const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> inflater(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    if (!inflater || packed.empty())
        return {};
    constexpr std::size_t kUsual = std::size_t{64} << 10;
    for (std::size_t room = kUsual; room <= kMostProfileBytes; room *= 2) {
        std::vector<std::uint8_t> profile(room);
        std::size_t size = 0;
        const libdeflate_result outcome = libdeflate_zlib_decompress(
            inflater.get(), packed.data(), packed.size(), profile.data(), profile.size(), &size);
        if (outcome == LIBDEFLATE_SUCCESS) {
            profile.resize(size);
            return profile;
        }
        if (outcome != LIBDEFLATE_INSUFFICIENT_SPACE)
            break;
    }
    return {};
}

}  // namespace trimora::codecs
