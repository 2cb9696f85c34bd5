#pragma once

#include <cstdint>

namespace trimora::sample {

/// Random numbers that are the same in every run and on every machine.
class Random {
 public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    /// 0 up to but not including 1.
    float unit();
    float between(float low, float high) { return low + (high - low) * unit(); }
    /// Around 0, mostly within -1 and 1.
    float bell() { return unit() + unit() + unit() - 1.5F; }

 private:
    std::uint64_t state_;
};

/// Smooth noise from -1 to 1 that changes over about one unit of x and y.
[[nodiscard]] float noise(double x, double y, std::uint32_t seed);

/// Several octaves of noise(), each half as large and twice as fine: -1 to 1.
[[nodiscard]] float cloud(double x, double y, std::uint32_t seed, int octaves);

}  // namespace trimora::sample
