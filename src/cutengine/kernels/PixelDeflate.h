#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "foundation/PixelBuffer.h"

namespace trimora::cutengine::kernels {

/// Rows of filtered pixels, one after the other: a filter byte, then `pixelsPerRow` pixels of four bytes.
struct FilteredRows {
    std::span<const std::uint8_t> bytes;
    std::size_t pixelsPerRow = 0;

    [[nodiscard]] std::size_t rowSize() const { return 1 + 4 * pixelsPerRow; }
    [[nodiscard]] std::size_t count() const { return bytes.size() / rowSize(); }
};

/// Packed bytes in a buffer that may be larger.
struct PackedBytes {
    foundation::PixelBuffer buffer;
    std::size_t size = 0;

    [[nodiscard]] std::span<const std::uint8_t> bytes() const { return {buffer.data(), size}; }
};

/// The rows as one deflate block, followed by an empty stored one that ends on a whole byte: what follows
/// may be made by somebody else, at the same time. No block says that it is the last.
///
/// Made for photographs, whose differences hardly ever repeat: instead of looking for earlier bytes it
/// looks for a pixel that is the same as the one before it (flat and empty areas), and puts its effort
/// into a code that is fitted to the rows. On drawn pictures with repeating patterns a general compressor
/// makes smaller files.
///
/// An empty buffer where memory is refused.
[[nodiscard]] PackedBytes packPixels(const FilteredRows& rows);

}  // namespace trimora::cutengine::kernels
