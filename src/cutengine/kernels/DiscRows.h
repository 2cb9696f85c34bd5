#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The disc blur's arithmetic on rows, for the widest vectors that the processor has.
///
/// Bytes are kept centred (a component less 128): they are 128 at most in size, so that the sums of the
/// largest discs fit 32 bits with their sign.
namespace trimora::cutengine::kernels {

/// Widths of rows of sums are multiples of this.
inline constexpr int kDiscRowGranule = 32;

/// Discs of more pixels have sums beyond 32 bits, or counts beyond what meansOfSums() is exact for.
inline constexpr std::int64_t kLargestDiscCount = (std::int64_t{1} << 24) - 1;

/// A row of centred bytes for each of B, G, R and A.
using DiscPlanes = std::array<std::int8_t*, 4>;

/// Where the pixels lie that enter and leave a disc as it moves down a row: offsets from the byte in
/// the row of its old centre that is as far left as the disc reaches.
struct DiscArcs {
    std::vector<std::ptrdiff_t> entering;
    std::vector<std::ptrdiff_t> leaving;
};

/// Takes `count` pixels apart into centred bytes.
void splitRow(const std::uint8_t* pixels, int count, const DiscPlanes& planes);

/// Puts `count` pixels together from plain bytes.
void joinRow(const std::array<const std::uint8_t*, 4>& planes, std::uint8_t* pixels, int count);

/// Moves `width` neighbouring discs down one row. `row` is as in DiscArcs for the first of them.
void slideDiscs(const std::int8_t* row, const DiscArcs& arcs, std::int32_t* sums, int width);

/// The mean of each sum of `count` centred bytes, rounded to the nearest, as a plain byte. The number
/// of pixels in a disc is odd, so none lies half way.
void meansOfSums(const std::int32_t* sums, std::int32_t count, std::uint8_t* means, int width);

}  // namespace trimora::cutengine::kernels
