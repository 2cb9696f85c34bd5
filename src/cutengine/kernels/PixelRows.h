#pragma once

#include <cstdint>

namespace trimora::cutengine::kernels {

/// Writes the places, rising from 0, where two rows of `width` 4-byte pixels differ to `places`, which has
/// room for kPlacesSlack more than `width`; returns how many there are. The rows may begin at any byte.
inline constexpr int kPlacesSlack = 64;
int differingPixels(const std::uint8_t* row, const std::uint8_t* other, int width, std::int32_t* places);

/// Copies `count` 4-byte pixels past the caches: for rows that nobody reads soon. The rows may begin at any
/// byte. Whoever is done with all rows says endStreaming().
void streamPixels(const std::uint8_t* from, std::uint8_t* to, int count);

/// Sets `count` 4-byte pixels to 0 in the same way.
void streamClear(std::uint8_t* to, int count);

/// Waits until other threads see what this one has streamed. Not for every row: nothing is written past the
/// caches meanwhile.
void endStreaming();

}  // namespace trimora::cutengine::kernels
