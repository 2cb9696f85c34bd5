#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "cutengine/kernels/DeflateBlock.h"

namespace trimora::cutengine::kernels {

/// Reads what RunDeflate writes, and hands its runs over as runs: nothing is laid out byte by byte, so that
/// the time taken goes with the number of runs. A stream that another program wrote is recognised by what
/// RunDeflate never uses (blocks without codes of their own, matches at other distances); any zlib decoder
/// reads both.
///
/// Damage is found where it breaks the format; the checksum at the stream's end is not looked at.
class RunInflate {
 public:
    /// Bytes as they come: `zeros` of them 0, then `count` times `value`.
    struct Run {
        std::uint64_t zeros = 0;
        std::uint64_t count = 0;
        std::uint8_t value = 0;
    };

    /// `stream` is a whole zlib stream.
    explicit RunInflate(std::vector<std::uint8_t> stream);

    /// Gives every run to `take`, in order, until that returns false. True where the stream came to its end;
    /// false also for a stream that RunDeflate would not have written.
    template <typename Take>
    [[nodiscard]] bool read(const Take& take) {
        while (const auto block = beginBlock()) {
            if (!readBlock(*block, take))
                return false;
            if (block->isLast)
                return !bits_.isBeyondEnd();
        }
        return false;
    }

 private:
    /// What the bits that come next mean: a byte, a length, or the end of the block.
    struct Entry {
        static constexpr std::uint8_t kByte = 0xFF;
        static constexpr std::uint8_t kEnd = 0xFE;

        std::uint16_t value = 0;  ///< the byte, or the least of the lengths
        std::uint8_t bits = 0;    ///< of the code; 0 where no code begins so
        std::uint8_t extra = 0;   ///< bits that follow the code of a length, or one of the two above
    };

    class Table {
     public:
        explicit Table(const HuffmanCode& code);

        [[nodiscard]] Entry at(std::uint64_t bits) const {
            const Entry entry = short_[bits % short_.size()];
            return entry.bits > 0 || long_.empty() ? entry : long_[bits % long_.size()];
        }
        /// How many of the matches that repeat a byte as often as one can come next; fewer where there are
        /// many.
        [[nodiscard]] std::uint32_t longestMatches(std::uint64_t bits) const {
            return longestBits_ == 0
                       ? 0
                       : static_cast<std::uint32_t>(std::countr_zero((bits ^ longest_) | kUnsure)) /
                             longestBits_;
        }
        [[nodiscard]] int longestBits() const { return static_cast<int>(longestBits_); }

     private:
        static constexpr std::size_t kShortBits = 10;
        static constexpr std::size_t kLongBits = 15;
        static constexpr std::uint64_t kUnsure = std::uint64_t{1}
                                                 << 56;  // the first that BitReader may not know

        std::array<Entry, std::size_t{1} << kShortBits> short_{};
        std::vector<Entry> long_;        // empty where no code is longer
        std::uint64_t longest_ = 0;      // that match again and again
        std::uint32_t longestBits_ = 0;  // of one; 0 where there is none
    };
    struct Block {
        Table literals;
        bool isLast = false;
    };

    [[nodiscard]] std::optional<Block> beginBlock();

    /// Up to the end of the block; false where it is none of RunDeflate's, or `take` has had enough.
    template <typename Take>
    [[nodiscard]] bool readBlock(const Block& block, const Take& take) {
        BitReader bits = bits_;  // nobody else sees it change, so that it stays in registers
        for (;;) {
            const std::uint64_t next = bits.look();
            const Entry entry = block.literals.at(next);
            if (entry.bits == 0 || bits.isBeyondEnd())
                return false;
            bits.skip(entry.bits);
            if (entry.extra == Entry::kByte) {
                if (!takeByte(static_cast<std::uint8_t>(entry.value), take))
                    return false;
                continue;
            }
            if (entry.extra == Entry::kEnd)
                break;
            const std::uint64_t rest = next >> entry.bits;
            const std::uint64_t extra = rest & ((std::uint64_t{1} << entry.extra) - 1);
            const bool isPixelBefore = (rest >> entry.extra & 1) != 0;
            bits.skip(entry.extra + 1);
            std::uint64_t length = entry.value + extra;
            if (isPixelBefore) {
                const Entry after = block.literals.at(bits.look());
                if (length == 3 && (last_ & 0x00FFFFFF) == 0 && after.extra == Entry::kByte) {
                    // A pixel that differs in alpha alone, as nearly all of a mask do.
                    bits.skip(after.bits);
                    last_ = std::uint32_t{after.value} << 24;
                    if (!take(Run{3, 1, static_cast<std::uint8_t>(after.value)}))
                        return false;
                } else if (!takePixelBytes(length, take)) {
                    return false;
                }
                continue;
            }
            while (const std::uint32_t more = block.literals.longestMatches(bits.look())) {
                bits.skip(static_cast<int>(more) * block.literals.longestBits());
                length += std::uint64_t{more} * kLongestMatch;
                if (bits.isBeyondEnd())
                    return false;
            }
            const auto value = static_cast<std::uint8_t>(last_ >> 24);
            last_ = value * 0x01010101U;
            if (!take(Run{0, length, value}))
                return false;
        }
        bits_ = bits;
        return true;
    }

    template <typename Take>
    [[nodiscard]] bool takeByte(std::uint8_t value, const Take& take) {
        last_ = last_ >> 8 | std::uint32_t{value} << 24;
        return take(Run{0, 1, value});
    }

    /// The bytes of the last pixel once more.
    template <typename Take>
    [[nodiscard]] bool takePixelBytes(std::uint64_t length, const Take& take) {
        for (std::uint64_t i = 0; i < length; ++i) {
            if (!takeByte(static_cast<std::uint8_t>(last_), take))
                return false;
        }
        return true;
    }

    std::vector<std::uint8_t> body_;
    BitReader bits_;
    std::uint32_t last_ = 0;  // the last four bytes, the latest highest
};

}  // namespace trimora::cutengine::kernels
