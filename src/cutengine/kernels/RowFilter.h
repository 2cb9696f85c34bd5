#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The five ways in which PNG writes a row of 4-byte pixels as differences from a guess: byte by byte,
/// modulo 256, the guess made from the byte left of it (one pixel back), the one above, and the one above
/// that left one. Bytes outside the picture count as 0.
namespace trimora::cutengine::kernels {

/// Numbered as the file format does.
enum class RowFilter : std::uint8_t {
    none,     ///< 0
    sub,      ///< the left one
    up,       ///< the one above
    average,  ///< (left + above) / 2, rounded down
    paeth,    ///< of left, above and above left the one nearest to left + above - above left
};
inline constexpr std::size_t kRowFilters = 5;

/// How large the differences would be with each filter: the sum of their distances from 0, over a part of
/// the row that stands for all of it. The smallest is likely to pack best.
///
/// `row` and `above` hold `size` bytes each, and four zeros before them.
[[nodiscard]] std::array<std::uint32_t, kRowFilters> filterCosts(const std::uint8_t* row,
                                                                 const std::uint8_t* above, std::size_t size);

/// The row as differences. Pointers as for filterCosts(); `to` may not overlap them.
void filterRow(RowFilter filter, const std::uint8_t* row, const std::uint8_t* above, std::size_t size,
               std::uint8_t* to);

/// What a file's pixels are made of.
enum class FilePixel : std::uint8_t {
    rgb = 3,   ///< R,G,B
    rgba = 4,  ///< R,G,B,A
};

/// A row of differences as it lies in a file, turned back into pixels of B,G,R,A; those of R,G,B are opaque.
/// `above` is the row above as this function wrote it, or zeros. May be used in place where, for every
/// pixel, `to` is written no farther than `from` has been read; one byte after the row is read too.
void unfilterRow(RowFilter filter, const std::uint8_t* from, FilePixel kind, const std::uint8_t* above,
                 std::size_t pixels, std::uint8_t* to);

}  // namespace trimora::cutengine::kernels
