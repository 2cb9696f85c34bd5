#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "foundation/Bitmap.h"

namespace trimora::benchmarks {

/// The grain of a sensor: most of it in the brightness, the same for all colours, a little of it in each
/// colour alone; neighbours are alike, as they are after a camera has worked out the missing colours.
class Grain {
 public:
    /// From about -6 to 6, most of it near 0.
    int brightness() {
        const int fresh = roll(5) + roll(5) - 4 + roll(3) - 1;
        const int grain = (2 * fresh + held_) / 2;
        held_ = fresh;
        return grain;
    }
    /// -1 to 1.
    int colour() { return roll(3) - 1; }

 private:
    int roll(std::uint32_t sides) {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<int>((state_ >> 33) % sides);
    }
    std::uint64_t state_ = 1;
    int held_ = 0;
};

/// An opaque picture that is neither flat nor pure noise: waves of several lengths, edges and grain.
inline foundation::Bitmap photograph(int width, int height) {
    foundation::Bitmap picture =
        foundation::Bitmap::create(width, height, foundation::AlphaMode::opaque).value();
    std::vector<double> across;
    for (int x = 0; x < width; ++x)
        across.push_back(25 * std::sin(x * 0.0037) + 12 * std::sin(x * 0.031) + (x / 211 % 2 == 0 ? 9 : -9));
    Grain grain;
    for (int y = 0; y < height; ++y) {
        const double down = 45 * std::sin(y * 0.0011) + 14 * std::sin(y * 0.023);
        for (int x = 0; x < width; ++x) {
            const double light = 128 + down + across[static_cast<std::size_t>(x)] + grain.brightness();
            const auto component = [&](double share, double offset) {
                return static_cast<std::uint8_t>(light * share + offset + grain.colour());
            };
            picture.setPixel(x, y, {component(0.8, 10), component(0.95, 5), component(1.0, 8), 255});
        }
    }
    return picture;
}

}  // namespace trimora::benchmarks
