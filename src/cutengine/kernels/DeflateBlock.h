#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>

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
inline constexpr std::uint32_t kEmptyStored = 0xFFFF0000;  ///< a length of 0, and its complement

/// Writes bits, the first lowest, straight into memory that is known to be large enough: each flush() writes
/// kFlushed bytes, of which those that are not full yet are written again by the next.
struct FastBits {
    static constexpr std::size_t kFlushed = sizeof(std::uint64_t);

    std::uint8_t* to;
    std::uint64_t bits = 0;
    std::uint32_t count = 0;  ///< 0 to 7 after every flush()

    /// At most 57 bits between two flushes.
    void put(std::uint64_t value, std::uint32_t size) {
        bits |= value << count;
        count += size;
    }
    void flush() {
        std::memcpy(to, &bits, sizeof bits);
        to += count >> 3;
        bits >>= count & ~7U;
        count &= 7U;
    }
};

/// Ends a piece of a stream, of which others may follow, on a whole byte: an empty stored block, in at most
/// kMarkSize bytes.
inline constexpr std::size_t kMarkSize = 6;
inline void putMark(FastBits& to) {
    to.put(0, 3);
    to.put(0, (8 - to.count % 8) % 8);
    to.flush();
    to.put(kEmptyStored, 32);
    to.flush();
}

/// Bits, the first lowest, taken from bytes, which are borrowed.
class BitReader {
 public:
    static constexpr std::size_t kSlack = 8;  ///< bytes that must be there beyond the end

    /// All of `bytes` but the last kSlack are to be read; what stands in those does not matter.
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
    /// Takes a mark as putMark() writes it; false, and nothing taken, where anything else comes next.
    [[nodiscard]] bool takeMark();
    /// Whether all has been taken.
    [[nodiscard]] bool isAtEnd() const { return 8 * next_ - static_cast<std::size_t>(count_) == 8 * size_; }

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

/// Begins a block with these codes, which is not the last, in at most kLargestHeader bytes.
void putBlockHeader(FastBits& to, const BlockCode& code);
inline constexpr std::size_t kLargestHeader = 576;

/// Reads that; none for another kind of block, or where it is damaged.
[[nodiscard]] std::optional<BlockCode> takeBlockHeader(BitReader& from);

}  // namespace trimora::cutengine::kernels
