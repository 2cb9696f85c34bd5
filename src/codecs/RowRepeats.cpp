#include "codecs/RowRepeats.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

namespace trimora::codecs {

namespace kernels = cutengine::kernels;

namespace {

using Buffer = std::vector<std::uint8_t>;

constexpr std::size_t kBytesPerPixel = 4;
constexpr std::size_t kPieces = 8;

/// Some of the rows, as if the picture were no larger; what is put together lies in `room`.
kernels::FilteredRows sampleOf(const kernels::FilteredRows& rows, Buffer& room) {
    const std::size_t pixels = std::min(rows.pixelsPerRow, kRepeatSampleBytes / kBytesPerPixel);
    const std::size_t size = 1 + pixels * kBytesPerPixel;
    if (pixels == rows.pixelsPerRow)
        return {rows.bytes.first(size * std::clamp<std::size_t>(kRepeatSampleBytes / size, 1, rows.count())),
                pixels};
    const std::size_t piece = pixels / kPieces;
    room.assign(1, rows.bytes.front());
    for (std::size_t i = 0; i < kPieces; ++i) {
        const std::size_t first = i * (rows.pixelsPerRow - piece) / (kPieces - 1);
        const auto part = rows.bytes.subspan(1 + first * kBytesPerPixel, piece * kBytesPerPixel);
        room.insert(room.end(), part.begin(), part.end());
    }
    return {room, pixels};
}

}  // namespace

bool repeats(const kernels::FilteredRows& rows) {
    Buffer room;
    const kernels::FilteredRows sample = sampleOf(rows, room);
    const kernels::PackedBytes plain = kernels::packPixels(sample);
    const std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)> compressor(
        libdeflate_alloc_compressor(1), libdeflate_free_compressor);
    if (!plain.buffer || !compressor)
        return false;
    const std::size_t worthwhile = plain.size - plain.size / 8;
    Buffer searched(worthwhile);
    const std::size_t size = libdeflate_deflate_compress(
        compressor.get(), sample.bytes.data(), sample.bytes.size(), searched.data(), searched.size());
    return size > 0;  // 0: it does not fit
}

}  // namespace trimora::codecs
