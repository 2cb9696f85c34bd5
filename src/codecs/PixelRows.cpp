#include "codecs/PixelRows.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace trimora::codecs {
namespace {

/// round(value / 255), halves up, for value <= 255 * 255.
constexpr std::uint32_t over255(std::uint32_t value) {
    const std::uint32_t biased = value + 128;
    return (biased + (biased >> 8)) >> 8;
}

std::uint32_t word(const std::uint8_t* pixel) {
    std::uint32_t value = 0;
    std::memcpy(&value, pixel, sizeof value);
    return value;
}

void setWord(std::uint8_t* pixel, std::uint32_t value) {
    std::memcpy(pixel, &value, sizeof value);
}

constexpr std::uint32_t kAlphaMask = 0xFF000000U;
constexpr int kReciprocalShift = 24;

/// ceil(2^24 / alpha), so that n / alpha == n * reciprocal >> 24 for every n < 2^16: the error of the
/// reciprocal is below alpha / 2^24, and n * alpha stays below 2^24. 0 for alpha 0.
constexpr std::array<std::uint64_t, 256> kReciprocals = [] {
    std::array<std::uint64_t, 256> table{};
    for (std::uint64_t alpha = 1; alpha < table.size(); ++alpha)
        table[alpha] = ((std::uint64_t{1} << kReciprocalShift) + alpha - 1) / alpha;
    return table;
}();

std::uint8_t divided(std::uint8_t colour, std::uint8_t alpha) {
    const std::uint64_t numerator = colour * 255U + alpha / 2U;
    return static_cast<std::uint8_t>(
        std::min<std::uint64_t>(numerator * kReciprocals[alpha] >> kReciprocalShift, 255));
}

}  // namespace

void exchangeRedAndBlue(std::uint8_t* row, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = word(row + i * 4);
        setWord(row + i * 4, (pixel & 0xFF00FF00U) | (pixel >> 16 & 0xFFU) | (pixel & 0xFFU) << 16);
    }
}

bool isOpaque(const std::uint8_t* row, std::size_t count) {
    std::uint32_t all = kAlphaMask;
    for (std::size_t i = 0; i < count; ++i)
        all &= word(row + i * 4);
    return (all & kAlphaMask) == kAlphaMask;
}

void makeOpaque(std::uint8_t* row, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        setWord(row + i * 4, word(row + i * 4) | kAlphaMask);
}

void premultiply(std::uint8_t* row, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = word(row + i * 4);
        const std::uint32_t alpha = pixel >> 24;
        setWord(row + i * 4, over255((pixel & 0xFFU) * alpha) | over255((pixel >> 8 & 0xFFU) * alpha) << 8 |
                                 over255((pixel >> 16 & 0xFFU) * alpha) << 16 | (pixel & kAlphaMask));
    }
}

void unpremultiply(std::uint8_t* row, std::size_t count) {
    if (isOpaque(row, count))
        return;
    for (std::size_t i = 0; i < count; ++i) {
        std::uint8_t* const pixel = row + i * 4;
        for (int channel = 0; channel < 3; ++channel)
            pixel[channel] = divided(pixel[channel], pixel[3]);
    }
}

void clearUnderAlphaZero(std::uint8_t* row, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = word(row + i * 4);
        setWord(row + i * 4, (pixel & kAlphaMask) == 0 ? 0 : pixel);
    }
}

void cmykToOpaque(std::uint8_t* row, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t paper = 0xFFFFFFFFU - word(row + i * 4);
        const std::uint32_t black = paper >> 24;
        const std::uint32_t red = over255((paper & 0xFFU) * black);
        const std::uint32_t green = over255((paper >> 8 & 0xFFU) * black);
        const std::uint32_t blue = over255((paper >> 16 & 0xFFU) * black);
        setWord(row + i * 4, blue | green << 8 | red << 16 | kAlphaMask);
    }
}

void invertBytes(std::uint8_t* bytes, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(~bytes[i]);
}

void narrowRgba(const std::uint16_t* from, std::uint8_t* to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, from += 4, to += 4) {
        to[0] = narrowed(from[2]);
        to[1] = narrowed(from[1]);
        to[2] = narrowed(from[0]);
        to[3] = narrowed(from[3]);
    }
}

void narrowAlpha(const std::uint16_t* from, std::uint8_t* to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        to[i * 4 + 3] = narrowed(from[i * 4 + 3]);
}

}  // namespace trimora::codecs
