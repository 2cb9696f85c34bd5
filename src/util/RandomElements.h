#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <random>
#include <utility>
#include <vector>

/// Chance among the elements of a list. The generator is the caller's, so that a test can repeat it.
namespace trimora::util {

/// Any element, each with the same chance; nothing from an empty list.
template <typename T, std::uniform_random_bit_generator Generator>
[[nodiscard]] std::optional<T> randomObject(const std::vector<T>& elements, Generator& generator) {
    if (elements.empty())
        return std::nullopt;
    std::uniform_int_distribution<std::size_t> index(0, elements.size() - 1);
    return elements[index(generator)];
}

/// The elements in any order, each order with the same chance.
template <typename T, std::uniform_random_bit_generator Generator>
[[nodiscard]] std::vector<T> randomizedArray(std::vector<T> elements, Generator& generator) {
    std::shuffle(elements.begin(), elements.end(), generator);
    return elements;
}

}  // namespace trimora::util
