#pragma once

#include <array>
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
    void zeros(std::uint64_t count) {
        if (count > 0)
            someZeros(count);
    }
    /// Four bytes, not all zero, the lowest of `value` first.
    void pixel(std::uint32_t value);

    /// The compressed stream. Nothing can be written after it.
    [[nodiscard]] std::vector<std::uint8_t> finish();

 private:
    // What a symbol is: a byte; the length of a match one byte or one pixel back; or the last byte of a
    // pixel whose others are those of the pixel before.
    enum class Way : std::uint8_t { literal, byteBefore, pixelBefore, lastByte };
    struct Token {
        std::uint16_t symbol = 0;
        std::uint8_t extra = 0;  // what the length adds to the symbol's least
        Way way = Way::literal;
        std::uint32_t times = 1;  // of the longest match alone
    };

    void push(Token token);
    void someZeros(std::uint64_t count);
    void literal(std::uint8_t value) { push({value, 0, Way::literal, 1}); }
    void match(Way way, std::uint32_t length);
    void run(Way way, std::uint32_t length);
    void flushRuns();
    void flushZeros();
    void addToChecksum(std::uint8_t value);
    [[nodiscard]] std::uint32_t checksum() const;

    void writeBlock(bool last);

    std::uint64_t total_;
    std::uint64_t written_ = 0;
    std::uint64_t sum_ = 1;          // of the bytes, modulo kModulus
    std::uint64_t weightedSum_ = 0;  // of the sums after every byte, partly modulo kModulus

    std::uint64_t pendingZeros_ = 0;
    std::uint64_t pendingPixels_ = 0;  // further ones like lastPixel_
    std::uint32_t lastPixel_ = 0;
    bool afterPixel_ = false;

    std::vector<Token> tokens_;
    std::array<std::uint32_t, kLiteralSymbols> frequencies_{};  // of their symbols
    BitWriter stream_;
};

}  // namespace trimora::cutengine::kernels
