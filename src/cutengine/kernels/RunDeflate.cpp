#include "cutengine/kernels/RunDeflate.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace trimora::cutengine::kernels {
namespace {

constexpr std::uint64_t kModulus = 65521;  // of zlib's checksum
constexpr std::size_t kTokensPerBlock = std::size_t{1} << 16;
constexpr std::uint32_t kByteDistance = 1;
constexpr std::uint32_t kPixelDistance = 4;

}  // namespace

RunDeflate::RunDeflate(std::uint64_t total) : total_(total), weightedSum_(total % kModulus) {
    tokens_.reserve(kTokensPerBlock);
    stream_.bytes = {0x78, 0x01};  // deflate, a window of 32 KiB, compressed for speed
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
    stream_.finish();
    for (int shift = 24; shift >= 0; shift -= 8)
        stream_.bytes.push_back(static_cast<std::uint8_t>(checksum() >> shift));
    return std::move(stream_.bytes);
}

void RunDeflate::writeBlock(bool last) {
    std::array<std::uint32_t, kLiteralSymbols> frequencies{};
    frequencies[kEndOfBlock] = 1;
    for (const Token& token : tokens_) {
        if (token.kind == Kind::literal) {
            ++frequencies[token.value];
            continue;
        }
        const MatchSplit parts = MatchSplit::of(token.value);
        frequencies.back() += parts.longest;
        for (const std::uint32_t rest : parts.rest) {
            if (rest > 0)
                ++frequencies[MatchPart::ofLength(rest).symbol];
        }
    }
    // Of distances there are two, with a bit each.
    const BlockCode code{HuffmanCode::forFrequencies(frequencies, 15), HuffmanCode::forLengths({1, 0, 0, 1})};
    const HuffmanCode& literals = code.literals;
    putBlockHeader(stream_, code, last);
    for (const Token& token : tokens_) {
        if (token.kind == Kind::literal)
            stream_.put(literals.bits[token.value], literals.lengths[token.value]);
        else
            writeMatch(code, token.kind, token.value);
    }
    stream_.put(literals.bits[kEndOfBlock], literals.lengths[kEndOfBlock]);
    tokens_.clear();
}

void RunDeflate::writeMatch(const BlockCode& code, Kind kind, std::uint32_t length) {
    const std::uint32_t distance = kind == Kind::pixelRun ? kPixelDistance : kByteDistance;
    const MatchSplit parts = MatchSplit::of(length);
    if (parts.longest > 0) {
        // The longest match is the commonest thing in a mask: its code is written several at a time.
        constexpr int kAtOnce = 32;
        const auto [bits, count] = matchBits(code, kLongestMatch, distance);
        const int group = kAtOnce / count;
        std::uint64_t grouped = 0;
        for (int i = 0; i < group; ++i)
            grouped |= bits << (i * count);
        std::uint32_t left = parts.longest;
        for (; left >= static_cast<std::uint32_t>(group); left -= static_cast<std::uint32_t>(group))
            stream_.put(grouped, group * count);
        for (; left > 0; --left)
            stream_.put(bits, count);
    }
    for (const std::uint32_t rest : parts.rest) {
        if (rest > 0) {
            const auto [bits, count] = matchBits(code, rest, distance);
            stream_.put(bits, count);
        }
    }
}

}  // namespace trimora::cutengine::kernels
