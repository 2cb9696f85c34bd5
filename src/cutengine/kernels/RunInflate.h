#pragma once

#include <array>
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
    /// Bytes as they come: `count` times `value`.
    struct Run {
        std::uint64_t count = 0;
        std::uint8_t value = 0;
    };

    /// `stream` is a whole zlib stream, which is borrowed.
    explicit RunInflate(std::span<const std::uint8_t> stream);

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
    /// Symbols by the bits that come next.
    class Table {
     public:
        Table() = default;
        explicit Table(const HuffmanCode& code);

        struct Entry {
            std::uint16_t symbol = 0;
            std::uint16_t bits = 0;  ///< of its code; 0 where no code begins so
        };
        [[nodiscard]] Entry at(std::uint64_t bits) const {
            const Entry entry = short_[bits % short_.size()];
            return entry.bits > 0 || long_.empty() ? entry : long_[bits % long_.size()];
        }

     private:
        static constexpr int kShortBits = 10;
        static constexpr int kLongBits = 15;
        std::array<Entry, std::size_t{1} << kShortBits> short_{};
        std::vector<Entry> long_;  ///< empty where no code is longer
    };
    struct Block {
        Table literals;
        bool isLast = false;
    };

    [[nodiscard]] std::optional<Block> beginBlock();

    /// Up to the end of the block; false where it is none of RunDeflate's, or `take` has had enough.
    template <typename Take>
    [[nodiscard]] bool readBlock(const Block& block, const Take& take) {
        for (;;) {
            const Table::Entry entry = block.literals.at(bits_.look());
            if (entry.bits == 0 || bits_.isBeyondEnd())
                return false;
            bits_.skip(entry.bits);
            if (entry.symbol == kEndOfBlock)
                return true;
            if (!(entry.symbol < kEndOfBlock ? takeByte(static_cast<std::uint8_t>(entry.symbol), take)
                                             : takeMatch(entry.symbol, take)))
                return false;
        }
    }

    template <typename Take>
    [[nodiscard]] bool takeByte(std::uint8_t value, const Take& take) {
        last_ = last_ >> 8 | std::uint32_t{value} << 24;
        return take(Run{1, value});
    }

    template <typename Take>
    [[nodiscard]] bool takeMatch(std::size_t symbol, const Take& take) {
        const std::uint32_t length =
            MatchPart::leastLength(symbol) + bits_.take(MatchPart::extraBitsOf(symbol));
        const bool isPixelBefore = bits_.take(1) != 0;
        if (!isPixelBefore) {
            const auto value = static_cast<std::uint8_t>(last_ >> 24);
            last_ = value * 0x01010101U;
            return take(Run{length, value});
        }
        for (std::uint32_t i = 0; i < length; ++i) {
            if (!takeByte(static_cast<std::uint8_t>(last_), take))
                return false;
        }
        return true;
    }

    BitReader bits_;
    std::uint32_t last_ = 0;  // the last four bytes, the latest highest
};

}  // namespace trimora::cutengine::kernels
