#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>  // jpeglib.h needs FILE
#include <optional>
#include <vector>

#include <jpeglib.h>

namespace trimora::codecs {

/// One of a JPEG file's prefix codes, by symbol.
struct JpegCode {
    std::array<std::uint16_t, 256> bits{};
    std::array<std::uint8_t, 256> lengths{};  ///< 0 for a symbol that has no code

    /// None where the table is missing or is no code.
    [[nodiscard]] static std::optional<JpegCode> of(const JHUFF_TBL* table);

    [[nodiscard]] bool has(std::size_t symbol) const { return lengths[symbol] != 0; }
};

/// The same code by what comes next in the data: what a symbol means for somebody who passes over it.
class JpegSteps {
 public:
    struct alignas(4) Step {
        std::uint8_t bits = 0;      ///< of the code, 1..16; 0 where no code begins so
        std::uint8_t further = 0;   ///< bits of the number that follows the code, 0..15
        std::uint8_t distance = 0;  ///< numbers further in the block, kEndOfBlock or more where it ends here
    };
    static constexpr std::uint8_t kEndOfBlock = 128;

    explicit JpegSteps(const JpegCode& code);

    /// `next` holds the next bits of the data, the first of them the highest; 16 of them or more count.
    [[nodiscard]] Step at(std::uint64_t next) const {
        const Step step = common_[next >> (64 - kCommonBits)];
        return step.bits != 0 ? step : rare(next);
    }

 private:
    static constexpr int kCommonBits = 11;
    struct Rare {
        std::uint16_t bits;
        Step step;
    };
    [[nodiscard]] Step rare(std::uint64_t next) const;

    std::array<Step, std::size_t{1} << kCommonBits> common_{};
    std::vector<Rare> rare_;  // what is longer
};

}  // namespace trimora::codecs
