#include "cutengine/kernels/HuffmanCode.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <queue>
#include <utility>

namespace trimora::cutengine::kernels {
namespace {

constexpr int kLongest = 15;

// A tree's leaves are 0 .. symbols - 1, its inner nodes follow; each knows its parent.
std::vector<std::uint8_t> treeDepths(std::span<const std::uint32_t> frequencies) {
    using Node = std::pair<std::uint64_t, std::size_t>;
    std::priority_queue<Node, std::vector<Node>, std::greater<>> open;
    for (std::size_t symbol = 0; symbol < frequencies.size(); ++symbol) {
        if (frequencies[symbol] > 0)
            open.emplace(frequencies[symbol], symbol);
    }
    std::vector<std::uint8_t> depths(frequencies.size(), 0);
    if (open.size() == 1)
        depths[open.top().second] = 1;
    std::vector<std::size_t> parents(2 * frequencies.size(), 0);
    std::size_t next = frequencies.size();
    while (open.size() > 1) {
        const Node first = open.top();
        open.pop();
        const Node second = open.top();
        open.pop();
        parents[first.second] = next;
        parents[second.second] = next;
        open.emplace(first.first + second.first, next++);
    }
    for (std::size_t symbol = 0; symbol < frequencies.size(); ++symbol) {
        for (std::size_t node = symbol; parents[node] != 0; node = parents[node])
            ++depths[symbol];
    }
    return depths;
}

}  // namespace

HuffmanCode HuffmanCode::forFrequencies(std::span<const std::uint32_t> frequencies, int longest) {
    std::vector<std::uint32_t> flattened(frequencies.begin(), frequencies.end());
    std::vector<std::uint8_t> depths = treeDepths(flattened);
    while (*std::max_element(depths.begin(), depths.end()) > longest) {
        for (std::uint32_t& frequency : flattened)
            frequency = frequency == 0 ? 0 : frequency / 2 + 1;
        depths = treeDepths(flattened);
    }
    return forLengths(std::move(depths));
}

HuffmanCode HuffmanCode::forLengths(std::vector<std::uint8_t> lengths) {
    std::array<std::uint32_t, kLongest + 2> next{};
    for (const std::uint8_t length : lengths) {
        if (length > 0)
            ++next[length + std::size_t{1}];
    }
    for (std::size_t length = 2; length < next.size(); ++length)
        next[length] = (next[length] + next[length - 1]) << 1;
    HuffmanCode code;
    code.bits.resize(lengths.size());
    for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol) {
        std::uint32_t value = lengths[symbol] == 0 ? 0 : next[lengths[symbol]]++;
        for (int bit = 0; bit < lengths[symbol]; ++bit, value >>= 1)
            code.bits[symbol] = static_cast<std::uint16_t>(code.bits[symbol] << 1 | (value & 1));
    }
    code.lengths = std::move(lengths);
    return code;
}

}  // namespace trimora::cutengine::kernels
