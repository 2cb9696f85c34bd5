#include "codecs/JpegCode.h"

#include <algorithm>

namespace trimora::codecs {
namespace {

constexpr int kLongest = 16;
constexpr std::size_t kWholeCodes = std::size_t{1} << kLongest;
constexpr std::size_t kSixteenOff = 0xF0;  // sixteen numbers are nothing

JpegStep stepOf(std::size_t symbol, std::uint8_t length) {
    const auto number = static_cast<std::uint8_t>(symbol & 15);
    const auto passed = static_cast<std::uint8_t>(symbol >> 4);
    const bool ends = number == 0 && symbol != kSixteenOff;
    return {length, static_cast<std::uint8_t>(length + number),
            ends ? JpegStep::kEndOfBlock : static_cast<std::uint8_t>(passed + 1)};
}

/// The code with its first bit where that of the longest is.
std::size_t wholeCode(const JpegCode& code, std::size_t symbol) {
    return static_cast<std::size_t>(code.bits[symbol]) << (kLongest - code.lengths[symbol]);
}

std::uint32_t pairOf(JpegStep first, JpegStep second) {
    const auto bits = static_cast<std::uint32_t>(first.bits + second.bits);
    const auto distance = static_cast<std::uint32_t>(first.distance + second.distance);
    return bits | distance << 8 | std::uint32_t{first.bits} << 16 | std::uint32_t{first.distance} << 24;
}

}  // namespace

std::optional<JpegCode> JpegCode::of(std::span<JHUFF_TBL* const> tables, int number) {
    const auto place = static_cast<std::size_t>(number);
    if (place >= tables.size() || tables[place] == nullptr)
        return std::nullopt;
    const JHUFF_TBL* const table = tables[place];
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
        if (code.lengths[symbol] > kIndexBits)
            firstRare_ = std::min(firstRare_, wholeCode(code, symbol));
    }
    rare_.resize(kWholeCodes - firstRare_);
    for (std::size_t symbol = 0; symbol < code.lengths.size(); ++symbol)
        add(code, symbol);
    for (std::size_t index = 0; index < steps_.size(); ++index) {
        const JpegStep first = steps_[index];
        if (first.codeBits == 0)
            continue;
        const JpegStep second = steps_[index << first.bits & (steps_.size() - 1)];
        const bool isKnown = second.codeBits != 0 && first.bits + second.codeBits <= kIndexBits &&
                             first.distance != JpegStep::kEndOfBlock;
        pairs_[index] = pairOf(first, isKnown ? second : JpegStep());
    }
}

void JpegSteps::add(const JpegCode& code, std::size_t symbol) {
    const int length = code.lengths[symbol];
    if (length == 0)
        return;
    const JpegStep step = stepOf(symbol, code.lengths[symbol]);
    const std::size_t whole = wholeCode(code, symbol);
    if (length > kIndexBits)
        std::fill_n(rare_.begin() + static_cast<std::ptrdiff_t>(whole - firstRare_), 1 << (kLongest - length),
                    step);
    else
        std::fill_n(steps_.begin() + static_cast<std::ptrdiff_t>(whole >> (kLongest - kIndexBits)),
                    1 << (kIndexBits - length), step);
}

JpegStep JpegSteps::one(std::uint64_t next) const {
    const JpegStep common = steps_[next >> (64 - kIndexBits)];
    if (common.codeBits != 0)
        return common;
    const std::size_t whole = next >> (64 - kLongest);
    return whole >= firstRare_ ? rare_[whole - firstRare_] : JpegStep();
}

}  // namespace trimora::codecs
