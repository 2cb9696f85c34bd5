#include "codecs/JpegCode.h"

#include <algorithm>

namespace trimora::codecs {
namespace {

constexpr int kLongest = 16;
constexpr std::size_t kEnd = 0x00;         // the rest of the block is nothing
constexpr std::size_t kSixteenOff = 0xF0;  // sixteen numbers are nothing

JpegSteps::Step stepOf(std::size_t symbol, std::uint8_t length) {
    const auto further = static_cast<std::uint8_t>(symbol & 15);
    const auto run = static_cast<std::uint8_t>(symbol >> 4);
    const bool ends = further == 0 && symbol != kSixteenOff;
    return {length, further, ends ? JpegSteps::kEndOfBlock : static_cast<std::uint8_t>(run + 1)};
}

}  // namespace

std::optional<JpegCode> JpegCode::of(const JHUFF_TBL* table) {
    if (table == nullptr)
        return std::nullopt;
    JpegCode code;
    unsigned next = 0;
    std::size_t index = 0;
    for (int length = 1; length <= kLongest; ++length, next <<= 1) {
        for (int i = 0; i < table->bits[length]; ++i, ++next, ++index) {
            if (index >= code.bits.size() || next + 1 >= 1U << length)
                return std::nullopt;
            code.bits[table->huffval[index]] = static_cast<std::uint16_t>(next);
            code.lengths[table->huffval[index]] = static_cast<std::uint8_t>(length);
        }
    }
    return code;
}

JpegSteps::JpegSteps(const JpegCode& code) {
    for (std::size_t symbol = 0; symbol < code.lengths.size(); ++symbol) {
        const int length = code.lengths[symbol];
        if (length == 0)
            continue;
        const Step step = stepOf(symbol, code.lengths[symbol]);
        if (length > kCommonBits) {
            rare_.push_back({static_cast<std::uint16_t>(code.bits[symbol] << (kLongest - length)), step});
            continue;
        }
        const auto first = static_cast<std::size_t>(code.bits[symbol]) << (kCommonBits - length);
        std::fill_n(common_.begin() + static_cast<std::ptrdiff_t>(first), 1 << (kCommonBits - length), step);
    }
}

JpegSteps::Step JpegSteps::rare(std::uint64_t next) const {
    for (const Rare& each : rare_) {
        if (((next >> (64 - kLongest)) ^ each.bits) >> (kLongest - each.step.bits) == 0)
            return each.step;
    }
    return {};
}

}  // namespace trimora::codecs
