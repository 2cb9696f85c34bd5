// Coverage of rim pixels in single precision, for the sources that are compiled once for every kind of SIMD
// unit.
//
// ## How far it may be wrong
// With r the radius, and X <= Y the distances of the pixel's nearer corner from the centre along the axes,
// what counts is the power of a corner, F = r^2 - X^2 - Y^2: it is above 0 inside the disc and below it
// outside. F is worked out in double and rounded once, and the power of another corner differs from it by 2 X
// + 1 or 2 Y + 1. With e = 2^-24, the rounding of a float, no power is wrong by more than 5 e (2 r + 2), as
// |F| itself is at most 2 (2 r + 2) wherever the rim meets the pixel; so the arc would be that of a circle
// whose rim lies 5 e (r + 1) / (r - 1.5) away at most, 14 e for r of 3 or more. Where the arc crosses a side
// that lies t across, it is G / (sqrt(G + t^2) + t) from the corner of power G: nothing cancels, and what is
// rounded on the way adds 8 e of at most 1. An error along the arc changes no area to first order and one
// across it at most itself times the chord, sqrt(2). The segment is at most 0.08 pixels, right to 20 e of
// that and 6e-8 for the terms left out; the trapezoid adds 5 e. Together 45 e = 2.7e-6 pixels, 7e-4 of a
// 255th, is more than a pixel cut in two by an axis is wrong by, whose parts share that arc. kDoubt is larger
// still.

#include <cstdint>

#include "cutengine/kernels/StampBatch.h"
#include "hwy/highway.h"

#if defined(TRIMORA_RIM_COVERAGE_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TRIMORA_RIM_COVERAGE_INL
#undef TRIMORA_RIM_COVERAGE_INL
#else
#define TRIMORA_RIM_COVERAGE_INL
#endif

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET != HWY_SCALAR

// A coverage that lies nearer than this to where it would be rounded the other way is found again in double.
constexpr float kDoubt = 1.0F / 1024;

// Where a pixel lies from the centre of a disc, mirrored so that it lies to the upper right and rather above
// than beside: its nearer corner, x of which is below 0 in a pixel that the axis cuts; and the power of the
// point of it that is nearest to the centre.
template <class V>
struct RimPixel {
    V x, y, power;
};

template <class D, class V = hn::Vec<D>>
HWY_INLINE auto halfOfRimPixels(D d, const RoundStamps& stamps, V fromX, V fromY) {
    const hn::Rebind<float, D> narrow;
    const V half = hn::Set(d, 0.5);
    const V across = hn::Abs(fromX);
    const V down = hn::Abs(fromY);
    const V x = hn::Sub(hn::Min(across, down), half);
    const V y = hn::Sub(hn::Max(across, down), half);
    const V near = hn::Max(x, hn::Zero(d));
    const V power = hn::Sub(hn::Sub(hn::Set(d, stamps.squared), hn::Mul(near, near)), hn::Mul(y, y));
    using Narrow = hn::Vec<decltype(narrow)>;
    return RimPixel<Narrow>{hn::DemoteTo(narrow, x), hn::DemoteTo(narrow, y), hn::DemoteTo(narrow, power)};
}

// Pixel (x, y) as the batch's stamps from the i-th on see it.
template <class D, class V = hn::Vec<D>>
HWY_INLINE RimPixel<V> rimPixels(D d, const StampBatch& batch, std::size_t i, int x, int y) {
    const hn::RepartitionToWide<D> wide;
    const auto middleX = hn::Set(wide, x + 0.5);
    const auto middleY = hn::Set(wide, y + 0.5);
    const auto half = [&](std::size_t from) HWY_ATTR {
        return halfOfRimPixels(wide, batch.round, hn::Sub(middleX, hn::LoadU(wide, &batch.cx[from])),
                               hn::Sub(middleY, hn::LoadU(wide, &batch.cy[from])));
    };
    const auto lower = half(i);
    const auto upper = half(i + hn::Lanes(wide));
    return {hn::Combine(d, upper.x, lower.x), hn::Combine(d, upper.y, lower.y),
            hn::Combine(d, upper.power, lower.power)};
}

// The disc's area in a rectangle of one quadrant: `wide` across and 1 up from the corner (near, low), whose
// power is `power`.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V rimArea(D d, const RoundStamps& stamps, V near, V low, V wide, V power) {
    const V zero = hn::Zero(d);
    const V one = hn::Set(d, 1.0F);
    const V toFar = hn::Mul(wide, hn::Add(hn::Add(near, near), wide));
    const V toHigh = hn::Add(hn::Add(low, low), one);
    const V farPower = hn::Sub(power, toFar);
    const V highPower = hn::Sub(power, toHigh);
    const auto fromTop = hn::Gt(highPower, zero);
    const auto toSide = hn::Gt(farPower, zero);
    const auto reach = [&](V corner, V t)
                           HWY_ATTR { return hn::Add(hn::Sqrt(hn::Add(corner, hn::Mul(t, t))), t); };
    const V beginPower = hn::IfThenElse(fromTop, highPower, power);
    const V endPower = hn::IfThenElse(toSide, farPower, power);
    const V beginReach = reach(beginPower, hn::IfThenElse(fromTop, near, low));
    const V endReach = reach(endPower, hn::IfThenElse(toSide, low, near));
    const V perBoth = hn::Div(one, hn::Mul(beginReach, endReach));  // one division for two
    const V begin = hn::Mul(hn::Mul(beginPower, endReach), perBoth);
    const V end = hn::Mul(hn::Mul(endPower, beginReach), perBoth);
    const V beginX = hn::IfThenElseZero(fromTop, begin);
    const V beginHeight = hn::IfThenElse(fromTop, one, begin);
    const V across = hn::Sub(hn::IfThenElse(toSide, wide, end), beginX);
    const V endHeight = hn::IfThenElseZero(toSide, end);
    const V down = hn::Sub(beginHeight, endHeight);
    const V chordSquared = hn::Add(hn::Mul(across, across), hn::Mul(down, down));
    const auto term = [&](std::size_t k) HWY_ATTR { return hn::Set(d, stamps.segment[k]); };
    const V bulge = hn::Add(
        term(0),
        hn::Mul(chordSquared,
                hn::Add(term(1), hn::Mul(chordSquared, hn::Add(term(2), hn::Mul(chordSquared, term(3)))))));
    const V segment = hn::Mul(hn::Mul(chordSquared, hn::Sqrt(chordSquared)), bulge);
    const V trapezoid = hn::Mul(across, hn::Mul(hn::Set(d, 0.5F), hn::Add(beginHeight, endHeight)));
    const V area = hn::Add(hn::Add(beginX, trapezoid), segment);
    const auto isFull = hn::Ge(hn::Sub(farPower, toHigh), zero);
    return hn::IfThenElseZero(hn::Gt(power, zero), hn::IfThenElse(isFull, wide, area));
}

// Writes the coverage of one pixel by a vector of round stamps, from the batch's i-th on; false if one of
// them is in doubt.
HWY_INLINE bool rimCover(const StampBatch& batch, std::size_t i, int x, int y, std::int32_t* covers) {
    const hn::ScalableTag<float> d;
    const hn::RebindToSigned<decltype(d)> d32;
    const auto zero = hn::Zero(d);
    const auto pixel = rimPixels(d, batch, i, x, y);
    const auto wide = hn::Min(hn::Add(pixel.x, hn::Set(d, 1.0F)), hn::Set(d, 1.0F));
    auto area = rimArea(d, batch.round, hn::Max(pixel.x, zero), pixel.y, wide, pixel.power);
    const auto isCut = hn::Lt(pixel.x, zero);
    if (!hn::AllFalse(d, isCut)) {
        const auto power = hn::IfThenElse(isCut, pixel.power, hn::Set(d, -1.0F));
        area = hn::Add(area, rimArea(d, batch.round, zero, pixel.y, hn::Neg(pixel.x), power));
    }
    const auto cover = hn::Add(hn::Mul(area, hn::Set(d, 255.0F)), hn::Set(d, 0.5F));
    const auto whole = hn::ConvertTo(d32, cover);
    hn::StoreU(whole, d32, covers);
    const auto rest = hn::Abs(hn::Sub(hn::Sub(cover, hn::ConvertTo(d, whole)), hn::Set(d, 0.5F)));
    return hn::AllTrue(d, hn::Lt(rest, hn::Set(d, 0.5F - kDoubt)));
}

#endif

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif  // TRIMORA_RIM_COVERAGE_INL
