#include "cutengine/kernels/PngChunks.h"

#include <libdeflate.h>

#include <algorithm>

namespace trimora::cutengine::kernels {
namespace {

using foundation::Error;
using foundation::Result;

constexpr std::size_t kWord = 4;
constexpr std::size_t kAroundData = 3 * kWord;  // length and type before, check value after
constexpr std::uint64_t kLongestData = 0x7FFFFFFF;

}  // namespace

std::uint64_t bigEndian(std::span<const std::uint8_t> bytes) {
    std::uint64_t value = 0;
    for (const std::uint8_t byte : bytes)
        value = value << 8 | byte;
    return value;
}

void appendBigEndian(std::vector<std::uint8_t>& bytes, std::uint64_t value, int count) {
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

Result<std::vector<PngChunk>> readPngChunks(std::span<const std::uint8_t> file) {
    if (file.size() < kPngSignature.size() ||
        !std::equal(kPngSignature.begin(), kPngSignature.end(), file.begin()))
        return Error{"not a PNG file"};
    std::vector<PngChunk> chunks;
    for (auto rest = file.subspan(kPngSignature.size()); rest.size() >= kAroundData;) {
        const std::uint64_t length = bigEndian(rest.first(kWord));
        if (length > kLongestData || length > rest.size() - kAroundData)
            break;
        const auto checked = rest.subspan(kWord, kWord + length);
        if (libdeflate_crc32(0, checked.data(), checked.size()) !=
            bigEndian(rest.subspan(2 * kWord + length, kWord)))
            return Error{"the PNG file is damaged"};
        chunks.push_back({{reinterpret_cast<const char*>(checked.data()), kWord}, checked.subspan(kWord)});
        if (chunks.back().type == "IEND")
            return chunks;
        rest = rest.subspan(kAroundData + length);
    }
    return Error{"the PNG file ends too early"};
}

void appendPngChunk(std::vector<std::uint8_t>& file, const PngChunk& chunk) {
    appendBigEndian(file, chunk.data.size(), kWord);
    const std::size_t checkedFrom = file.size();
    file.insert(file.end(), chunk.type.begin(), chunk.type.end());
    file.insert(file.end(), chunk.data.begin(), chunk.data.end());
    appendBigEndian(file, libdeflate_crc32(0, file.data() + checkedFrom, file.size() - checkedFrom), kWord);
}

}  // namespace trimora::cutengine::kernels
