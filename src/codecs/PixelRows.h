#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// Loops over one row of pixels, written so that the compiler makes vector code of them. "Straight" means
/// not multiplied by alpha. Counts are pixels; B,G,R,A rows may start at any address. No row is null.
namespace trimora::codecs {

/// R,G,B,A to B,G,R,A, in place (or back: it is its own inverse).
void exchangeRedAndBlue(std::uint8_t* row, std::size_t count);

/// Whether every alpha is 255.
[[nodiscard]] bool isOpaque(const std::uint8_t* row, std::size_t count);

/// Sets every alpha to 255.
void makeOpaque(std::uint8_t* row, std::size_t count);

/// Multiplies colour by alpha, in place, rounded to the nearest (halves up).
void premultiply(std::uint8_t* row, std::size_t count);

/// Divides colour by alpha, in place: min(255, round(colour * 255 / alpha)), halves up; 0 under alpha 0.
/// Premultiplying the result gives back exactly what was there.
void unpremultiply(std::uint8_t* row, std::size_t count);

/// Sets the colour of every pixel of alpha 0 to 0.
void clearUnderAlphaZero(std::uint8_t* row, std::size_t count);

/// Cyan, magenta, yellow and black (255 is full ink) to opaque B,G,R,A, in place, by the plain rule
/// red = (255 - cyan) * (255 - black) / 255: for pictures that carry no profile of their inks.
void cmykToOpaque(std::uint8_t* row, std::size_t count);

/// 255 minus every byte.
void invertBytes(std::uint8_t* bytes, std::size_t size);

/// 16 bits a sample to 8: round(value * 255 / 65535).
[[nodiscard]] constexpr std::uint8_t narrowed(std::uint16_t value) {
    return static_cast<std::uint8_t>((value * 255U + 32767U) / 65535U);
}

/// R,G,B,A of 16 bits a sample to B,G,R,A of 8.
void narrowRgba(const std::uint16_t* from, std::uint8_t* to, std::size_t count);

/// Only the alphas of narrowRgba().
void narrowAlpha(const std::uint16_t* from, std::uint8_t* to, std::size_t count);

}  // namespace trimora::codecs
