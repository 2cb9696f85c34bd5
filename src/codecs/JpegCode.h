#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>  // jpeglib.h needs FILE
#include <optional>
#include <span>
#include <vector>

#include <jpeglib.h>

namespace trimora::codecs {

/// One of a JPEG file's prefix codes, by symbol.
struct JpegCode {
    std::array<std::uint16_t, 256> bits{};
    std::array<std::uint8_t, 256> lengths{};  ///< 0 for a symbol that has no code

    /// The code of the table with that number, which is any that a file may name. None where there is no such
    /// table or it is no code.
    [[nodiscard]] static std::optional<JpegCode> of(std::span<JHUFF_TBL* const> tables, int number);

    [[nodiscard]] bool has(std::size_t symbol) const { return lengths[symbol] != 0; }
};

/// What comes next in the data of a file, for somebody who passes over it.
struct alignas(4) JpegStep {
    std::uint8_t codeBits = 0;  ///< 1..16; 0 where no code begins so
    std::uint8_t bits = 0;      ///< those and the number's that follows the code, 1..31
    /// How far it leads in its block, as a count of numbers; kEndOfBlock where the block ends with it.
    std::uint8_t distance = 0;

    static constexpr std::uint8_t kEndOfBlock = 128;
};

/// A code by what comes next in the data.
class JpegSteps {
 public:
    /// The bits that most codes fit into.
    static constexpr int kIndexBits = 11;

    explicit JpegSteps(const JpegCode& code);

    /// The next step. `next` holds the next bits of the data, the first of them the highest; 16 or more
    /// count.
    [[nodiscard]] JpegStep one(std::uint64_t next) const;

    /// The next step and, where it is known as well, the one after it, so as to pass over both at once: four
    /// bytes, from the lowest on the bits of both, the distance of both, the bits of the first and its
    /// distance. 0 where one() is to be asked.
    [[nodiscard]] std::uint32_t two(std::uint64_t next) const { return pairs_[next >> (64 - kIndexBits)]; }

 private:
    void add(const JpegCode& code, std::size_t symbol);

    std::array<JpegStep, std::size_t{1} << kIndexBits> steps_{};
    std::array<std::uint32_t, std::size_t{1} << kIndexBits> pairs_{};
    // Longer codes, by 16 bits: they are the highest ones, from this one on.
    std::size_t firstRare_ = std::size_t{1} << 16;
    std::vector<JpegStep> rare_;
};

}  // namespace trimora::codecs
