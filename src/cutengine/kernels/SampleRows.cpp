#include "cutengine/kernels/SampleRows.h"

// The code below the next line is compiled once for every instruction set.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/SampleRows.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using Samples = hn::ScalableTag<Sample>;
using Bytes = hn::Rebind<std::uint8_t, Samples>;

HWY_INLINE auto widened(const std::uint8_t* from) {
    return hn::ShiftLeft<7>(hn::PromoteTo(Samples(), hn::LoadU(Bytes(), from)));
}

/// from + (to - from) weight; the difference of two samples always fits a sample.
template <class V>
HWY_INLINE V between(V from, V to, V weight) {
    return hn::Add(from, hn::MulFixedPoint15(hn::Sub(to, from), weight));
}

void maskShares(const MaskRow& row, std::size_t pixels, Share* shares) {
    const hn::ScalableTag<std::uint32_t> words;
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
        const auto twice = hn::Or(share, hn::ShiftLeft<16>(share));
        hn::StoreInterleaved2(twice, twice, words, reinterpret_cast<std::uint32_t*>(shares + 4 * i));
    }
}

void stretchSamples(const std::uint8_t* left, const std::uint8_t* right, const Share* weights,
                    std::size_t count, Sample* to) {
    const Samples samples;
    for (std::size_t i = 0; i < count; i += hn::Lanes(samples))
        hn::StoreU(between(widened(left + i), widened(right + i), hn::LoadU(samples, weights + i)), samples,
                   to + i);
}

#if HWY_TARGET == HWY_SCALAR
void stretchPairs(const std::uint8_t* pairs, const Share* weights, std::size_t count, Sample* to) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* const left = pairs + i / 4 * 8 + i % 4;
        hn::StoreU(between(widened(left), widened(left + 4), hn::LoadU(Samples(), weights + i)), Samples(),
                   to + i);
    }
}
#else
void stretchPairs(const std::uint8_t* pairs, const Share* weights, std::size_t count, Sample* to) {
    const Samples samples;
    const hn::Repartition<std::uint8_t, Samples> bytes;
    // Brings the bytes of one side of two pairs to the upper halves of samples; 0x80 gives 0.
    alignas(16) constexpr std::uint8_t kLeft[16] = {0x80, 0, 0x80, 1, 0x80, 2,  0x80, 3,
                                                    0x80, 8, 0x80, 9, 0x80, 10, 0x80, 11};
    const auto leftBytes = hn::LoadDup128(bytes, kLeft);
    const auto rightBytes =
        hn::Or(hn::Add(leftBytes, hn::Set(bytes, 4)), hn::And(leftBytes, hn::Set(bytes, 0x80)));
    const auto side = [&](auto pixels, auto which) HWY_ATTR {
        const auto raised =
            hn::BitCast(hn::RebindToUnsigned<Samples>(), hn::TableLookupBytesOr0(pixels, which));
        return hn::BitCast(samples, hn::ShiftRight<1>(raised));
    };
    for (std::size_t i = 0; i < count; i += hn::Lanes(samples)) {
        const auto pixels = hn::LoadU(bytes, pairs + 2 * i);
        hn::StoreU(
            between(side(pixels, leftBytes), side(pixels, rightBytes), hn::LoadU(samples, weights + i)),
            samples, to + i);
    }
}
#endif

template <class V>
HWY_INLINE void storeLevels(V levels, std::uint8_t* to) {
    const auto half = hn::Set(Samples(), Sample{kSamplesPerLevel / 2});
    hn::StoreU(hn::DemoteTo(Bytes(), hn::ShiftRight<7>(hn::SaturatedAdd(levels, half))), Bytes(), to);
}

void mixToBytes(const Sample* top, const Sample* bottom, Share weight, std::size_t count, std::uint8_t* to) {
    const Samples samples;
    const auto weights = hn::Set(samples, weight);
    for (std::size_t i = 0; i < count; i += hn::Lanes(samples))
        storeLevels(between(hn::LoadU(samples, top + i), hn::LoadU(samples, bottom + i), weights), to + i);
}

void mixSamples(const Sample* top, const Sample* bottom, Share weight, std::size_t count, Sample* to) {
    const Samples samples;
    const auto weights = hn::Set(samples, weight);
    for (std::size_t i = 0; i < count; i += hn::Lanes(samples))
        hn::StoreU(between(hn::LoadU(samples, top + i), hn::LoadU(samples, bottom + i), weights), samples,
                   to + i);
}

void widenSamples(const std::uint8_t* from, std::size_t count, Sample* to) {
    const Samples samples;
    for (std::size_t i = 0; i < count; i += hn::Lanes(samples))
        hn::StoreU(widened(from + i), samples, to + i);
}

void narrowSamples(const Sample* from, std::size_t count, std::uint8_t* to) {
    for (std::size_t i = 0; i < count; i += hn::Lanes(Samples()))
        storeLevels(hn::LoadU(Samples(), from + i), to + i);
}

void coverSamples(Sample* base, const Sample* top, const Share* shares, std::size_t count) {
    const Samples samples;
    for (std::size_t i = 0; i < count; i += hn::Lanes(samples))
        hn::StoreU(between(hn::LoadU(samples, base + i), hn::LoadU(samples, top + i),
                           hn::LoadU(samples, shares + i)),
                   samples, base + i);
}

void blendSamples(Sample* base, const Sample* top, const Share* shares, const Share* hidden,
                  std::size_t count) {
    const Samples samples;
    for (std::size_t i = 0; i < count; i += hn::Lanes(samples)) {
        const auto below = hn::LoadU(samples, base + i);
        const auto gone = hn::MulFixedPoint15(below, hn::LoadU(samples, hidden + i));
        const auto added = hn::MulFixedPoint15(hn::LoadU(samples, top + i), hn::LoadU(samples, shares + i));
        hn::StoreU(hn::SaturatedAdd(hn::Sub(below, gone), added), samples, base + i);
    }
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {

HWY_EXPORT(maskShares);
HWY_EXPORT(stretchSamples);
HWY_EXPORT(stretchPairs);
HWY_EXPORT(mixSamples);
HWY_EXPORT(mixToBytes);
HWY_EXPORT(widenSamples);
HWY_EXPORT(narrowSamples);
HWY_EXPORT(coverSamples);
HWY_EXPORT(blendSamples);

void maskShares(const MaskRow& row, std::size_t pixels, Share* shares) {
    HWY_DYNAMIC_DISPATCH(maskShares)(row, pixels, shares);
}

void stretchSamples(const std::uint8_t* left, const std::uint8_t* right, const Share* weights,
                    std::size_t count, Sample* to) {
    HWY_DYNAMIC_DISPATCH(stretchSamples)(left, right, weights, count, to);
}

void mixSamples(const Sample* top, const Sample* bottom, Share weight, std::size_t count, Sample* to) {
    HWY_DYNAMIC_DISPATCH(mixSamples)(top, bottom, weight, count, to);
}

void stretchPairs(const std::uint8_t* pairs, const Share* weights, std::size_t count, Sample* to) {
    HWY_DYNAMIC_DISPATCH(stretchPairs)(pairs, weights, count, to);
}

void mixToBytes(const Sample* top, const Sample* bottom, Share weight, std::size_t count, std::uint8_t* to) {
    HWY_DYNAMIC_DISPATCH(mixToBytes)(top, bottom, weight, count, to);
}

void widenSamples(const std::uint8_t* from, std::size_t count, Sample* to) {
    HWY_DYNAMIC_DISPATCH(widenSamples)(from, count, to);
}

void narrowSamples(const Sample* from, std::size_t count, std::uint8_t* to) {
    HWY_DYNAMIC_DISPATCH(narrowSamples)(from, count, to);
}

void coverSamples(Sample* base, const Sample* top, const Share* shares, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(coverSamples)(base, top, shares, count);
}

void blendSamples(Sample* base, const Sample* top, const Share* shares, const Share* hidden,
                  std::size_t count) {
    HWY_DYNAMIC_DISPATCH(blendSamples)(base, top, shares, hidden, count);
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
