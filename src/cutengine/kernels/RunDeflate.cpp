#include "cutengine/kernels/RunDeflate.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <span>
#include <utility>

#include "cutengine/kernels/HuffmanCode.h"

namespace trimora::cutengine::kernels {
namespace {

constexpr std::uint64_t kModulus = 65521;  // of zlib's checksum
constexpr std::size_t kTokensPerBlock = std::size_t{1} << 16;
constexpr std::uint32_t kLongestMatch = 258;
constexpr std::uint32_t kShortestMatch = 3;
constexpr std::size_t kEndOfBlock = 256;
constexpr std::size_t kFirstLength = 257;
constexpr std::size_t kLiteralSymbols = 286;
constexpr std::size_t kDistanceSymbols = 4;  // 1 is symbol 0, 4 is symbol 3

// A match's length as deflate writes it: a symbol and what is to be added to the symbol's base.
struct LengthSymbol {
    std::size_t symbol = 0;
    std::uint32_t extra = 0;
    int extraBits = 0;
};

LengthSymbol lengthSymbol(std::uint32_t length) {
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

// A run of any length as matches: many of the longest, then up to two that make up the rest.
struct MatchSplit {
    std::uint32_t longest = 0;
    std::array<std::uint32_t, 2> rest{};
};

MatchSplit split(std::uint32_t length) {
    const std::uint32_t left = length % kLongestMatch;
    if (left == 0 || left >= kShortestMatch)
        return {length / kLongestMatch, {left, 0}};
    return {length / kLongestMatch - 1, {kLongestMatch + left - kShortestMatch, kShortestMatch}};
}

// Code lengths of a block's header, with runs of zeros shortened: symbol 18 stands for 11 to 138 of
// them, symbol 17 for 3 to 10.
struct HeaderSymbol {
    std::uint8_t symbol = 0;
    std::uint8_t extra = 0;
};

std::vector<HeaderSymbol> headerSymbols(std::span<const std::uint8_t> lengths) {
    std::vector<HeaderSymbol> symbols;
    for (std::size_t i = 0; i < lengths.size();) {
        std::size_t zeros = 0;
        while (i + zeros < lengths.size() && zeros < 138 && lengths[i + zeros] == 0)
            ++zeros;
        if (zeros >= 11)
            symbols.push_back({18, static_cast<std::uint8_t>(zeros - 11)});
        else if (zeros >= 3)
            symbols.push_back({17, static_cast<std::uint8_t>(zeros - 3)});
        else
            symbols.push_back({lengths[i], 0});
        i += zeros >= 3 ? zeros : 1;
    }
    return symbols;
}

}  // namespace

struct RunDeflate::Codes {
    HuffmanCode literals;
    HuffmanCode distances = HuffmanCode::forLengths({1, 0, 0, 1});

    // Distance codes have one bit: 0 for distance 1, 1 for distance 4.
    static_assert(kDistanceSymbols == 4);
};

RunDeflate::RunDeflate(std::uint64_t total) : total_(total), weightedSum_(total % kModulus) {
    tokens_.reserve(kTokensPerBlock);
    out_ = {0x78, 0x01};  // deflate, a window of 32 KiB, compressed for speed
}

void RunDeflate::push(Token token) {
    tokens_.push_back(token);
    if (tokens_.size() == kTokensPerBlock)
        writeBlock(false);
}

// The second sum counts a byte once for every byte from it to the end.
void RunDeflate::addToChecksum(std::uint8_t value) {
    sum_ += value;
    weightedSum_ = (weightedSum_ + (total_ - written_) % kModulus * value) % kModulus;
    ++written_;
}

std::uint32_t RunDeflate::checksum() const {
    return static_cast<std::uint32_t>(weightedSum_ << 16 | sum_ % kModulus);
}

void RunDeflate::byte(std::uint8_t value) {
    flushRuns();
    flushZeros();
    afterPixel_ = false;
    addToChecksum(value);
    literal(value);
}

void RunDeflate::zeros(std::uint64_t count) {
    if (count == 0)
        return;
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
        flushRuns();
        push({Kind::pixelRun, kBytesButLast});
        written_ += kBytesButLast;
        byte(static_cast<std::uint8_t>(value >> 24));
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
        push({Kind::pixelRun, static_cast<std::uint32_t>(4 * count)});
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
            push({Kind::zeroRun, static_cast<std::uint32_t>(count - 1)});
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
    putBits(0, (8 - bitCount_ % 8) % 8);
    for (int shift = 24; shift >= 0; shift -= 8)
        putBits(checksum() >> shift & 255, 8);
    for (; bitCount_ > 0; bitCount_ -= 8, bits_ >>= 8)
        out_.push_back(static_cast<std::uint8_t>(bits_));
    return std::move(out_);
}

void RunDeflate::putBits(std::uint64_t bits, int count) {
    bits_ |= bits << bitCount_;
    bitCount_ += count;
    for (; bitCount_ >= 32; bitCount_ -= 32, bits_ >>= 32) {
        for (int shift = 0; shift < 32; shift += 8)
            out_.push_back(static_cast<std::uint8_t>(bits_ >> shift));
    }
}

void RunDeflate::writeBlock(bool last) {
    std::array<std::uint32_t, kLiteralSymbols> frequencies{};
    frequencies[kEndOfBlock] = 1;
    for (const Token& token : tokens_) {
        if (token.kind == Kind::literal) {
            ++frequencies[token.value];
            continue;
        }
        const MatchSplit parts = split(token.value);
        frequencies.back() += parts.longest;
        for (const std::uint32_t rest : parts.rest) {
            if (rest > 0)
                ++frequencies[lengthSymbol(rest).symbol];
        }
    }
    const Codes codes{HuffmanCode::forFrequencies(frequencies, 15)};
    writeHeader(codes, last);
    for (const Token& token : tokens_) {
        if (token.kind == Kind::literal)
            putBits(codes.literals.bits[token.value], codes.literals.lengths[token.value]);
        else
            writeMatch(codes, token.kind, token.value);
    }
    putBits(codes.literals.bits[kEndOfBlock], codes.literals.lengths[kEndOfBlock]);
    tokens_.clear();
}

void RunDeflate::writeHeader(const Codes& codes, bool last) {
    constexpr std::array<std::uint8_t, 19> kOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                     11, 4,  12, 3, 13, 2, 14, 1, 15};
    std::vector<std::uint8_t> lengths = codes.literals.lengths;
    lengths.insert(lengths.end(), codes.distances.lengths.begin(), codes.distances.lengths.end());
    const std::vector<HeaderSymbol> symbols = headerSymbols(lengths);
    std::array<std::uint32_t, 19> frequencies{};
    for (const HeaderSymbol& each : symbols)
        ++frequencies[each.symbol];
    const HuffmanCode code = HuffmanCode::forFrequencies(frequencies, 7);

    putBits(last ? 1 : 0, 1);
    putBits(2, 2);  // codes of its own
    putBits(kLiteralSymbols - 257, 5);
    putBits(kDistanceSymbols - 1, 5);
    putBits(kOrder.size() - 4, 4);
    for (const std::uint8_t symbol : kOrder)
        putBits(code.lengths[symbol], 3);
    for (const HeaderSymbol& each : symbols) {
        putBits(code.bits[each.symbol], code.lengths[each.symbol]);
        if (each.symbol == 17)
            putBits(each.extra, 3);
        else if (each.symbol == 18)
            putBits(each.extra, 7);
    }
}

void RunDeflate::writeMatch(const Codes& codes, Kind kind, std::uint32_t length) {
    const std::uint64_t distance = kind == Kind::pixelRun ? 1 : 0;
    const auto one = [&](std::uint32_t size) {
        const LengthSymbol as = lengthSymbol(size);
        const int symbolBits = codes.literals.lengths[as.symbol];
        const std::uint64_t bits = codes.literals.bits[as.symbol] |
                                   static_cast<std::uint64_t>(as.extra) << symbolBits |
                                   distance << (symbolBits + as.extraBits);
        return std::pair{bits, symbolBits + as.extraBits + 1};
    };
    const MatchSplit parts = split(length);
    if (parts.longest > 0) {
        // The longest match is the commonest thing in a mask: its code is written several at a time.
        constexpr int kAtOnce = 32;
        const auto [bits, count] = one(kLongestMatch);
        const int group = kAtOnce / count;
        std::uint64_t grouped = 0;
        for (int i = 0; i < group; ++i)
            grouped |= bits << (i * count);
        std::uint32_t left = parts.longest;
        for (; left >= static_cast<std::uint32_t>(group); left -= static_cast<std::uint32_t>(group))
            putBits(grouped, group * count);
        for (; left > 0; --left)
            putBits(bits, count);
    }
    for (const std::uint32_t rest : parts.rest) {
        if (rest > 0) {
            const auto [bits, count] = one(rest);
            putBits(bits, count);
        }
    }
}

}  // namespace trimora::cutengine::kernels
