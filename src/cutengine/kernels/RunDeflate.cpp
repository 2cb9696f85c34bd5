#include "cutengine/kernels/RunDeflate.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace trimora::cutengine::kernels {
namespace {

constexpr std::array<std::uint32_t, 3> kDistances = {0, 1, 4};  // of the first ways
constexpr std::size_t kLongest = kLiteralSymbols - 1;           // the symbol of the longest match

// Writes the same bits many times, several at once.
void putRepeated(FastBits& to, BitString bits, std::uint32_t times) {
    constexpr int kAtOnce = 56;
    const int group = kAtOnce / bits.count;
    std::uint64_t grouped = 0;
    for (int i = 0; i < group; ++i)
        grouped |= bits.bits << (i * bits.count);
    const auto all = static_cast<std::uint32_t>(group);
    for (; times >= all; times -= all) {
        to.put(grouped, static_cast<std::uint32_t>(group * bits.count));
        to.flush();
    }
    const std::uint32_t rest = times * static_cast<std::uint32_t>(bits.count);
    to.put(grouped & ((std::uint64_t{1} << rest) - 1), rest);
    to.flush();
}

}  // namespace

// Each symbol's bits in a block, for every way that it may be meant, but for what a length adds.
class RunDeflate::SymbolBits {
 public:
    explicit SymbolBits(const BlockCode& code) {
        const HuffmanCode& literals = code.literals;
        for (std::size_t symbol = 0; symbol < kLiteralSymbols; ++symbol)
            at(Way::literal, symbol) = {literals.bits[symbol], literals.lengths[symbol], 0};
        for (const Way way : {Way::byteBefore, Way::pixelBefore}) {
            const auto back = kDistances[static_cast<std::size_t>(way)];
            const BitString distance = MatchPart::ofDistance(back).in(code.distances);
            for (std::size_t symbol = kEndOfBlock + 1; symbol < kLiteralSymbols; ++symbol) {
                const std::uint8_t extraAt = literals.lengths[symbol];
                const int distanceAt = extraAt + MatchPart::extraBitsOf(symbol);
                at(way, symbol) = {literals.bits[symbol] | static_cast<std::uint32_t>(distance.bits)
                                                               << distanceAt,
                                   static_cast<std::uint8_t>(distanceAt + distance.count), extraAt};
            }
        }
        const Entry match = at(Way::pixelBefore, kShortestSymbol);
        for (std::size_t byte = 0; byte < kEndOfBlock; ++byte) {
            const Entry literal = at(Way::literal, byte);
            at(Way::lastByte, byte) = {match.bits | literal.bits << match.count,
                                       static_cast<std::uint8_t>(match.count + literal.count), 0};
        }
    }

    // Two of them fit between two flushes.
    void put(FastBits& to, Token token) const {
        constexpr std::size_t kRepeatedZeros =
            static_cast<std::size_t>(Way::byteBefore) * kLiteralSymbols + kLongest;
        constexpr std::size_t kRepeatedPixels =
            static_cast<std::size_t>(Way::pixelBefore) * kLiteralSymbols + kLongest;
        const Entry& entry = entries_[token.symbol];
        if (token.symbol == kRepeatedZeros || token.symbol == kRepeatedPixels) {
            to.flush();
            putRepeated(to, {entry.bits, entry.count}, token.extra);
            return;
        }
        to.put(entry.bits | std::uint64_t{token.extra} << entry.extraAt, entry.count);
    }

 private:
    struct Entry {
        std::uint32_t bits = 0;
        std::uint8_t count = 0;
        std::uint8_t extraAt = 0;
    };
    Entry& at(Way way, std::size_t symbol) {
        return entries_[static_cast<std::size_t>(way) * kLiteralSymbols + symbol];
    }

    std::array<Entry, kLiteralSymbols*(kDistances.size() + 1)> entries_{};
};

RunDeflate::RunDeflate(std::uint64_t total) : left_(total), sums_(total) {
    tokens_.reserve(kTokensPerBlock);
}

// A match of any length from 3 on.
void RunDeflate::run(Way way, std::uint64_t length) {
    if (length < kLongestMatch) {
        match(way, static_cast<std::uint32_t>(length));
        return;
    }
    constexpr std::uint64_t kMost = std::uint64_t{kLongestMatch} << 15;  // that one token can tell
    for (; length > kMost + kLongestMatch; length -= kMost)
        longest(way, 1U << 15);
    const MatchSplit parts = MatchSplit::of(static_cast<std::uint32_t>(length));
    if (parts.longest > 0)
        longest(way, parts.longest);
    for (const std::uint32_t rest : parts.rest) {
        if (rest > 0)
            match(way, rest);
    }
}

void RunDeflate::byte(std::uint8_t value) {
    flushPixels();
    flushZeros();
    afterPixel_ = false;
    count(value);
    literal(value);
}

void RunDeflate::anyPixel(std::uint32_t value) {
    if (afterPixel_ && value == lastPixel_) {
        ++pendingPixels_;
        for (int shift = 0; shift < 32; shift += 8)
            count(static_cast<std::uint8_t>(value >> shift));
        return;
    }
    if ((value & kAllButLast) == 0) {
        zeros(kBytesButLast);
        byte(static_cast<std::uint8_t>(value >> 24));
    } else {
        for (int shift = 0; shift < 32; shift += 8) {
            const auto component = static_cast<std::uint8_t>(value >> shift);
            if (component == 0)
                zeros(1);
            else
                byte(component);
        }
        flushZeros();  // of a last component: the next pixel may be a match
    }
    afterPixel_ = true;
    lastPixel_ = value;
}

// A run of zeros is a literal zero and a match that repeats it.
void RunDeflate::flushZeros() {
    if (pendingZeros_ == 0)
        return;
    const std::uint64_t count = std::exchange(pendingZeros_, 0);
    literal(0);
    if (count > kShortestMatch) {
        run(Way::byteBefore, count - 1);
    } else {
        for (std::uint64_t i = 1; i < count; ++i)
            literal(0);
    }
}

RunDeflate::Piece RunDeflate::finish() {
    flushPixels();
    flushZeros();
    assert(left_ == 0);
    writeBlock();
    const std::size_t size = bytes_.size();
    bytes_.resize(size + kMarkSize + FastBits::kFlushed);
    bits_.to = bytes_.data() + size;
    putMark(bits_);
    bytes_.resize(static_cast<std::size_t>(bits_.to - bytes_.data()));
    return {std::move(bytes_), sums_};
}

void RunDeflate::writeBlock() {
    frequencies_[kEndOfBlock] = 1;
    // Of distances there are two, with a bit each.
    const BlockCode code{HuffmanCode::forFrequencies(frequencies_, kLongestCode),
                         HuffmanCode::forLengths({1, 0, 0, 1})};
    constexpr std::uint64_t kMostAfterCode = 6;  // bits of a length and its distance
    std::uint64_t mostBits = 0;
    for (std::size_t symbol = 0; symbol < kLiteralSymbols; ++symbol)
        mostBits += std::uint64_t{frequencies_[symbol]} * (code.literals.lengths[symbol] + kMostAfterCode);
    const std::size_t size = bytes_.size();
    bytes_.resize(size + kLargestHeader + mostBits / 8 + 2 * FastBits::kFlushed);
    FastBits to{bytes_.data() + size, bits_.bits, bits_.count};
    putBlockHeader(to, code);
    const SymbolBits symbols(code);
    for (std::size_t i = 0; i < tokens_.size(); ++i) {
        symbols.put(to, tokens_[i]);
        if (i % 2 != 0)
            to.flush();
    }
    to.flush();
    to.put(code.literals.bits[kEndOfBlock], code.literals.lengths[kEndOfBlock]);
    to.flush();
    bytes_.resize(static_cast<std::size_t>(to.to - bytes_.data()));
    bits_ = to;
    tokens_.clear();
    frequencies_ = {};
}

}  // namespace trimora::cutengine::kernels
