#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace trimora::cutengine::kernels {

/// A byte that is not 0, and its place from the beginning.
struct PlacedByte {
    std::uint64_t placeAndValue = 0;

    PlacedByte() = default;
    PlacedByte(std::uint64_t place, std::uint8_t value) : placeAndValue(place << 8 | value) {}
    [[nodiscard]] std::uint64_t place() const { return placeAndValue >> 8; }
    [[nodiscard]] std::uint8_t value() const { return static_cast<std::uint8_t>(placeAndValue); }
};

/// Is given a row's bytes that are not 0, in their order; false: nothing more is wanted.
using TakeRow = std::function<bool(int row, std::span<const PlacedByte> bytes)>;

/// Reads a piece that RunDeflate wrote, `rows` of `rowSize` bytes, and hands over the bytes in it that are
/// not 0, row by row while it goes: the others are never laid out, so that the time taken goes with the
/// number of runs. `piece` is followed by BitReader::kSlack bytes of anything, which are counted in.
///
/// False for a piece that RunDeflate would not have written, or that does not unpack to that size, whatever
/// has been handed over by then. What another program wrote is recognised by what RunDeflate never uses
/// (blocks without codes of their own, long codes, matches at other distances); any zlib decoder reads both.
/// Damage is found where it breaks the format; a checksum is the caller's business.
[[nodiscard]] bool inflateRuns(std::span<const std::uint8_t> piece, std::uint64_t rowSize, int rows,
                               const TakeRow& take);

}  // namespace trimora::cutengine::kernels
