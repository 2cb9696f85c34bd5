// Coverage by SIMD, for the sources that are compiled once for every kind of SIMD unit.

#include <algorithm>

#include "cutengine/kernels/StampMethod.h"
#include "hwy/highway.h"

#if defined(TRIMORA_STAMP_COVERAGE_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TRIMORA_STAMP_COVERAGE_INL
#undef TRIMORA_STAMP_COVERAGE_INL
#else
#define TRIMORA_STAMP_COVERAGE_INL
#endif

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Pixels of a row are worked on in blocks that stay in registers and the first-level cache.
constexpr int kBlock = 64;
constexpr int kMostLanes = 64;  // at least the lanes of any target's vector of double or int32

// x, x + 1, x + 2 and so on, as a constant and one addition: Iota from anything but a constant is built
// lane by lane, which is slow, and comes out wrong from g++ 12 at -O3.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V countingFrom(D d, hn::TFromD<D> x) {
    return hn::Add(hn::Iota(d, 0), hn::Set(d, x));
}

// P of the header comment in z = chordSquared / 4. Terms are joined in pairs, so that few wait for others.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V segmentArea(D d, V chordSquared) {
    const V z = hn::Mul(chordSquared, hn::Set(d, 0.25));
    const V z2 = hn::Mul(z, z);
    const V z4 = hn::Mul(z2, z2);
    const auto pair = [&](std::size_t i) HWY_ATTR {
        return hn::Add(hn::Set(d, kSegment[i]), hn::Mul(z, hn::Set(d, kSegment[i + 1])));
    };
    const auto four = [&](std::size_t i) HWY_ATTR { return hn::Add(pair(i), hn::Mul(z2, pair(i + 2))); };
    const V p = hn::Add(four(0), hn::Mul(z4, hn::Add(four(4), hn::Mul(z4, four(8)))));
    return hn::Mul(hn::Mul(z, hn::Sqrt(z)), p);
}

// HalfRow by the vector.
template <class V>
struct HalfRows {
    V low, high;
    V widthAtHigh, widthAtLow;
};

template <class D, class V = hn::Vec<D>>
HWY_INLINE HalfRows<V> allOf(D d, const HalfRow& half) {
    return {hn::Set(d, half.low), hn::Set(d, half.high), hn::Set(d, half.widthAtHigh),
            hn::Set(d, half.widthAtLow)};
}

// F of the header comment, for one half and a vector of u.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V areaLeftOf(D d, V u, const HalfRows<V>& half) {
    const V reach = hn::Min(hn::Abs(u), half.widthAtLow);
    const V arcEnd = hn::Max(reach, half.widthAtHigh);
    const V endHeight = hn::Sqrt(hn::Max(hn::Zero(d), hn::Sub(hn::Set(d, 1.0), hn::Mul(arcEnd, arcEnd))));
    const V height = hn::Min(hn::Max(endHeight, half.low), half.high);
    const V across = hn::Sub(arcEnd, half.widthAtHigh);
    const V down = hn::Sub(half.high, height);
    const V tall = hn::Sub(half.high, half.low);
    const V flat = hn::Mul(hn::Min(reach, half.widthAtHigh), tall);
    const V meanHeight = hn::Mul(hn::Set(d, 0.5), hn::Add(tall, hn::Sub(height, half.low)));
    const V chordSquared = hn::Add(hn::Mul(across, across), hn::Mul(down, down));
    const V area = hn::Add(hn::Add(flat, hn::Mul(across, meanHeight)), segmentArea(d, chordSquared));
    return hn::CopySign(area, u);
}

// 255ths of a pixel, rounded.
template <class D, class V = hn::Vec<D>>
HWY_INLINE auto roundedCover(D d, V shares) {
    const hn::Rebind<std::int32_t, D> d32;
    const auto rounded = hn::DemoteTo(d32, hn::Add(shares, hn::Set(d, 0.5)));
    return hn::Min(hn::Max(rounded, hn::Zero(d32)), hn::Set(d32, 255));
}

// The share of each of `count` (at most kBlock) pixels inside the ellipse, times `scale`.
HWY_INLINE void discShares(const StampEllipse& ellipse, const DiscRow& row, int x, int count, double scale,
                           double* HWY_RESTRICT shares) {
    const hn::ScalableTag<double> d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    HWY_ALIGN double left[kBlock + 2 * kMostLanes];
    const auto centre = hn::Set(d, ellipse.cx);
    const auto perRadius = hn::Set(d, 1 / ellipse.rx);
    for (int i = 0; i <= count; i += lanes) {
        const auto u = hn::Mul(hn::Sub(countingFrom(d, static_cast<double>(x + i)), centre), perRadius);
        auto area = areaLeftOf(d, u, allOf(d, row.halves[0]));
        if (row.count == 2)
            area = hn::Add(area, areaLeftOf(d, u, allOf(d, row.halves[1])));
        hn::Store(area, d, left + i);
    }
    const auto factor = hn::Set(d, scale * ellipse.rx * ellipse.ry);
    for (int i = 0; i < count; i += lanes)
        hn::Store(hn::Mul(hn::Sub(hn::LoadU(d, left + i + 1), hn::Load(d, left + i)), factor), d, shares + i);
}

// The coverage of `count` (at most kBlock) pixels by the even mixture of `layers` discs, which a hard
// stamp (solid 1, one layer) is too. `covers` has room for kMostLanes more.
HWY_INLINE void layeredCover(const StampEllipse& ellipse, double solid, int layers, int y, int x, int count,
                             std::int32_t* HWY_RESTRICT covers) {
    const hn::ScalableTag<double> d;
    const hn::Rebind<std::int32_t, decltype(d)> d32;
    const int lanes = static_cast<int>(hn::Lanes(d));
    HWY_ALIGN double shares[kBlock + kMostLanes];
    HWY_ALIGN double sums[kBlock + kMostLanes];
    std::fill(sums, sums + kBlock + kMostLanes, 0.0);
    for (int layer = 0; layer < layers; ++layer) {
        const double part = solid + (1 - solid) * (layer + 0.5) / layers;
        const StampEllipse disc{ellipse.cx, ellipse.cy, ellipse.rx * part, ellipse.ry * part};
        const DiscRow row = discRow(disc, y);
        if (row.count == 0)
            continue;
        discShares(disc, row, x, count, 255.0 / layers, shares);
        for (int i = 0; i < count; i += lanes)
            hn::Store(hn::Add(hn::Load(d, sums + i), hn::Load(d, shares + i)), d, sums + i);
    }
    for (int i = 0; i < count; i += lanes)
        hn::StoreU(roundedCover(d, hn::Load(d, sums + i)), d32, covers + i);
}

// The ramp max(0, distance) averaged over a box one cell wide.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V smoothRamp(D d, V distance) {
    const V half = hn::Set(d, 0.5F);
    const V part = hn::Min(hn::Max(hn::Add(distance, half), hn::Zero(d)), hn::Set(d, 1.0F));
    return hn::Add(hn::Mul(hn::Mul(part, part), half), hn::Max(hn::Zero(d), hn::Sub(distance, half)));
}

// The profile averaged over one cell, whose middle lies (dx, dy) from the centre, times the ring.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V cellCoverage(D d, V dx, float dy, const CellStamp& stamp) {
    constexpr float kTipSquared = 0.75F * 0.75F;  // how far from the centre the tip is felt
    constexpr float kTipExcess = 0.06F;
    const V squared = hn::Add(hn::Mul(dx, dx), hn::Set(d, dy * dy));
    const V nearTip =
        hn::Max(hn::Zero(d), hn::Sub(hn::Set(d, 1.0F), hn::Mul(squared, hn::Set(d, 1 / kTipSquared))));
    const V spread =
        hn::Add(hn::Set(d, 1.0F / 12), hn::Mul(hn::Set(d, kTipExcess), hn::Mul(nearTip, nearTip)));
    const V inside = hn::Sub(hn::Set(d, stamp.radius), hn::Sqrt(hn::Add(squared, spread)));
    return hn::Sub(smoothRamp(d, inside), smoothRamp(d, hn::Sub(inside, hn::Set(d, stamp.ring))));
}

// The sum over a pixel's cells, for a vector of pixels; dx and dy lead to the pixels' middles.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V pixelCoverage(D d, V dx, float dy, const CellStamp& stamp) {
    const auto cells = static_cast<float>(stamp.cells);
    const float first = 0.5F - cells * 0.5F;
    if (stamp.cells == 1)
        return cellCoverage(d, dx, dy, stamp);
    V sum = hn::Zero(d);
    for (int j = 0; j < stamp.cells; ++j) {
        for (int i = 0; i < stamp.cells; ++i) {
            const V cellX =
                hn::Add(hn::Mul(dx, hn::Set(d, cells)), hn::Set(d, first + static_cast<float>(i)));
            sum = hn::Add(sum, cellCoverage(d, cellX, dy * cells + (first + static_cast<float>(j)), stamp));
        }
    }
    return sum;
}

// The coverage of a vector of pixels of row y, from x on, by a stamp of cells.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V cellsCover(D d32, const SoftStamp& stamp, int y, int x) {
    const hn::RebindToFloat<D> d;
    const auto pixels = countingFrom(d32, x - stamp.centre);
    const auto dx = hn::Add(hn::ConvertTo(d, pixels), hn::Set(d, stamp.offset));
    const auto dy = static_cast<float>(y + 0.5 - stamp.ellipse.cy);
    const auto sum = hn::Mul(pixelCoverage(d, dx, dy, stamp.cell), hn::Set(d, stamp.scale));
    const auto rounded = hn::ConvertTo(d32, hn::Add(sum, hn::Set(d, 0.5F)));
    return hn::Min(hn::Max(rounded, hn::Zero(d32)), hn::Set(d32, 255));
}

// The same for a soft stamp of either kind.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V softCover(D d32, const SoftStamp& stamp, int y, int x) {
    if (HWY_LIKELY(stamp.method.kind == CoverageKind::cells))
        return cellsCover(d32, stamp, y, x);
    HWY_ALIGN std::int32_t covers[kBlock + kMostLanes];
    layeredCover(stamp.ellipse, stamp.solid, stamp.method.steps, y, x, static_cast<int>(hn::Lanes(d32)),
                 covers);
    return hn::Load(d32, covers);
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif  // TRIMORA_STAMP_COVERAGE_INL
