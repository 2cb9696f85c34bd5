#pragma once

#include <cstdint>
#include <random>

namespace trimora::testing {

/// The seed of this run's random tests: TRIMORA_SEED where it is set, else a fresh one. It is printed
/// with the test, so that a failure replays with TRIMORA_SEED=<number>.
[[nodiscard]] std::uint64_t announcedSeed();

/// A generator started from announcedSeed().
[[nodiscard]] std::mt19937_64 seededGenerator();

}  // namespace trimora::testing
