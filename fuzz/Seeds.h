#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace trimora::fuzz {

/// Sound input for the target of that name (see Targets.h), made by our own code and the formats' libraries:
/// what a fuzzer begins with.
[[nodiscard]] std::vector<std::vector<std::uint8_t>> seedsOf(std::string_view target);

}  // namespace trimora::fuzz
