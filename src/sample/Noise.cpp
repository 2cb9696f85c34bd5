#include "sample/Noise.h"

#include <cmath>

namespace trimora::sample {
namespace {

std::uint64_t scrambled(std::uint64_t value) {
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9U;
    value = (value ^ (value >> 27)) * 0x94d049bb133111ebU;
    return value ^ (value >> 31);
}

float unitOf(std::uint64_t bits) {
    return static_cast<float>(bits >> 40) * 0x1p-24F;
}

float lattice(std::int64_t x, std::int64_t y, std::uint32_t seed) {
    const auto place = static_cast<std::uint64_t>(x) * 0x9e3779b97f4a7c15U +
                       static_cast<std::uint64_t>(y) * 0xc2b2ae3d27d4eb4fU + seed;
    return unitOf(scrambled(place)) * 2 - 1;
}

float eased(float t) {
    return t * t * (3 - 2 * t);
}

}  // namespace

float Random::unit() {
    state_ += 0x9e3779b97f4a7c15U;
    return unitOf(scrambled(state_));
}

float noise(double x, double y, std::uint32_t seed) {
    const double left = std::floor(x);
    const double top = std::floor(y);
    const auto column = static_cast<std::int64_t>(left);
    const auto row = static_cast<std::int64_t>(top);
    const float u = eased(static_cast<float>(x - left));
    const float v = eased(static_cast<float>(y - top));
    const float above = std::lerp(lattice(column, row, seed), lattice(column + 1, row, seed), u);
    const float below = std::lerp(lattice(column, row + 1, seed), lattice(column + 1, row + 1, seed), u);
    return std::lerp(above, below, v);
}

float cloud(double x, double y, std::uint32_t seed, int octaves) {
    float sum = 0;
    float weight = 0.5F;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += weight * noise(x, y, seed + static_cast<std::uint32_t>(octave));
        weight /= 2;
        x *= 2;
        y *= 2;
    }
    return sum;
}

}  // namespace trimora::sample
