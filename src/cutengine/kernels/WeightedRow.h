#pragma once

#include <cstddef>
#include <cstdint>

namespace trimora::cutengine::kernels {

/// sums[i] += bytes[i] weight, for `count` bytes, in the same floating-point steps on every processor.
void addWeighted(const std::uint8_t* bytes, float weight, std::size_t count, float* sums);

}  // namespace trimora::cutengine::kernels
