#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Pixels of a mask as 32-bit words, the first byte of memory lowest: a plane's are B, G, R, A,
/// premultiplied; a file's are R, G, B, A, straight. Nearly all are black, and the same in both.
namespace trimora::cutengine::kernels {

inline constexpr std::size_t kMaskPixelBytes = 4;

[[nodiscard]] inline std::uint32_t pixelAt(const std::uint8_t* row, std::int32_t x) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, row + kMaskPixelBytes * static_cast<std::size_t>(x), kMaskPixelBytes);
    return pixel;
}

inline void putPixel(std::uint8_t* row, std::size_t x, std::uint32_t pixel) {
    std::memcpy(row + kMaskPixelBytes * x, &pixel, kMaskPixelBytes);
}

[[nodiscard]] inline std::uint32_t packedPixel(std::uint32_t first, std::uint32_t second, std::uint32_t third,
                                               std::uint32_t alpha) {
    return first | second << 8 | third << 16 | alpha << 24;
}

[[nodiscard]] inline std::uint32_t toFile(std::uint32_t plane) {
    const std::uint32_t alpha = plane >> 24;
    if ((plane & 0x00FFFFFF) == 0 || alpha == 0)
        return alpha << 24;
    const auto straight = [&](int index) {
        return std::min<std::uint32_t>(255, ((plane >> 8 * index & 255) * 255 + alpha / 2) / alpha);
    };
    return packedPixel(straight(2), straight(1), straight(0), alpha);
}

[[nodiscard]] inline std::uint32_t toPlane(std::uint32_t file) {
    const std::uint32_t alpha = file >> 24;
    if ((file & 0x00FFFFFF) == 0)
        return file;
    const auto premultiplied = [&](int index) { return ((file >> 8 * index & 255) * alpha + 127) / 255; };
    return packedPixel(premultiplied(2), premultiplied(1), premultiplied(0), alpha);
}

/// Byte by byte, modulo 256. Bits 7 are kept out of the carries and put in afterwards.
[[nodiscard]] inline std::uint32_t pixelDifference(std::uint32_t a, std::uint32_t b) {
    constexpr std::uint32_t kTopBits = 0x80808080;
    return ((a | kTopBits) - (b & ~kTopBits)) ^ ((a ^ ~b) & kTopBits);
}
[[nodiscard]] inline std::uint32_t pixelSum(std::uint32_t a, std::uint32_t b) {
    constexpr std::uint32_t kTopBits = 0x80808080;
    return ((a & ~kTopBits) + (b & ~kTopBits)) ^ ((a ^ b) & kTopBits);
}

/// The checksum of pixels as a file holds them: of those that differ from the one that they are written as a
/// difference from, which say all, and of where they are. Each step maps states one to one, so no change of a
/// single pixel goes unseen.
class PixelChecksum {
 public:
    /// `part` tells this checksum from those of other parts of the same picture.
    explicit PixelChecksum(std::uint64_t part) { add(part); }

    void add(int x, int y, std::uint32_t pixel) {
        add(static_cast<std::uint64_t>(y) << 48 ^ static_cast<std::uint64_t>(x) << 32 ^ pixel);
    }
    void add(std::uint64_t value) { state_ = std::rotl((state_ ^ value) * 0x9E3779B97F4A7C15, 29); }

    [[nodiscard]] std::uint64_t value() const { return state_ ^ state_ >> 32; }

 private:
    std::uint64_t state_ = 0x5472696D6F7261;
};

}  // namespace trimora::cutengine::kernels
