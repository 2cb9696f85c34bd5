#include "cutengine/kernels/SampleRows.h"

#include <algorithm>

// The code below the next line is compiled once for every instruction set.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/SampleRows.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Pixels are read as words of two bytes: blue and green, red and alpha. A group's words fill the longest
// vector that is used.
constexpr std::size_t kGroupWords = kGroupPixels * kSharesPerPixel;
using Samples = hn::CappedTag<Sample, kGroupWords>;
using Words = hn::RebindToUnsigned<Samples>;

/// Where the samples of the lower bytes of some words stand; those of the upper are kGroupWords further.
HWY_INLINE std::size_t samplesAt(std::size_t word) {
    return word / kGroupWords * kGroupWords * 2 + word % kGroupWords;
}

HWY_INLINE auto loadWords(const std::uint8_t* from) {
    return hn::LoadU(Words(), reinterpret_cast<const std::uint16_t*>(from));
}

template <class V>
HWY_INLINE auto lowerBytes(V words) {
    return hn::BitCast(Samples(), hn::And(hn::ShiftLeft<7>(words), hn::Set(Words(), 0x7F80)));
}
template <class V>
HWY_INLINE auto upperBytes(V words) {
    return hn::BitCast(Samples(), hn::And(hn::ShiftRight<1>(words), hn::Set(Words(), 0x7F80)));
}

/// from + (to - from) weight; the difference of two samples always fits a sample.
template <class V>
HWY_INLINE V between(V from, V to, V weight) {
    return hn::Add(from, hn::MulFixedPoint15(hn::Sub(to, from), weight));
}

template <class V>
HWY_INLINE void stretch(V left, V right, const Share* weights, Sample* to) {
    const Samples samples;
    const auto weight = hn::LoadU(samples, weights);
    hn::StoreU(between(lowerBytes(left), lowerBytes(right), weight), samples, to);
    hn::StoreU(between(upperBytes(left), upperBytes(right), weight), samples, to + kGroupWords);
}

/// Rounds to levels and puts the bytes of words together again.
template <class V>
HWY_INLINE void storeWords(V lower, V upper, std::uint8_t* to) {
    const auto half = hn::Set(Samples(), Sample{kSamplesPerLevel / 2});
    const auto low = hn::ShiftRight<7>(hn::BitCast(Words(), hn::SaturatedAdd(lower, half)));
    const auto high = hn::ShiftLeft<1>(hn::BitCast(Words(), hn::SaturatedAdd(upper, half)));
    const auto both = hn::Or(low, hn::And(high, hn::Set(Words(), 0xFF00)));
    hn::StoreU(both, Words(), reinterpret_cast<std::uint16_t*>(to));
}

void maskShares(const MaskRow& row, std::size_t pixels, Share* shares) {
    const hn::CappedTag<std::uint32_t, kGroupPixels> words;
    const hn::RebindToSigned<decltype(words)> wholes;
    const hn::RebindToFloat<decltype(words)> reals;
    const auto byte = hn::Set(words, 0xFF);
    const auto down = hn::Set(reals, row.weight);
    const auto most = hn::Set(reals, row.coverage * kFullShare);
    const auto real = [&](auto word)
                          HWY_ATTR { return hn::ConvertTo(reals, hn::BitCast(wholes, hn::And(word, byte))); };
    const auto mix = [](auto from, auto to, auto weight)
                         HWY_ATTR { return hn::Add(from, hn::Mul(hn::Sub(to, from), weight)); };
    for (std::size_t i = 0; i < pixels; i += hn::Lanes(words)) {
        const auto quad = hn::LoadU(words, row.quads + i);
        const auto across = hn::LoadU(reals, row.weights + i);
        const auto top = mix(real(quad), real(hn::ShiftRight<8>(quad)), across);
        const auto bottom = mix(real(hn::ShiftRight<16>(quad)), real(hn::ShiftRight<24>(quad)), across);
        const auto mask = hn::Mul(mix(top, bottom, down), hn::Set(reals, 1.0F / 255));
        const auto shown = hn::Mul(mask, hn::Mul(hn::LoadU(reals, row.coverages + i), most));
        const auto share = hn::BitCast(words, hn::NearestInt(shown));
        hn::StoreU(hn::Or(share, hn::ShiftLeft<16>(share)), words,
                   reinterpret_cast<std::uint32_t*>(shares + kSharesPerPixel * i));
    }
}

void stretchRun(const std::uint8_t* left, const std::uint8_t* right, const Share* weights, std::size_t pixels,
                Sample* to) {
    for (std::size_t i = 0; i < kSharesPerPixel * pixels; i += hn::Lanes(Words()))
        stretch(loadWords(left + 2 * i), loadWords(right + 2 * i), weights + i, to + samplesAt(i));
}

#if HWY_TARGET == HWY_SCALAR

void stretchPicked(const std::uint8_t* row, std::size_t /*width*/, const std::uint32_t* indices,
                   const Share* weights, std::size_t pixels, Sample* to) {
    for (std::size_t i = 0; i < kSharesPerPixel * pixels; ++i) {
        const std::uint8_t* const left = row + kSamplesPerPixel * indices[i / 2] + i % 2 * 2;
        stretch(loadWords(left), loadWords(left + kSamplesPerPixel), weights + i, to + samplesAt(i));
    }
}

/// Alpha of the pixels of some words.
HWY_INLINE auto alphasAt(const Sample* row, std::size_t word) {
    return hn::Set(Samples(), row[samplesAt(word | 1) + kGroupWords]);
}

#else

using Pixels = hn::Repartition<std::uint32_t, Samples>;

void stretchPicked(const std::uint8_t* row, std::size_t width, const std::uint32_t* indices,
                   const Share* weights, std::size_t pixels, Sample* to) {
    const Pixels lanes;
    const std::size_t count = hn::Lanes(lanes);
    const auto inLower = hn::FirstN(lanes, count / 2);
    const auto last = static_cast<std::uint32_t>(width - count);
    const auto load = [&](std::uint32_t pixel)
                          HWY_ATTR { return hn::BitCast(lanes, loadWords(row + kSamplesPerPixel * pixel)); };
    for (std::size_t i = 0; i < pixels; i += count) {
        // Either half of the lanes reads no more pixels than a vector holds, as indices grow by 2 at most.
        const std::uint32_t lower = std::min(indices[i], last);
        const std::uint32_t upper = std::min(indices[i + count / 2], last);
        const auto first = hn::IfThenElse(inLower, hn::Set(lanes, lower), hn::Set(lanes, upper));
        const auto inVector = hn::Sub(hn::LoadU(lanes, indices + i), first);
        const auto lefts = hn::IndicesFromVec(lanes, inVector);
        const auto rights = hn::IndicesFromVec(lanes, hn::Add(inVector, hn::Set(lanes, 1)));
        const auto lowers = load(lower);
        const auto uppers = load(upper);
        const auto pick = [&](auto which) HWY_ATTR {
            return hn::BitCast(Words(), hn::IfThenElse(inLower, hn::TableLookupLanes(lowers, which),
                                                       hn::TableLookupLanes(uppers, which)));
        };
        stretch(pick(lefts), pick(rights), weights + kSharesPerPixel * i,
                to + samplesAt(kSharesPerPixel * i));
    }
}

/// Alpha of the pixels of some words.
HWY_INLINE auto alphasAt(const Sample* row, std::size_t word) {
    const auto upper = hn::BitCast(Pixels(), hn::LoadU(Samples(), row + samplesAt(word) + kGroupWords));
    const auto alpha = hn::ShiftRight<16>(upper);
    return hn::BitCast(Samples(), hn::Or(alpha, hn::ShiftLeft<16>(alpha)));
}

#endif

void mixSamples(const Sample* top, const Sample* bottom, Share weight, std::size_t pixels, Sample* to) {
    const Samples samples;
    const auto weights = hn::Set(samples, weight);
    for (std::size_t i = 0; i < kSamplesPerPixel * pixels; i += hn::Lanes(samples))
        hn::StoreU(between(hn::LoadU(samples, top + i), hn::LoadU(samples, bottom + i), weights), samples,
                   to + i);
}

void mixToBytes(const Sample* top, const Sample* bottom, Share weight, std::size_t pixels, std::uint8_t* to) {
    const Samples samples;
    const auto weights = hn::Set(samples, weight);
    const auto mixed = [&](std::size_t at) HWY_ATTR {
        return between(hn::LoadU(samples, top + at), hn::LoadU(samples, bottom + at), weights);
    };
    for (std::size_t i = 0; i < kSharesPerPixel * pixels; i += hn::Lanes(Words()))
        storeWords(mixed(samplesAt(i)), mixed(samplesAt(i) + kGroupWords), to + 2 * i);
}

void widenSamples(const std::uint8_t* from, std::size_t pixels, Sample* to) {
    for (std::size_t i = 0; i < kSharesPerPixel * pixels; i += hn::Lanes(Words())) {
        const auto words = loadWords(from + 2 * i);
        hn::StoreU(lowerBytes(words), Samples(), to + samplesAt(i));
        hn::StoreU(upperBytes(words), Samples(), to + samplesAt(i) + kGroupWords);
    }
}

void narrowSamples(const Sample* from, std::size_t pixels, std::uint8_t* to) {
    for (std::size_t i = 0; i < kSharesPerPixel * pixels; i += hn::Lanes(Words())) {
        const Sample* const at = from + samplesAt(i);
        storeWords(hn::LoadU(Samples(), at), hn::LoadU(Samples(), at + kGroupWords), to + 2 * i);
    }
}

void coverSamples(Sample* base, const Sample* top, const Share* shares, std::size_t pixels) {
    const Samples samples;
    for (std::size_t i = 0; i < kSharesPerPixel * pixels; i += hn::Lanes(samples)) {
        const auto share = hn::LoadU(samples, shares + i);
        for (const std::size_t at : {samplesAt(i), samplesAt(i) + kGroupWords})
            hn::StoreU(between(hn::LoadU(samples, base + at), hn::LoadU(samples, top + at), share), samples,
                       base + at);
    }
}

void blendSamples(Sample* base, const Sample* top, const Share* shares, std::size_t pixels) {
    const Samples samples;
    for (std::size_t i = 0; i < kSharesPerPixel * pixels; i += hn::Lanes(samples)) {
        const auto share = hn::LoadU(samples, shares + i);
        const auto alpha = alphasAt(top, i);
        // From 128ths of 255 to 32767ths.
        const auto hidden = hn::MulFixedPoint15(hn::Add(alpha, hn::ShiftRight<8>(alpha)), share);
        for (const std::size_t at : {samplesAt(i), samplesAt(i) + kGroupWords}) {
            const auto below = hn::LoadU(samples, base + at);
            const auto left = hn::Sub(below, hn::MulFixedPoint15(below, hidden));
            const auto added = hn::MulFixedPoint15(hn::LoadU(samples, top + at), share);
            hn::StoreU(hn::SaturatedAdd(left, added), samples, base + at);
        }
    }
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {

HWY_EXPORT(maskShares);
HWY_EXPORT(stretchRun);
HWY_EXPORT(stretchPicked);
HWY_EXPORT(mixSamples);
HWY_EXPORT(mixToBytes);
HWY_EXPORT(widenSamples);
HWY_EXPORT(narrowSamples);
HWY_EXPORT(coverSamples);
HWY_EXPORT(blendSamples);

void maskShares(const MaskRow& row, std::size_t pixels, Share* shares) {
    HWY_DYNAMIC_DISPATCH(maskShares)(row, pixels, shares);
}

void stretchRun(const std::uint8_t* left, const std::uint8_t* right, const Share* weights, std::size_t pixels,
                Sample* to) {
    HWY_DYNAMIC_DISPATCH(stretchRun)(left, right, weights, pixels, to);
}

void stretchPicked(const std::uint8_t* row, std::size_t width, const std::uint32_t* indices,
                   const Share* weights, std::size_t pixels, Sample* to) {
    HWY_DYNAMIC_DISPATCH(stretchPicked)(row, width, indices, weights, pixels, to);
}

void mixSamples(const Sample* top, const Sample* bottom, Share weight, std::size_t pixels, Sample* to) {
    HWY_DYNAMIC_DISPATCH(mixSamples)(top, bottom, weight, pixels, to);
}

void mixToBytes(const Sample* top, const Sample* bottom, Share weight, std::size_t pixels, std::uint8_t* to) {
    HWY_DYNAMIC_DISPATCH(mixToBytes)(top, bottom, weight, pixels, to);
}

void widenSamples(const std::uint8_t* from, std::size_t pixels, Sample* to) {
    HWY_DYNAMIC_DISPATCH(widenSamples)(from, pixels, to);
}

void narrowSamples(const Sample* from, std::size_t pixels, std::uint8_t* to) {
    HWY_DYNAMIC_DISPATCH(narrowSamples)(from, pixels, to);
}

void coverSamples(Sample* base, const Sample* top, const Share* shares, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(coverSamples)(base, top, shares, pixels);
}

void blendSamples(Sample* base, const Sample* top, const Share* shares, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(blendSamples)(base, top, shares, pixels);
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
