#include "cutengine/kernels/HuffmanCode.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace trimora::cutengine::kernels {
namespace {

constexpr std::size_t kLongest = 15;

using LengthCounts = std::array<std::uint32_t, kLongest + 1>;  // how many symbols have a code of each length

// A symbol that occurs, in one number: sorting takes half of the time so.
struct Leaf {
    std::uint64_t frequencyAndSymbol = 0;

    [[nodiscard]] std::uint64_t frequency() const { return frequencyAndSymbol >> 16; }
    [[nodiscard]] std::size_t symbol() const { return frequencyAndSymbol & 0xFFFF; }
    friend bool operator<(Leaf a, Leaf b) { return a.frequencyAndSymbol < b.frequencyAndSymbol; }
};

// The symbols that occur, the rarest first.
std::vector<Leaf> sortedLeaves(std::span<const std::uint32_t> frequencies) {
    std::vector<Leaf> leaves;
    leaves.reserve(frequencies.size());
    for (std::size_t symbol = 0; symbol < frequencies.size(); ++symbol) {
        if (frequencies[symbol] > 0)
            leaves.push_back({std::uint64_t{frequencies[symbol]} << 16 | symbol});
    }
    std::sort(leaves.begin(), leaves.end());
    return leaves;
}

// Of two leaves or more: how deep each lies, those that lie deeper than `longest` taken for that deep. The
// tree's inner nodes come out in the order of their weights, so that the lightest two of all are the next of
// the leaves or of the inner nodes.
LengthCounts depthCounts(const std::vector<Leaf>& leaves, std::size_t longest) {
    const std::size_t inner = leaves.size() - 1;
    std::vector<std::uint64_t> weights(inner, 0);
    std::vector<std::size_t> parents(inner, 0);
    std::vector<std::size_t> leavesBelow(inner, 0);  // directly
    std::size_t nextLeaf = 0;
    std::size_t nextInner = 0;
    for (std::size_t node = 0; node < inner; ++node) {
        for (int child = 0; child < 2; ++child) {
            const bool isLeaf = nextLeaf < leaves.size() &&
                                (nextInner == node || leaves[nextLeaf].frequency() <= weights[nextInner]);
            if (isLeaf) {
                weights[node] += leaves[nextLeaf++].frequency();
                ++leavesBelow[node];
            } else {
                weights[node] += weights[nextInner];
                parents[nextInner++] = node;
            }
        }
    }
    LengthCounts counts{};
    std::vector<std::size_t> depths(inner, 0);
    for (std::size_t node = inner; node-- > 0;) {
        if (node + 1 < inner)
            depths[node] = depths[parents[node]] + 1;
        counts[std::min(depths[node] + 1, longest)] += static_cast<std::uint32_t>(leavesBelow[node]);
    }
    return counts;
}

// Makes room for codes that were cut to `longest`: others become longer until all fit.
void makeFit(LengthCounts& counts, std::size_t longest) {
    std::uint64_t taken = 0;  // of the room for codes of the longest kind
    for (std::size_t length = 1; length <= longest; ++length)
        taken += std::uint64_t{counts[length]} << (longest - length);
    for (; taken > std::uint64_t{1} << longest; --taken) {
        std::size_t length = longest - 1;
        while (counts[length] == 0)
            --length;
        --counts[length];
        counts[length + 1] += 2;
        --counts[longest];
    }
}

std::uint16_t reversed(std::uint32_t bits, int count) {
    bits = (bits & 0x5555) << 1 | (bits >> 1 & 0x5555);
    bits = (bits & 0x3333) << 2 | (bits >> 2 & 0x3333);
    bits = (bits & 0x0F0F) << 4 | (bits >> 4 & 0x0F0F);
    bits = (bits & 0x00FF) << 8 | (bits >> 8 & 0x00FF);
    return static_cast<std::uint16_t>(bits >> (16 - count));
}

}  // namespace

HuffmanCode HuffmanCode::forFrequencies(std::span<const std::uint32_t> frequencies, int longest) {
    const std::vector<Leaf> leaves = sortedLeaves(frequencies);
    std::vector<std::uint8_t> lengths(frequencies.size(), 0);
    if (leaves.size() == 1)
        lengths[leaves.front().symbol()] = 1;
    if (leaves.size() < 2)
        return forLengths(std::move(lengths));
    const auto most = static_cast<std::size_t>(longest);
    LengthCounts counts = depthCounts(leaves, most);
    makeFit(counts, most);
    auto leaf = leaves.begin();
    for (std::size_t length = most; length > 0; --length) {
        for (std::uint32_t i = 0; i < counts[length]; ++i)
            lengths[(leaf++)->symbol()] = static_cast<std::uint8_t>(length);
    }
    return forLengths(std::move(lengths));
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
        if (lengths[symbol] > 0)
            code.bits[symbol] = reversed(next[lengths[symbol]]++, lengths[symbol]);
    }
    code.lengths = std::move(lengths);
    return code;
}

}  // namespace trimora::cutengine::kernels
