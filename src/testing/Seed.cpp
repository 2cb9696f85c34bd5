#include "testing/Seed.h"

#include <gtest/gtest.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>

namespace trimora::testing {

std::uint64_t announcedSeed() {
    const char* const given = std::getenv("TRIMORA_SEED");
    const std::uint64_t seed = given != nullptr ? std::strtoull(given, nullptr, 10) : std::random_device{}();
    std::printf("seed %" PRIu64 " (replay with TRIMORA_SEED=%" PRIu64 ")\n", seed, seed);
    std::fflush(stdout);  // for a test that ends its process, or is ended
    ::testing::Test::RecordProperty("seed", std::to_string(seed));
    return seed;
}

std::mt19937_64 seededGenerator() {
    return std::mt19937_64(announcedSeed());
}

}  // namespace trimora::testing
