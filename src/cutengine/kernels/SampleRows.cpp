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

HWY_ATTR auto widened(const std::uint8_t* from) {
    return hn::ShiftLeft<7>(hn::PromoteTo(Samples(), hn::LoadU(Bytes(), from)));
}

/// from + (to - from) weight; the difference of two samples always fits a sample.
template <class V>
HWY_ATTR V between(V from, V to, V weight) {
    return hn::Add(from, hn::MulFixedPoint15(hn::Sub(to, from), weight));
}

void stretchSamples(const std::uint8_t* left, const std::uint8_t* right, const Share* weights,
                    std::size_t count, Sample* to) {
    const Samples samples;
    for (std::size_t i = 0; i < count; i += hn::Lanes(samples))
        hn::StoreU(between(widened(left + i), widened(right + i), hn::LoadU(samples, weights + i)), samples,
                   to + i);
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
    const Samples samples;
    const auto half = hn::Set(samples, Sample{kSamplesPerLevel / 2});
    for (std::size_t i = 0; i < count; i += hn::Lanes(samples)) {
        const auto levels = hn::ShiftRight<7>(hn::SaturatedAdd(hn::LoadU(samples, from + i), half));
        hn::StoreU(hn::DemoteTo(Bytes(), levels), Bytes(), to + i);
    }
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

HWY_EXPORT(stretchSamples);
HWY_EXPORT(mixSamples);
HWY_EXPORT(widenSamples);
HWY_EXPORT(narrowSamples);
HWY_EXPORT(coverSamples);
HWY_EXPORT(blendSamples);

void stretchSamples(const std::uint8_t* left, const std::uint8_t* right, const Share* weights,
                    std::size_t count, Sample* to) {
    HWY_DYNAMIC_DISPATCH(stretchSamples)(left, right, weights, count, to);
}

void mixSamples(const Sample* top, const Sample* bottom, Share weight, std::size_t count, Sample* to) {
    HWY_DYNAMIC_DISPATCH(mixSamples)(top, bottom, weight, count, to);
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
