#include "cutengine/kernels/DeflateBlock.h"

#include <algorithm>
#include <bit>
#include <span>
#include <utility>
#include <vector>

namespace trimora::cutengine::kernels {
namespace {

constexpr std::size_t kFirstLength = 257;

// In which the lengths of a header's own code stand.
constexpr std::array<std::uint8_t, 19> kOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                 11, 4,  12, 3, 13, 2, 14, 1, 15};

constexpr std::size_t kFewestTold = 4;
constexpr int kLongestOwnCode = 7;

constexpr std::uint32_t kCodesOfItsOwn = 2;  // the kind of a block

// Code lengths of a block's header, with runs shortened: symbol 18 stands for 11 to 138 zeros, 17 for 3 to
// 10, and 16 for 3 to 6 lengths like the one before.
struct HeaderSymbol {
    std::uint8_t symbol = 0;
    std::uint8_t extra = 0;
    std::uint8_t extraBits = 0;
};

void appendRun(std::vector<HeaderSymbol>& to, std::uint8_t length, std::size_t count) {
    const auto extra = [&](std::size_t least, std::size_t most) {
        const std::size_t taken = std::min(count, most);
        count -= taken;
        return static_cast<std::uint8_t>(taken - least);
    };
    while (length == 0 && count >= 11)
        to.push_back({18, extra(11, 138), 7});
    while (length == 0 && count >= 3)
        to.push_back({17, extra(3, 10), 3});
    if (length != 0) {
        to.push_back({length, 0, 0});
        --count;
    }
    while (length != 0 && count >= 3)
        to.push_back({16, extra(3, 6), 2});
    to.insert(to.end(), count, {length, 0, 0});
}

std::vector<HeaderSymbol> headerSymbols(std::span<const std::uint8_t> lengths) {
    std::vector<HeaderSymbol> symbols;
    symbols.reserve(lengths.size());
    for (std::size_t i = 0; i < lengths.size();) {
        std::size_t end = i + 1;
        while (end < lengths.size() && lengths[end] == lengths[i])
            ++end;
        appendRun(symbols, lengths[i], end - i);
        i = end;
    }
    return symbols;
}

// The lengths that a header's own code tells; none where it tells no such thing.
std::optional<std::vector<std::uint8_t>> takeLengths(BitReader& from, const HuffmanCode& code,
                                                     std::size_t count) {
    std::array<std::uint8_t, std::size_t{1} << kLongestOwnCode> symbols{};
    std::array<std::uint8_t, std::size_t{1} << kLongestOwnCode> bits{};
    for (std::size_t symbol = 0; symbol < code.lengths.size(); ++symbol) {
        for (std::size_t i = code.bits[symbol]; code.lengths[symbol] > 0 && i < bits.size();
             i += std::size_t{1} << code.lengths[symbol]) {
            symbols[i] = static_cast<std::uint8_t>(symbol);
            bits[i] = code.lengths[symbol];
        }
    }
    std::vector<std::uint8_t> lengths;
    while (lengths.size() < count) {
        const std::size_t next = from.look() % bits.size();
        if (bits[next] == 0 || from.isBeyondEnd())
            return std::nullopt;
        from.skip(bits[next]);
        const std::uint8_t symbol = symbols[next];
        if (symbol == 16 && lengths.empty())
            return std::nullopt;
        if (symbol < 16)
            lengths.push_back(symbol);
        else if (symbol == 16)
            lengths.insert(lengths.end(), 3 + from.take(2), std::uint8_t{lengths.back()});
        else
            lengths.insert(lengths.end(), symbol == 17 ? 3 + from.take(3) : 11 + from.take(7), 0);
    }
    if (lengths.size() > count)
        return std::nullopt;
    return lengths;
}

}  // namespace

bool BitReader::takeMark() {
    BitReader ahead = *this;
    if (ahead.take(3) != 0)
        return false;
    ahead.skip(ahead.count_ % 8);
    if (ahead.take(32) != kEmptyStored || ahead.isBeyondEnd())
        return false;
    *this = ahead;
    return true;
}

MatchSplit MatchSplit::of(std::uint32_t length) {
    const std::uint32_t left = length % kLongestMatch;
    if (left == 0 || left >= kShortestMatch)
        return {length / kLongestMatch, {left, 0}};
    return {length / kLongestMatch - 1, {kLongestMatch + left - kShortestMatch, kShortestMatch}};
}

MatchPart MatchPart::ofLength(std::uint32_t length) {
    if (length == kLongestMatch)
        return {kLiteralSymbols - 1, 0, 0};
    // Lengths 3 to 10 have a symbol each; from there on every power of two has four symbols.
    const std::uint32_t offset = length - kShortestMatch;
    if (offset < 8)
        return {kFirstLength + offset, 0, 0};
    const int bits = std::bit_width(offset) - 3;
    const std::uint32_t symbol = 4 * static_cast<std::uint32_t>(bits) + (offset >> bits);
    return {kFirstLength + symbol, offset & ((1U << bits) - 1), bits};
}

std::uint32_t MatchPart::leastLength(std::size_t symbol) {
    if (symbol == kLiteralSymbols - 1)
        return kLongestMatch;
    const auto offset = static_cast<std::uint32_t>(symbol - kFirstLength);
    const int bits = extraBitsOf(symbol);
    return kShortestMatch + (bits == 0 ? offset : (offset - 4 * static_cast<std::uint32_t>(bits)) << bits);
}

MatchPart MatchPart::ofDistance(std::uint32_t distance) {
    // Distances 1 to 4 have a symbol each; from there on every power of two has two symbols.
    const std::uint32_t offset = distance - 1;
    if (offset < 4)
        return {offset, 0, 0};
    const int bits = std::bit_width(offset) - 2;
    const std::uint32_t symbol = 2 * static_cast<std::uint32_t>(bits) + (offset >> bits);
    return {symbol, offset & ((1U << bits) - 1), bits};
}

void putBlockHeader(FastBits& to, const BlockCode& code) {
    std::vector<std::uint8_t> lengths = code.literals.lengths;
    lengths.insert(lengths.end(), code.distances.lengths.begin(), code.distances.lengths.end());
    const std::vector<HeaderSymbol> symbols = headerSymbols(lengths);
    std::array<std::uint32_t, kOrder.size()> frequencies{};
    for (const HeaderSymbol& each : symbols)
        ++frequencies[each.symbol];
    const HuffmanCode lengthCode = HuffmanCode::forFrequencies(frequencies, kLongestOwnCode);
    std::size_t told = kOrder.size();
    while (told > kFewestTold && lengthCode.lengths[kOrder[told - 1]] == 0)
        --told;

    to.put(kCodesOfItsOwn << 1, 3);
    to.put(kLiteralSymbols - 257, 5);
    to.put(code.distances.lengths.size() - 1, 5);
    to.put(told - kFewestTold, 4);
    to.flush();
    for (const std::uint8_t symbol : std::span(kOrder).first(told)) {
        to.put(lengthCode.lengths[symbol], 3);
        to.flush();
    }
    for (const HeaderSymbol& each : symbols) {
        to.put(lengthCode.bits[each.symbol], lengthCode.lengths[each.symbol]);
        to.put(each.extra, each.extraBits);
        to.flush();
    }
}

std::optional<BlockCode> takeBlockHeader(BitReader& from) {
    if (from.take(3) != kCodesOfItsOwn << 1)
        return std::nullopt;
    const std::size_t literals = 257 + from.take(5);
    const std::size_t distances = 1 + from.take(5);
    const std::size_t told = kFewestTold + from.take(4);
    if (literals > kLiteralSymbols || distances > kDistanceSymbols)
        return std::nullopt;
    std::vector<std::uint8_t> own(kOrder.size(), 0);
    for (std::size_t i = 0; i < told; ++i)
        own[kOrder[i]] = static_cast<std::uint8_t>(from.take(3));
    auto lengths = takeLengths(from, HuffmanCode::forLengths(std::move(own)), literals + distances);
    if (!lengths)
        return std::nullopt;
    const auto firstDistance = lengths->begin() + static_cast<std::ptrdiff_t>(literals);
    BlockCode code;
    code.distances = HuffmanCode::forLengths({firstDistance, lengths->end()});
    lengths->resize(literals);
    code.literals = HuffmanCode::forLengths(std::move(*lengths));
    return code;
}

}  // namespace trimora::cutengine::kernels
