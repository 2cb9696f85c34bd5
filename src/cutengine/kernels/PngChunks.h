#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "foundation/Result.h"

/// The container of a PNG file: its signature and its chunks, with no look into what they hold.
namespace trimora::cutengine::kernels {

inline constexpr std::array<std::uint8_t, 8> kPngSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

struct PngChunk {
    std::string_view type;  ///< four letters
    std::span<const std::uint8_t> data;
};

/// The chunks of a file up to its end chunk, as views into it. A file with another signature, one that
/// ends before its end chunk and one with a chunk whose check value is wrong return an error.
[[nodiscard]] foundation::Result<std::vector<PngChunk>> readPngChunks(std::span<const std::uint8_t> file);

/// Appends a chunk, its length and its check value.
void appendPngChunk(std::vector<std::uint8_t>& file, const PngChunk& chunk);

void appendBigEndian(std::vector<std::uint8_t>& bytes, std::uint64_t value, int count);
[[nodiscard]] std::uint64_t bigEndian(std::span<const std::uint8_t> bytes);

}  // namespace trimora::cutengine::kernels
