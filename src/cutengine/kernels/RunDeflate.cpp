#include "cutengine/kernels/RunDeflate.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace trimora::cutengine::kernels {
namespace {

constexpr std::uint64_t kModulus = 65521;  // of zlib's checksum
constexpr std::size_t kTokensPerBlock = std::size_t{1} << 16;
constexpr std::uint64_t kMostSum = std::uint64_t{1} << 62;  // far from 2^64 by more than one byte adds

constexpr std::array<std::uint32_t, 3> kDistances = {0, 1, 4};  // of the first ways
constexpr std::uint16_t kShortest = kEndOfBlock + 1;            // the symbol of a match of three bytes

// Each symbol's bits in a block, for every way that it may be meant, but for what a length adds.
class SymbolBits {
 public:
    explicit SymbolBits(const BlockCode& code) {
        const HuffmanCode& literals = code.literals;
        for (std::size_t symbol = 0; symbol < kLiteralSymbols; ++symbol)
            bits_[0][symbol] = {literals.bits[symbol], literals.lengths[symbol], 0};
        for (std::size_t way = 1; way < kDistances.size(); ++way) {
            const BitString distance = MatchPart::ofDistance(kDistances[way]).in(code.distances);
            for (std::size_t symbol = kEndOfBlock + 1; symbol < kLiteralSymbols; ++symbol) {
                const int extraAt = literals.lengths[symbol];
                const int distanceAt = extraAt + MatchPart::extraBitsOf(symbol);
                bits_[way][symbol] = {literals.bits[symbol] | static_cast<std::uint32_t>(distance.bits)
                                                                  << distanceAt,
                                      distanceAt + distance.count, extraAt};
            }
        }
        const Entry match = bits_[2][kShortest];
        for (std::size_t byte = 0; byte < kEndOfBlock; ++byte)
            bits_[3][byte] = {match.bits | bits_[0][byte].bits << match.count,
                              match.count + bits_[0][byte].count, 0};
    }
    [[nodiscard]] BitString of(std::size_t way, std::size_t symbol, std::uint32_t extra) const {
        const Entry& entry = bits_[way][symbol];
        return {entry.bits | extra << entry.extraAt, entry.count};
    }

 private:
    struct Entry {
        std::uint32_t bits = 0;
        int count = 0;
        int extraAt = 0;
    };
    std::array<std::array<Entry, kLiteralSymbols>, kDistances.size() + 1> bits_{};
};

// Writes the same bits many times, several at once.
void putRepeated(BitWriter& to, BitString bits, std::uint32_t times) {
    constexpr int kAtOnce = 32;
    const int group = kAtOnce / bits.count;
    std::uint64_t grouped = 0;
    for (int i = 0; i < group; ++i)
        grouped |= bits.bits << (i * bits.count);
    for (; times >= static_cast<std::uint32_t>(group); times -= static_cast<std::uint32_t>(group))
        to.put(grouped, group * bits.count);
    for (; times > 0; --times)
        to.put(bits.bits, bits.count);
}

}  // namespace

RunDeflate::RunDeflate(std::uint64_t total) : total_(total), weightedSum_(total % kModulus) {
    tokens_.reserve(kTokensPerBlock);
    stream_.bytes = {0x78, 0x01};  // deflate, a window of 32 KiB, compressed for speed
}

void RunDeflate::push(Token token) {
    frequencies_[token.symbol] += token.times;
    tokens_.push_back(token);
    if (tokens_.size() == kTokensPerBlock)
        writeBlock(false);
}

// A match that one symbol can tell.
void RunDeflate::match(Way way, std::uint32_t length) {
    const MatchPart part = MatchPart::ofLength(length);
    push({static_cast<std::uint16_t>(part.symbol), static_cast<std::uint8_t>(part.extra), way, 1});
}

// A match of any length from 3 on.
void RunDeflate::run(Way way, std::uint32_t length) {
    const MatchSplit parts = MatchSplit::of(length);
    if (parts.longest > 0)
        push({kLiteralSymbols - 1, 0, way, parts.longest});
    for (const std::uint32_t rest : parts.rest) {
        if (rest > 0)
            match(way, rest);
    }
}

// The second sum counts a byte once for every byte from it to the end.
void RunDeflate::addToChecksum(std::uint8_t value) {
    sum_ += value;
    weightedSum_ += (total_ - written_) * value;
    if (weightedSum_ >= kMostSum)
        weightedSum_ %= kModulus;
    ++written_;
}

std::uint32_t RunDeflate::checksum() const {
    return static_cast<std::uint32_t>(weightedSum_ % kModulus << 16 | sum_ % kModulus);
}

void RunDeflate::byte(std::uint8_t value) {
    flushRuns();
    flushZeros();
    afterPixel_ = false;
    addToChecksum(value);
    literal(value);
}

void RunDeflate::someZeros(std::uint64_t count) {
    flushRuns();
    afterPixel_ = false;
    pendingZeros_ += count;
    written_ += count;
}

void RunDeflate::pixel(std::uint32_t value) {
    constexpr std::uint32_t kAllButLast = 0x00FFFFFF;
    constexpr std::uint32_t kBytesButLast = 3;
    if (afterPixel_ && value == lastPixel_) {
        flushZeros();
        ++pendingPixels_;
        for (int shift = 0; shift < 32; shift += 8)
            addToChecksum(static_cast<std::uint8_t>(value >> shift));
        return;
    }
    if (afterPixel_ && ((value | lastPixel_) & kAllButLast) == 0) {
        // The first three bytes are those of the pixel before: a match is shorter than three zeros.
        const auto component = static_cast<std::uint8_t>(value >> 24);
        flushRuns();
        ++frequencies_[kShortest];
        push({component, 0, Way::lastByte, 1});
        written_ += kBytesButLast;
        addToChecksum(component);
    } else {
        for (int shift = 0; shift < 32; shift += 8) {
            const auto component = static_cast<std::uint8_t>(value >> shift);
            if (component == 0)
                zeros(1);
            else
                byte(component);
        }
    }
    afterPixel_ = true;
    lastPixel_ = value;
}

void RunDeflate::flushRuns() {
    constexpr std::uint64_t kMost = std::uint64_t{1} << 20;  // pixels a token: its length stays in 32 bits
    while (pendingPixels_ > 0) {
        const std::uint64_t count = std::min(pendingPixels_, kMost);
        run(Way::pixelBefore, static_cast<std::uint32_t>(4 * count));
        pendingPixels_ -= count;
    }
}

// A run of zeros is a literal zero and a match that repeats it.
void RunDeflate::flushZeros() {
    constexpr std::uint64_t kMost = std::uint64_t{1} << 30;
    while (pendingZeros_ > 0) {
        const std::uint64_t count = std::min(pendingZeros_, kMost);
        literal(0);
        if (count > kShortestMatch) {
            run(Way::byteBefore, static_cast<std::uint32_t>(count - 1));
        } else {
            for (std::uint64_t i = 1; i < count; ++i)
                literal(0);
        }
        pendingZeros_ -= count;
    }
}

std::vector<std::uint8_t> RunDeflate::finish() {
    flushRuns();
    flushZeros();
    assert(written_ == total_);
    writeBlock(true);
    stream_.finish();
    for (int shift = 24; shift >= 0; shift -= 8)
        stream_.bytes.push_back(static_cast<std::uint8_t>(checksum() >> shift));
    return std::move(stream_.bytes);
}

void RunDeflate::writeBlock(bool last) {
    frequencies_[kEndOfBlock] = 1;
    // Of distances there are two, with a bit each.
    const BlockCode code{HuffmanCode::forFrequencies(frequencies_, 15),
                         HuffmanCode::forLengths({1, 0, 0, 1})};
    putBlockHeader(stream_, code, last);
    const SymbolBits symbols(code);
    for (const Token& token : tokens_) {
        const BitString bits = symbols.of(static_cast<std::size_t>(token.way), token.symbol, token.extra);
        if (token.times == 1)
            stream_.put(bits.bits, bits.count);
        else
            putRepeated(stream_, bits, token.times);
    }
    const BitString end = symbols.of(0, kEndOfBlock, 0);
    stream_.put(end.bits, end.count);
    tokens_.clear();
    frequencies_ = {};
}

}  // namespace trimora::cutengine::kernels
