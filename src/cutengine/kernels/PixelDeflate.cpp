#include "cutengine/kernels/PixelDeflate.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>
#include <vector>

#include "cutengine/kernels/DeflateBlock.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/PixelDeflate.cpp"
#include "hwy/foreach_target.h"  // compiles this file again for every target
#include "hwy/highway.h"

#ifndef TRIMORA_PIXEL_DEFLATE_ONCE
#define TRIMORA_PIXEL_DEFLATE_ONCE
namespace trimora::cutengine::kernels {
namespace {

using foundation::PixelBuffer;

constexpr std::size_t kPixel = 4;
// A match stands for at least two pixels: one alone costs about as much as its four bytes.
constexpr std::size_t kShortest = 2 * kPixel;
constexpr std::size_t kLongest = kLongestMatch / kPixel * kPixel;
constexpr std::uint32_t kMissesPerStep = 32;
constexpr std::uint32_t kLongestStep = 6;
// Four codes, or a match, and what is left of the byte before fit into 64 bits.
constexpr int kLongestCode = 14;

template <typename Word>
Word load(const std::uint8_t* from) {
    Word word = 0;
    std::memcpy(&word, from, sizeof word);
    return word;
}

/// Pixels as they are, and after them a match; a match of 0 bytes ends a row.
struct Token {
    std::uint32_t pixels;
    std::uint16_t matchBytes;
    std::uint16_t distance;  ///< less 1
};

/// Where two pixels were last met, by a number made of them.
class Places {
 public:
    /// The place noted under the two pixels at `place`, which is noted instead; no place is 0.
    std::uint32_t exchange(const std::uint8_t* begin, std::uint32_t place) {
        constexpr std::uint64_t kMix = 0x9E3779B97F4A7C15;
        std::uint32_t& noted = places_[load<std::uint64_t>(begin + place) * kMix >> (64 - kBits)];
        return std::exchange(noted, place);
    }

 private:
    static constexpr int kBits = 12;  // stays in the first cache
    std::array<std::uint32_t, std::size_t{1} << kBits> places_{};
};

/// How many bytes, a multiple of the pixel's and at most `most`, are the same at both places.
std::size_t commonLength(const std::uint8_t* a, const std::uint8_t* b, std::size_t most) {
    std::size_t length = 0;
    while (length + sizeof(std::uint64_t) <= most) {
        const std::uint64_t difference = load<std::uint64_t>(a + length) ^ load<std::uint64_t>(b + length);
        if (difference != 0)
            return length + (static_cast<std::size_t>(std::countr_zero(difference)) / 8 & ~(kPixel - 1));
        length += sizeof(std::uint64_t);
    }
    return length + kPixel <= most && load<std::uint32_t>(a + length) == load<std::uint32_t>(b + length)
               ? length + kPixel
               : length;
}

/// Appends the tokens of the row whose pixels lie at first .. end - 1.
void appendTokens(const std::uint8_t* begin, std::uint32_t first, std::uint32_t end, Places& places,
                  std::vector<Token>& tokens) {
    std::uint32_t at = first;
    std::uint32_t literals = first;
    std::uint32_t misses = 0;
    while (at + kShortest <= end) {
        const std::uint32_t earlier = places.exchange(begin, at);
        const std::uint32_t distance = at - earlier;
        if (earlier != 0 && distance <= kFarthestMatch) {
            const std::size_t length =
                commonLength(begin + at, begin + earlier, std::min<std::size_t>(end - at, kLongest));
            if (length >= kShortest) {
                tokens.push_back({static_cast<std::uint32_t>((at - literals) / kPixel),
                                  static_cast<std::uint16_t>(length),
                                  static_cast<std::uint16_t>(distance - 1)});
                at += static_cast<std::uint32_t>(length);
                literals = at;
                misses = 0;
                if (const std::uint32_t last = at - kPixel; last + kShortest <= end)
                    places.exchange(begin, last);
                continue;
            }
        }
        // Where nothing repeats, looks become fewer.
        at += kPixel * std::min(1 + misses++ / kMissesPerStep, kLongestStep);
    }
    tokens.push_back({static_cast<std::uint32_t>((end - literals) / kPixel), 0, 0});
}

std::vector<Token> tokensOf(const FilteredRows& rows) {
    std::vector<Token> tokens;
    tokens.reserve(rows.bytes.size() / (4 * kPixel));
    Places places;
    for (std::size_t y = 0; y < rows.count(); ++y) {
        const auto first = static_cast<std::uint32_t>(y * rows.rowSize() + 1);
        appendTokens(rows.bytes.data(), first, first + static_cast<std::uint32_t>(rows.rowSize() - 1), places,
                     tokens);
    }
    return tokens;
}

/// How often every symbol occurs.
class Tally {
 public:
    void add(const FilteredRows& rows, const std::vector<Token>& tokens) {
        const std::uint8_t* at = rows.bytes.data();
        bool isRowStart = true;
        for (const Token& token : tokens) {
            if (isRowStart)
                ++literals_[0][*at++];
            addPixels(at, token.pixels);
            at += token.pixels * kPixel + token.matchBytes;
            isRowStart = token.matchBytes == 0;
            if (!isRowStart)
                addMatch(token);
        }
    }

    [[nodiscard]] BlockCode code() {
        std::array<std::uint32_t, kLiteralSymbols> literals{};
        literals[kEndOfBlock] = 1;
        for (const auto& counts : literals_) {
            for (std::size_t i = 0; i < counts.size(); ++i)
                literals[i] += counts[i];
        }
        for (std::size_t pixels = 0; pixels < lengths_.size(); ++pixels) {
            if (lengths_[pixels] > 0)
                literals[MatchPart::ofLength(static_cast<std::uint32_t>(pixels * kPixel)).symbol] +=
                    lengths_[pixels];
        }
        // Two distances at least have a code.
        distances_[0] += 1;
        distances_[1] += 1;
        return {HuffmanCode::forFrequencies(literals, kLongestCode),
                HuffmanCode::forFrequencies(distances_, kLongestCode)};
    }

 private:
    // A count for each component: two that are alike would wait for one another.
    void addPixels(const std::uint8_t* at, std::uint32_t count) {
        for (const std::uint8_t* const end = at + count * kPixel; at < end; at += kPixel) {
            for (std::size_t i = 0; i < kPixel; ++i)
                ++literals_[i][at[i]];
        }
    }

    void addMatch(const Token& token) {
        ++lengths_[token.matchBytes / kPixel];
        ++distances_[MatchPart::ofDistance(token.distance + 1U).symbol];
    }

    std::array<std::array<std::uint32_t, 256>, kPixel> literals_{};
    std::array<std::uint32_t, kLongest / kPixel + 1> lengths_{};
    std::array<std::uint32_t, kDistanceSymbols> distances_{};
};

/// A code and its length, to be had with one look.
struct Entry {
    std::uint32_t bits = 0;
    std::uint32_t count = 0;
};

/// The code of a block, laid out for writing.
struct Tables {
    explicit Tables(const BlockCode& code) : distances(code.distances) {
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = {code.literals.bits[i], code.literals.lengths[i]};
        for (std::size_t pixels = 2; pixels < lengths.size(); ++pixels) {
            const BitString length =
                MatchPart::ofLength(static_cast<std::uint32_t>(pixels * kPixel)).in(code.literals);
            lengths[pixels] = {static_cast<std::uint32_t>(length.bits),
                               static_cast<std::uint32_t>(length.count)};
        }
    }

    std::array<Entry, 256> bytes;
    std::array<Entry, kLongest / kPixel + 1> lengths;
    const HuffmanCode& distances;
};

}  // namespace
}  // namespace trimora::cutengine::kernels
#endif

// Compiled for every target for the sake of its shifts, which wait for one another.
HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {

const std::uint8_t* putPixels(const std::uint8_t* at, std::uint32_t count, const Tables& tables,
                              FastBits& bits) {
    for (const std::uint8_t* const end = at + count * kPixel; at < end; at += kPixel) {
        const Entry& first = tables.bytes[at[0]];
        const Entry& second = tables.bytes[at[1]];
        const Entry& third = tables.bytes[at[2]];
        const Entry& fourth = tables.bytes[at[3]];
        const std::uint64_t front = first.bits | static_cast<std::uint64_t>(second.bits) << first.count;
        const std::uint64_t back = third.bits | static_cast<std::uint64_t>(fourth.bits) << third.count;
        const std::uint32_t frontCount = first.count + second.count;
        bits.put(front | back << frontCount, frontCount + third.count + fourth.count);
        bits.flush();
    }
    return at;
}

void putMatch(const Token& token, const Tables& tables, FastBits& bits) {
    const Entry& length = tables.lengths[token.matchBytes / kPixel];
    const BitString distance = MatchPart::ofDistance(token.distance + 1U).in(tables.distances);
    bits.put(length.bits | distance.bits << length.count,
             length.count + static_cast<std::uint32_t>(distance.count));
    bits.flush();
}

void putTokensImpl(const std::uint8_t* at, const std::vector<Token>& tokens, const Tables& tables,
                   FastBits& out) {
    FastBits bits = out;
    bool isRowStart = true;
    for (const Token& token : tokens) {
        if (isRowStart) {
            bits.put(tables.bytes[*at].bits, tables.bytes[*at].count);
            bits.flush();
            ++at;
        }
        at = putPixels(at, token.pixels, tables, bits);
        isRowStart = token.matchBytes == 0;
        if (!isRowStart) {
            putMatch(token, tables, bits);
            at += token.matchBytes;
        }
    }
    out = bits;
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {

HWY_EXPORT(putTokensImpl);

PackedBytes packPixels(const FilteredRows& rows) {
    const std::vector<Token> tokens = tokensOf(rows);
    Tally tally;
    tally.add(rows, tokens);
    const BlockCode code = tally.code();
    constexpr std::size_t kRoomForEnds = 64;  // the end of the block, the mark, and what flush() overshoots
    PackedBytes packed{
        PixelBuffer::allocate(rows.bytes.size() * kLongestCode / 8 + kLargestHeader + kRoomForEnds)};
    if (!packed.buffer)
        return packed;
    std::uint8_t* const begin = packed.buffer.data();
    FastBits out{begin};
    putBlockHeader(out, code);
    HWY_DYNAMIC_DISPATCH(putTokensImpl)(rows.bytes.data(), tokens, Tables(code), out);
    out.put(code.literals.bits[kEndOfBlock], code.literals.lengths[kEndOfBlock]);
    putMark(out);
    packed.size = static_cast<std::size_t>(out.to - begin);
    return packed;
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
