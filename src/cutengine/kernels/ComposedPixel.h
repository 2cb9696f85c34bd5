#pragma once

#include <algorithm>
#include <cstdint>

#include "foundation/Bitmap.h"

/// The arithmetic of composing, exact in whole numbers. Coverage c is a mask value in 65536ths: 0 to
/// kFullCoverage.
namespace trimora::cutengine::kernels {

inline constexpr std::uint32_t kFullCoverage = 255U << 16;

/// A premultiplied picture's pixel over a premultiplied background's under coverage c, as a straight
/// pixel: with n = p c 255 + b (255 C - alpha(p) c), in 255 C ths of a level, alpha is n(alpha) / 255 C
/// and each colour 255 n / n(alpha), both rounded to the nearest; all 0 where alpha is.
[[nodiscard]] inline foundation::Pixel composedPixel(foundation::Pixel p, std::uint32_t c,
                                                     foundation::Pixel b) {
    constexpr std::uint64_t kWhole = std::uint64_t{255} * kFullCoverage;
    const std::uint64_t through = kWhole - std::uint64_t{p.alpha} * c;
    const auto mixed = [&](std::uint8_t top, std::uint8_t bottom) {
        return std::uint64_t{top} * 255 * c + bottom * through;
    };
    const std::uint64_t alpha = mixed(p.alpha, b.alpha);
    const std::uint64_t rounded = (alpha + kWhole / 2) / kWhole;
    if (rounded == 0)
        return {};
    const auto straight = [&](std::uint8_t top, std::uint8_t bottom) {
        const std::uint64_t value = (2 * 255 * mixed(top, bottom) + alpha) / (2 * alpha);
        return static_cast<std::uint8_t>(std::min<std::uint64_t>(value, 255));
    };
    return {straight(p.blue, b.blue), straight(p.green, b.green), straight(p.red, b.red),
            static_cast<std::uint8_t>(rounded)};
}

/// The same for two opaque pixels, where it needs 32 bits and no division by a variable. The sum is
/// 255 x 255 x 65536 at most with the half that rounds it, just under 2^32; t / 255 is exact for every
/// t under 65535.
[[nodiscard]] inline std::uint8_t mixedComponent(std::uint8_t p, std::uint32_t c, std::uint8_t b) {
    const std::uint32_t t = (p * c + b * (kFullCoverage - c) + kFullCoverage / 2) >> 16;
    return static_cast<std::uint8_t>((t + 1 + (t >> 8)) >> 8);
}

/// The same for an opaque pixel over nothing: its own colour under the coverage's nearest level.
[[nodiscard]] inline foundation::Pixel coveredPixel(foundation::Pixel p, std::uint32_t c) {
    p.alpha = static_cast<std::uint8_t>((c + 0x8000) >> 16);
    return p.alpha == 0 ? foundation::Pixel{} : p;
}

}  // namespace trimora::cutengine::kernels
