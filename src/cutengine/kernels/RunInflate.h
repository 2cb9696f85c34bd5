#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace trimora::cutengine::kernels {

/// A byte that is not 0, and its place from the beginning.
struct PlacedByte {
    std::uint64_t placeAndValue = 0;

    PlacedByte() = default;
    PlacedByte(std::uint64_t place, std::uint8_t value) : placeAndValue(place << 8 | value) {}
    [[nodiscard]] std::uint64_t place() const { return placeAndValue >> 8; }
    [[nodiscard]] std::uint8_t value() const { return static_cast<std::uint8_t>(placeAndValue); }
};

/// Reads a piece that RunDeflate wrote as the bytes in it that are not 0, in their order: the others are
/// never laid out, so that the time taken goes with the number of runs. `piece` is followed by
/// BitReader::kSlack bytes of anything, which are counted in.
///
/// None for a piece that RunDeflate would not have written, or that does not unpack to `total` bytes. What
/// another program wrote is recognised by what RunDeflate never uses (blocks without codes of their own, long
/// codes, matches at other distances); any zlib decoder reads both. Damage is found where it breaks the
/// format; a checksum is the caller's business.
[[nodiscard]] std::optional<std::vector<PlacedByte>> inflateRuns(std::span<const std::uint8_t> piece,
                                                                 std::uint64_t total);

}  // namespace trimora::cutengine::kernels
