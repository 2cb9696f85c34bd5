#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "cutengine/kernels/DeflateBlock.h"

namespace trimora::cutengine::kernels {

/// Compresses a zlib stream whose writer knows its own shape: bytes of 4-byte pixels, nearly all zero,
/// the others often the same as the pixel before. No search for matches takes place; runs come in as
/// runs and leave as deflate's matches at distance 1 (zeros) and 4 (pixels), with Huffman codes fitted
/// to every block. The time taken goes with the number of runs, not of bytes: the checksum at the
/// stream's end, too, is worked out run by run.
///
/// The bytes announced must all be written; finish() ends the stream.
class RunDeflate {
 public:
    /// `total` is the number of bytes that the stream will decompress to.
    explicit RunDeflate(std::uint64_t total);

    void byte(std::uint8_t value);
    void zeros(std::uint64_t count);
    /// Four bytes, not all zero, the lowest of `value` first.
    void pixel(std::uint32_t value);

    /// The compressed stream. Nothing can be written after it.
    [[nodiscard]] std::vector<std::uint8_t> finish();

 private:
    // One literal byte, or a match of any length from 3 on.
    enum class Kind : std::uint8_t { literal, zeroRun, pixelRun };
    struct Token {
        Kind kind;
        std::uint32_t value;  // the byte, or the match's length
    };

    void push(Token token);
    void literal(std::uint8_t value) { push({Kind::literal, value}); }
    void flushRuns();
    void flushZeros();
    void addToChecksum(std::uint8_t value);
    [[nodiscard]] std::uint32_t checksum() const;

    void writeBlock(bool last);
    void writeMatch(const BlockCode& code, Kind kind, std::uint32_t length);

    std::uint64_t total_;
    std::uint64_t written_ = 0;
    std::uint64_t sum_ = 1;          // of the bytes, modulo kModulus
    std::uint64_t weightedSum_ = 0;  // of the sums after every byte

    std::uint64_t pendingZeros_ = 0;
    std::uint64_t pendingPixels_ = 0;  // further ones like lastPixel_
    std::uint32_t lastPixel_ = 0;
    bool afterPixel_ = false;

    std::vector<Token> tokens_;
    BitWriter stream_;
};

}  // namespace trimora::cutengine::kernels
