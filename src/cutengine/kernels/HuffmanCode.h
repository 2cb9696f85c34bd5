#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace trimora::cutengine::kernels {

/// A prefix code as deflate wants it: canonical, no code longer than a limit, bits ready to be written
/// lowest first.
struct HuffmanCode {
    std::vector<std::uint8_t> lengths;  ///< 0 for a symbol that does not occur
    std::vector<std::uint16_t> bits;

    /// The code that writes symbols of these frequencies in the fewest bits (or nearly, where the
    /// limit forbids the fewest).
    [[nodiscard]] static HuffmanCode forFrequencies(std::span<const std::uint32_t> frequencies, int longest);

    /// The canonical code of these lengths.
    [[nodiscard]] static HuffmanCode forLengths(std::vector<std::uint8_t> lengths);
};

}  // namespace trimora::cutengine::kernels
