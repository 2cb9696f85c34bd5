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

// The disc's area in a rectangle that lies in one quadrant: u from `near` to `far`, v from `low` to
// `high`, each 0 or more, v 1 at most.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V areaInQuadrant(D d, V near, V far, V low, V high) {
    const V one = hn::Set(d, 1.0);
    const auto across = [&](V v)
                            HWY_ATTR { return hn::Sqrt(hn::Max(hn::Zero(d), hn::Sub(one, hn::Mul(v, v)))); };
    const auto isInside = [&](V u, V v)
                              HWY_ATTR { return hn::Lt(hn::Add(hn::Mul(u, u), hn::Mul(v, v)), one); };
    // The arc comes in over the rectangle's top where the corner there lies inside the disc, or else over its
    // near side; and it leaves over the far side or the bottom. One root each: they take most of the time.
    const auto fromTop = isInside(near, high);
    const auto toFar = isInside(far, low);
    const V begin = across(hn::IfThenElse(fromTop, high, near));
    const V end = across(hn::IfThenElse(toFar, far, low));
    const V arcBegin = hn::IfThenElse(fromTop, hn::Min(begin, far), near);
    const V arcEnd = hn::IfThenElse(toFar, far, hn::Min(hn::Max(end, near), far));
    const V beginHeight = hn::IfThenElse(fromTop, high, hn::Max(begin, low));
    const V endHeight = hn::IfThenElse(toFar, hn::Min(end, high), low);
    const V wide = hn::Sub(arcEnd, arcBegin);
    const V down = hn::Sub(beginHeight, endHeight);
    const V flat = hn::Mul(hn::Sub(arcBegin, near), hn::Sub(high, low));
    const V meanHeight =
        hn::Mul(hn::Set(d, 0.5), hn::Add(hn::Sub(beginHeight, low), hn::Sub(endHeight, low)));
    const V chordSquared = hn::Add(hn::Mul(wide, wide), hn::Mul(down, down));
    return hn::Add(hn::Add(flat, hn::Mul(wide, meanHeight)), segmentArea(d, chordSquared));
}

// The disc's area in a rectangle anywhere: mirrored into one quadrant, or cut by the axes and its parts
// mirrored.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V areaInRectangle(D d, V left, V right, V upper, V lower) {
    const V zero = hn::Zero(d);
    const V one = hn::Set(d, 1.0);
    const V near = hn::Max(hn::Max(left, hn::Neg(right)), zero);
    const V far = hn::Max(right, hn::Neg(left));
    const V low = hn::Min(hn::Max(hn::Max(upper, hn::Neg(lower)), zero), one);
    const V high = hn::Min(hn::Max(lower, hn::Neg(upper)), one);
    const V beside = hn::Max(hn::Min(right, hn::Neg(left)), zero);
    const V below = hn::Min(hn::Max(hn::Min(lower, hn::Neg(upper)), zero), one);
    const bool hasBeside = !hn::AllTrue(d, hn::Eq(beside, zero));
    V area = areaInQuadrant(d, near, far, low, high);
    if (hasBeside)
        area = hn::Add(area, areaInQuadrant(d, zero, beside, low, high));
    if (hn::AllTrue(d, hn::Eq(below, zero)))
        return area;
    area = hn::Add(area, areaInQuadrant(d, near, far, zero, below));
    return hasBeside ? hn::Add(area, areaInQuadrant(d, zero, beside, zero, below)) : area;
}

// 255ths of a pixel, rounded.
template <class D, class V = hn::Vec<D>>
HWY_INLINE auto roundedCover(D d, V shares) {
    const hn::Rebind<std::int32_t, D> d32;
    const auto rounded = hn::DemoteTo(d32, hn::Add(shares, hn::Set(d, 0.5)));
    return hn::Min(hn::Max(rounded, hn::Zero(d32)), hn::Set(d32, 255));
}

// The share of each pixel of a vector, from (x, y) on, inside the ellipse, times `scale`.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V discShares(D d, const StampEllipse& ellipse, int y, int x, double scale) {
    const V cx = hn::Set(d, ellipse.cx);
    const V perRx = hn::Set(d, 1 / ellipse.rx);
    const V left = hn::Mul(hn::Sub(countingFrom(d, static_cast<double>(x)), cx), perRx);
    const V right = hn::Mul(hn::Sub(countingFrom(d, static_cast<double>(x + 1)), cx), perRx);
    const double perRy = 1 / ellipse.ry;
    const V upper = hn::Set(d, (y - ellipse.cy) * perRy);
    const V lower = hn::Set(d, (y + 1 - ellipse.cy) * perRy);
    return hn::Mul(areaInRectangle(d, left, right, upper, lower),
                   hn::Set(d, scale * (ellipse.rx * ellipse.ry)));
}

// The coverage of `count` pixels by the even mixture of `layers` discs, which a hard stamp (solid 1, one
// layer) is too. `covers` has room for kMostLanes more.
HWY_INLINE void layeredCover(const StampEllipse& ellipse, double solid, int layers, int y, int x, int count,
                             std::int32_t* HWY_RESTRICT covers) {
    const hn::ScalableTag<double> d;
    const hn::Rebind<std::int32_t, decltype(d)> d32;
    for (int i = 0; i < count; i += static_cast<int>(hn::Lanes(d))) {
        auto sum = hn::Zero(d);
        for (int layer = 0; layer < layers; ++layer) {
            const double part = solid + (1 - solid) * (layer + 0.5) / layers;
            const StampEllipse disc{ellipse.cx, ellipse.cy, ellipse.rx * part, ellipse.ry * part};
            sum = hn::Add(sum, discShares(d, disc, y, x + i, 255.0 / layers));
        }
        hn::StoreU(roundedCover(d, sum), d32, covers + i);
    }
}

// The square of how far a box one cell wide reaches over the corner of a profile, `distance` from its
// middle; half of it is what the corner adds to the mean, or takes away.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V overCorner(D d, V distance) {
    const V reach = hn::Max(hn::Sub(hn::Set(d, 0.5F), hn::Abs(distance)), hn::Zero(d));
    return hn::Mul(reach, reach);
}

// The profile averaged over one cell, whose middle lies (dx, dy) from the centre, times the ring.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V cellCoverage(D d, V dx, float dy, const CellStamp& stamp) {
    constexpr float kTipSquared = 0.75F * 0.75F;  // how far from the centre the tip is felt
    constexpr float kTipExcess = 0.06F;
    const V ring = hn::Set(d, stamp.ring);
    const V squared = hn::Add(hn::Mul(dx, dx), hn::Set(d, dy * dy));
    V spread = hn::Set(d, 1.0F / 12);
    if (stamp.hasTip) {
        const V nearTip =
            hn::Max(hn::Zero(d), hn::Sub(hn::Set(d, 1.0F), hn::Mul(squared, hn::Set(d, 1 / kTipSquared))));
        spread = hn::Add(spread, hn::Mul(hn::Set(d, kTipExcess), hn::Mul(nearTip, nearTip)));
    }
    const V inside = hn::Sub(hn::Set(d, stamp.radius), hn::Sqrt(hn::Add(squared, spread)));
    const V corners = hn::Sub(overCorner(d, inside), overCorner(d, hn::Sub(inside, ring)));
    return hn::Add(hn::Min(hn::Max(inside, hn::Zero(d)), ring), hn::Mul(corners, hn::Set(d, 0.5F)));
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
    // Never below 0, nor above 255 by more than the last bits of a float.
    return hn::ConvertTo(d32, hn::Add(sum, hn::Set(d, 0.5F)));
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
