#include "codecs/PngWholePicture.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "cutengine/kernels/RowFilter.h"

namespace trimora::codecs {

namespace kernels = cutengine::kernels;

namespace {

using foundation::AlphaMode;
using foundation::Bitmap;
using kernels::FilePixel;

constexpr int kTrueColour = 2;
constexpr int kTrueColourWithAlpha = 6;
constexpr std::size_t kReadTooFar = 16;  // what unfilterRow() reads after the last row

constexpr std::size_t kType = 4;      // bytes before a chunk's contents
constexpr std::size_t kChecksum = 4;  // bytes after them

Bytes contentsOf(Bytes chunk) {
    return chunk.subspan(kType, chunk.size() - kType - kChecksum);
}

bool isIntact(Bytes chunk) {
    const std::size_t checked = chunk.size() - kChecksum;
    return libdeflate_crc32(0, chunk.data(), checked) == u32(chunk, checked);
}

std::optional<FilePixel> kindOf(const PngChunks& chunks) {
    const bool isUsual = chunks.bitDepth == 8 && !chunks.isInterlaced && !chunks.hasTransparency &&
                         !chunks.isCutShort && std::all_of(chunks.data.begin(), chunks.data.end(), isIntact);
    if (isUsual && chunks.colourType == kTrueColour)
        return FilePixel::rgb;
    if (isUsual && chunks.colourType == kTrueColourWithAlpha)
        return FilePixel::rgba;
    return std::nullopt;
}

std::vector<std::uint8_t> joinedContents(const std::vector<Bytes>& chunks) {
    std::size_t size = 0;
    for (const Bytes& chunk : chunks)
        size += contentsOf(chunk).size();
    std::vector<std::uint8_t> bytes;
    bytes.reserve(size);
    for (const Bytes& chunk : chunks) {
        const Bytes contents = contentsOf(chunk);
        bytes.insert(bytes.end(), contents.begin(), contents.end());
    }
    return bytes;
}

bool inflate(const PngChunks& chunks, std::uint8_t* to, std::size_t size) {
    const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> inflater(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    const bool isOne = chunks.data.size() == 1;
    const std::vector<std::uint8_t> several =
        isOne ? std::vector<std::uint8_t>() : joinedContents(chunks.data);
    const Bytes packed = isOne ? contentsOf(chunks.data.front()) : Bytes(several);
    return inflater != nullptr && libdeflate_zlib_decompress(inflater.get(), packed.data(), packed.size(), to,
                                                             size, nullptr) == LIBDEFLATE_SUCCESS;
}

/// Turns rows of differences, `rowSize` bytes each with the filter's number first, into the bitmap's pixels.
/// They lie in its own memory, no row before the place where its pixels belong. False where a filter is
/// unknown.
bool unfilter(const std::uint8_t* rows, std::size_t rowSize, FilePixel kind, Bitmap& bitmap) {
    const auto width = static_cast<std::size_t>(bitmap.width());
    const std::vector<std::uint8_t> nothing(width * 4, 0);
    const std::uint8_t* above = nothing.data();
    for (int y = 0; y < bitmap.height(); ++y, rows += rowSize) {
        if (*rows >= kernels::kRowFilters)
            return false;
        kernels::unfilterRow(static_cast<kernels::RowFilter>(*rows), rows + 1, kind, above, width,
                             bitmap.row(y));
        above = bitmap.row(y);
    }
    return true;
}

}  // namespace

std::optional<Bitmap> readWholePicture(const PngChunks& chunks) {
    const std::optional<FilePixel> kind = kindOf(chunks);
    if (!kind)
        return std::nullopt;
    const std::size_t rowSize = 1 + static_cast<std::size_t>(*kind) * chunks.width;
    // A row of differences is larger than its pixels by one byte where those fill the row to its end.
    auto bitmap = Bitmap::createWithSpare(static_cast<int>(chunks.width), static_cast<int>(chunks.height),
                                          *kind == FilePixel::rgb ? AlphaMode::opaque : AlphaMode::straight,
                                          chunks.height + kReadTooFar);
    if (!bitmap)
        return std::nullopt;
    const std::size_t size = rowSize * chunks.height;
    const std::size_t memory = bitmap->stride() * chunks.height + chunks.height;
    std::uint8_t* const rows = bitmap->row(0) + (memory - size);
    if (!inflate(chunks, rows, size) || !unfilter(rows, rowSize, *kind, *bitmap))
        return std::nullopt;
    return std::move(*bitmap);
}

}  // namespace trimora::codecs
