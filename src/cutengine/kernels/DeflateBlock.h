#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "cutengine/kernels/HuffmanCode.h"

/// What the writers and the reader of deflate streams share: bits in the format's order, a block's header,
/// and the way in which a match is spelt.
namespace trimora::cutengine::kernels {

inline constexpr std::uint32_t kLongestMatch = 258;
inline constexpr std::uint32_t kShortestMatch = 3;
inline constexpr std::size_t kEndOfBlock = 256;
inline constexpr std::size_t kLiteralSymbols = 286;  ///< bytes, the end, lengths
inline constexpr std::size_t kDistanceSymbols = 30;
inline constexpr std::uint32_t kFarthestMatch = 32768;

/// Bits, the first lowest, appended to bytes.
class BitWriter {
 public:
    /// At most 32 bits; those of `bits` above `count` are 0.
    void put(std::uint64_t bits, int count) {
        bits_ |= bits << count_;
        count_ += count;
        for (; count_ >= 32; count_ -= 32, bits_ >>= 32) {
            for (int shift = 0; shift < 32; shift += 8)
                bytes.push_back(static_cast<std::uint8_t>(bits_ >> shift));
        }
    }

    /// Zeros up to the next whole byte, and every bit into `bytes`.
    void finish();

    /// The bits that are not in `bytes` yet, and how many: 0 to 31.
    [[nodiscard]] std::pair<std::uint64_t, int> pending() const { return {bits_, count_}; }

    std::vector<std::uint8_t> bytes;

 private:
    std::uint64_t bits_ = 0;
    int count_ = 0;
};

/// Bits, the first lowest, taken from bytes, which are borrowed. Beyond their end come zeros.
class BitReader {
 public:
    static constexpr std::size_t kSlack = 8;  ///< bytes that must be there beyond the end

    /// All of `bytes` but the last kSlack are read.
    explicit BitReader(std::span<const std::uint8_t> bytes)
        : bytes_(bytes.data()), size_(bytes.size() - kSlack) {}

    /// The next bits, of which 56 at least are right, without taking them.
    [[nodiscard]] std::uint64_t look() {
        if (next_ <= size_) {
            std::uint64_t more = 0;
            std::memcpy(&more, bytes_ + next_, sizeof more);
            bits_ |= more << count_;
        }
        const int whole = (63 - count_) / 8;
        next_ += static_cast<std::size_t>(whole);
        count_ += 8 * whole;
        return bits_;
    }
    /// Takes bits that have been looked at.
    void skip(int count) {
        bits_ >>= count;
        count_ -= count;
    }
    /// Takes at most 32 bits.
    std::uint32_t take(int count) {
        const auto taken = static_cast<std::uint32_t>(look() & ((std::uint64_t{1} << count) - 1));
        skip(count);
        return taken;
    }
    /// Whether more has been taken than there was.
    [[nodiscard]] bool isBeyondEnd() const {
        return 8 * next_ - static_cast<std::size_t>(count_) > 8 * size_;
    }

 private:
    const std::uint8_t* bytes_;
    std::size_t size_;
    std::size_t next_ = 0;
    std::uint64_t bits_ = 0;
    int count_ = 0;
};

/// Bits ready to be written.
struct BitString {
    std::uint64_t bits = 0;
    int count = 0;
};

/// A run of any length from 3 bytes on as matches: many of the longest, then up to two that make up the
/// rest (0 where there is none).
struct MatchSplit {
    std::uint32_t longest = 0;
    std::array<std::uint32_t, 2> rest{};

    [[nodiscard]] static MatchSplit of(std::uint32_t length);
};

/// The two codes of a block.
struct BlockCode {
    HuffmanCode literals;   ///< of kLiteralSymbols
    HuffmanCode distances;  ///< of kDistanceSymbols or fewer, two at least of which have a code
};

/// A length of 3 to 258 bytes, or a distance of 1 to kFarthestMatch, as the format spells it: a symbol,
/// and what is to be added to the least that the symbol stands for.
struct MatchPart {
    std::size_t symbol = 0;
    std::uint32_t extra = 0;
    int extraBits = 0;

    [[nodiscard]] static MatchPart ofLength(std::uint32_t length);
    [[nodiscard]] static MatchPart ofDistance(std::uint32_t distance);

    /// How many bits are added to a length's symbol.
    [[nodiscard]] static int extraBitsOf(std::size_t symbol) {
        constexpr std::size_t kFirstWithExtra = 265;
        return symbol < kFirstWithExtra || symbol == kLiteralSymbols - 1
                   ? 0
                   : static_cast<int>((symbol - kFirstWithExtra) / 4) + 1;
    }

    /// The least length that the symbol of one stands for.
    [[nodiscard]] static std::uint32_t leastLength(std::size_t symbol);

    [[nodiscard]] BitString in(const HuffmanCode& code) const {
        const int count = code.lengths[symbol];
        return {code.bits[symbol] | static_cast<std::uint64_t>(extra) << count, count + extraBits};
    }
};

/// Begins a block with these codes.
void putBlockHeader(BitWriter& to, const BlockCode& code, bool last);

/// What a block begins with.
struct BlockHeader {
    BlockCode code;
    bool isLast = false;
};

/// Reads that; none for a block without codes of its own, or where it is damaged.
[[nodiscard]] std::optional<BlockHeader> takeBlockHeader(BitReader& from);

}  // namespace trimora::cutengine::kernels
