#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "cutengine/kernels/ZlibSums.h"
#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"

/// Strips of a mask's rows, each packed without a look at the others: the file of a mask that has changed in
/// some strips takes the others as they were, and strips that are the same bytes are the same pixels.
namespace trimora::cutengine::kernels {

/// Rows of a strip; the last of a mask may have fewer.
inline constexpr int kStripRows = 128;

[[nodiscard]] inline constexpr std::size_t stripsOf(int rows) {
    return static_cast<std::size_t>((rows + kStripRows - 1) / kStripRows);
}

/// A strip as a file holds it.
struct MaskStrip {
    std::vector<std::uint8_t> bytes;  ///< a piece of the file's compressed stream
    ZlibSums sums;                    ///< of what that unpacks to
    std::uint64_t checksum = 0;       ///< of its pixels, and of the number of the strip
};

/// A whole mask as a file holds it.
struct PackedMask {
    int width = 0;
    int height = 0;
    std::vector<MaskStrip> strips;

    [[nodiscard]] bool hasSizeOf(int otherWidth, int otherHeight) const {
        return width == otherWidth && height == otherHeight;
    }
    /// The rows of a strip, as an area of the mask.
    [[nodiscard]] foundation::IntRect area(std::size_t strip) const {
        const int top = static_cast<int>(strip) * kStripRows;
        return {0, top, width, std::min(kStripRows, height - top)};
    }
};

/// Packs the rows of strip `number`: kStripRows at most.
[[nodiscard]] MaskStrip packStrip(foundation::BitmapView rows, int number);

/// Unpacks a strip into `rows`. `bytes` is followed by BitReader::kSlack bytes of anything, which are counted
/// in. None where the bytes are none that packStrip() makes of so many rows; the rows are then in any state.
[[nodiscard]] std::optional<MaskStrip> unpackStrip(std::span<const std::uint8_t> bytes,
                                                   foundation::MutableBitmapView rows, int number);

/// Takes over the rows of a strip that another program has packed; returns their checksum. `rows` holds
/// R, G, B, A, straight, without gaps, and as many rows as `to`.
[[nodiscard]] std::uint64_t takeStrip(const std::uint8_t* rows, foundation::MutableBitmapView to, int number);

}  // namespace trimora::cutengine::kernels
