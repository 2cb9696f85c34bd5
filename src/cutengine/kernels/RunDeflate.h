#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "cutengine/kernels/DeflateBlock.h"
#include "cutengine/kernels/ZlibSums.h"

namespace trimora::cutengine::kernels {

/// Compresses a piece of a zlib stream whose writer knows its own shape: bytes of 4-byte pixels, nearly all
/// zero, the others often the same as the pixel before. No search for matches takes place; runs come in as
/// runs and leave as deflate's matches at distance 1 (zeros) and 4 (pixels), with Huffman codes fitted
/// to every block. The time taken goes with the number of runs, not of bytes: the checksum, too, is worked
/// out run by run.
///
/// A piece stands for itself: it looks back at nothing before it, and ends with a mark on a whole byte. A
/// stream is kStreamHead, pieces one after the other, kStreamEnd and the checksum.
///
/// The bytes announced must all be written; finish() ends the piece.
class RunDeflate {
 public:
    /// No code is longer, so that a reader needs one table.
    static constexpr int kLongestCode = 11;

    /// `total` is the number of bytes that the piece will decompress to.
    explicit RunDeflate(std::uint64_t total);

    void byte(std::uint8_t value);
    void zeros(std::uint64_t count) {
        if (count == 0)
            return;
        flushPixels();
        afterPixel_ = false;
        pendingZeros_ += count;
        left_ -= count;
    }
    /// Four bytes, not all zero, the lowest of `value` first.
    void pixel(std::uint32_t value) {
        const auto last = static_cast<std::uint8_t>(value >> 24);
        if (!afterPixel_ || ((value | lastPixel_) & kAllButLast) != 0) {
            anyPixel(value);
        } else if (value == lastPixel_) {
            ++pendingPixels_;
            left_ -= kBytesButLast;
            count(last);
        } else {
            // The first three bytes are those of the pixel before: a match is shorter than three zeros.
            flushPixels();
            ++frequencies_[kShortestSymbol];
            ++frequencies_[last];
            push(Way::lastByte, last, 0);
            left_ -= kBytesButLast;
            count(last);
            lastPixel_ = value;
        }
    }

    struct Piece {
        std::vector<std::uint8_t> bytes;
        ZlibSums sums;
    };
    /// Nothing can be written after it.
    [[nodiscard]] Piece finish();

 private:
    // What a symbol is: a byte; the length of a match one byte or one pixel back; or the last byte of a
    // pixel whose others are those of the pixel before.
    enum class Way : std::uint8_t { literal, byteBefore, pixelBefore, lastByte };
    struct Token {
        std::uint16_t symbol = 0;  // and its way, as one number
        std::uint16_t extra = 0;   // what the length adds to the symbol's least; of the longest, how many
    };
    class SymbolBits;

    void push(Way way, std::size_t symbol, std::uint32_t extra) {
        tokens_.push_back(
            {static_cast<std::uint16_t>(static_cast<std::size_t>(way) * kLiteralSymbols + symbol),
             static_cast<std::uint16_t>(extra)});
        if (tokens_.size() == kTokensPerBlock)
            writeBlock();
    }
    void literal(std::uint8_t value) {
        ++frequencies_[value];
        push(Way::literal, value, 0);
    }
    void match(Way way, std::uint32_t length) {
        const MatchPart part = MatchPart::ofLength(length);
        ++frequencies_[part.symbol];
        push(way, part.symbol, part.extra);
    }
    void anyPixel(std::uint32_t value);
    void longest(Way way, std::uint32_t times) {
        frequencies_[kLiteralSymbols - 1] += times;
        push(way, kLiteralSymbols - 1, times);
    }
    void run(Way way, std::uint64_t length);
    void flushPixels() {
        if (pendingPixels_ > 0)
            run(Way::pixelBefore, 4 * std::exchange(pendingPixels_, 0));
    }
    void flushZeros();
    void count(std::uint8_t value) { sums_.byte(left_--, value); }
    void writeBlock();

    static constexpr std::uint32_t kAllButLast = 0x00FFFFFF;
    static constexpr std::uint64_t kBytesButLast = 3;
    static constexpr std::size_t kShortestSymbol = kEndOfBlock + 1;  // of a match of three bytes
    static constexpr std::size_t kTokensPerBlock = std::size_t{1} << 14;

    std::uint64_t left_;
    ZlibSums sums_;

    std::uint64_t pendingZeros_ = 0;
    std::uint64_t pendingPixels_ = 0;  // further ones like lastPixel_
    std::uint32_t lastPixel_ = 0;
    bool afterPixel_ = false;

    std::vector<Token> tokens_;
    std::array<std::uint32_t, kLiteralSymbols> frequencies_{};  // of their symbols
    std::vector<std::uint8_t> bytes_;
    FastBits bits_{nullptr};  // those that do not fill a byte yet
};

/// Deflate with a window of 32 KiB, compressed for speed.
inline constexpr std::array<std::uint8_t, 2> kStreamHead = {0x78, 0x01};
/// A last block with nothing in it.
inline constexpr std::array<std::uint8_t, 2> kStreamEnd = {0x03, 0x00};

}  // namespace trimora::cutengine::kernels
