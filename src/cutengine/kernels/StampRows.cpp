#include "cutengine/kernels/StampRows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/StampRows.cpp"
#include "hwy/foreach_target.h"  // compiles this file again for every target
#include "hwy/highway.h"

#ifndef TRIMORA_STAMP_ROWS_SHARED
#define TRIMORA_STAMP_ROWS_SHARED

namespace trimora::cutengine::kernels {

// The part of a row in one half of the unit disc: v from `low` to `high`, both in 0..1, and the
// half-widths of the disc at the two.
struct HalfRow {
    double low, high;
    double widthAtHigh, widthAtLow;
};

// A row of pixels across an ellipse: no half where they do not meet, two where the centre line
// crosses the row.
struct DiscRow {
    std::array<HalfRow, 2> halves;
    int count = 0;

    void add(double low, double high) {
        if (low >= 1 || high <= low)
            return;
        const double capped = std::min(high, 1.0);
        const HalfRow half{low, capped, std::sqrt(1 - capped * capped), std::sqrt(1 - low * low)};
        halves[static_cast<std::size_t>(count++)] = half;
    }
};

inline DiscRow discRow(const StampEllipse& ellipse, int y) {
    const double upper = (y - ellipse.cy) / ellipse.ry;
    const double lower = (y + 1 - ellipse.cy) / ellipse.ry;
    DiscRow row;
    if (upper >= 0) {
        row.add(upper, lower);
    } else if (lower <= 0) {
        row.add(-lower, -upper);
    } else {
        row.add(0, lower);
        row.add(0, -upper);
    }
    return row;
}

// How the coverage of a stamp is found.
enum class CoverageKind : std::uint8_t { hard, cells, layers };

struct CoverageMethod {
    CoverageKind kind = CoverageKind::hard;
    int steps = 1;  // cells a side of the pixel, or discs in the mixture
};

// How many cells a side a round stamp's pixels are cut into.
inline double cellsNeeded(double solidRadius, double ring) {
    constexpr double kCellsInRing = 5;
    constexpr double kCellsInCore = 2;       // a smaller solid core is neither flat nor a tip
    constexpr double kMostCellsForCore = 4;  // so small that what is wrong there no longer counts
    const double forRing = std::max(1.0, std::ceil(kCellsInRing / ring));
    if (solidRadius <= 0)
        return forRing;
    return std::max(forRing, std::min(kMostCellsForCore, std::ceil(kCellsInCore / solidRadius)));
}

inline CoverageMethod coverageMethod(const StampEllipse& ellipse, double solid) {
    constexpr double kMostCells = 8;
    constexpr double kLargestRadius = 1 << 22;  // beyond it a float cannot tell pixels apart
    constexpr double kLayersPerPixel = 8;
    if (solid >= 1)
        return {};
    const double ring = (1 - solid) * std::max(ellipse.rx, ellipse.ry);
    const double cells = cellsNeeded(solid * ellipse.rx, ring);
    const bool round = std::abs(ellipse.rx - ellipse.ry) <= 1e-3 * std::min(1.0, ellipse.rx);
    if (round && cells <= kMostCells && ellipse.rx < kLargestRadius)
        return {CoverageKind::cells, static_cast<int>(cells)};
    return {CoverageKind::layers,
            static_cast<int>(std::clamp(std::ceil(ring * kLayersPerPixel), 12.0, 4096.0))};
}

// P of the header comment, constant term first.
constexpr std::array<double, 12> kSegment = {
    0.66666666665664609, 0.20000000576263577,  0.10714231218483332,   0.069464486781103715,
    0.04933812763662461, 0.042021475264209726, 0.0013868863056523671, 0.1526514103351605,
    -0.3506330359815491, 0.69938081194612367,  -0.71568849070180018,  0.37710156759355962};

// The pixels of one row that a coverage is wanted for are worked on in blocks that stay in registers
// and the first-level cache.
constexpr int kBlock = 64;
constexpr int kMostLanes = 64;  // at least the lanes of any target's vector of double or int32

inline std::uint32_t blended(std::uint32_t old, std::uint32_t fill, std::uint32_t cover) {
    std::uint32_t result = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        const std::uint32_t mixed = ((old >> shift) & 255) * (255 - cover) + ((fill >> shift) & 255) * cover;
        result |= ((mixed + 127) / 255) << shift;
    }
    return result;
}

}  // namespace trimora::cutengine::kernels

#endif  // TRIMORA_STAMP_ROWS_SHARED

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// x, x + 1, x + 2 and so on, as a constant and one addition: Iota from anything but a constant is built
// lane by lane, which is slow, and comes out wrong from g++ 12 at -O3.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V countingFrom(D d, hn::TFromD<D> x) {
    return hn::Add(hn::Iota(d, 0), hn::Set(d, x));
}

#if HWY_TARGET == HWY_SCALAR

template <class D, class V = hn::Vec<D>>
HWY_INLINE V blendedPixels(D d, V old, V fill, V cover) {
    return hn::Set(d, blended(hn::GetLane(old), hn::GetLane(fill), hn::GetLane(cover)));
}

#else

// A vector of 16-bit sums old * (255 - c) + fill * c, divided by 255 and rounded to the nearest. Exact
// for every sum up to 255 * 255.
template <class V>
HWY_INLINE V dividedBy255(V sum) {
    const hn::DFromV<V> d;
    const V biased = hn::Add(sum, hn::Set(d, 128));
    return hn::ShiftRight<8>(hn::Add(biased, hn::ShiftRight<8>(biased)));
}

// Blends whole vectors of pixels: cover holds 0..255 in each 32-bit lane.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V blendedPixels(D d, V old, V fill, V cover) {
    const hn::Repartition<std::uint16_t, D> d16;
    const auto low = hn::Set(d16, 0x00FF);
    const auto share = hn::BitCast(d16, hn::Or(cover, hn::ShiftLeft<16>(cover)));
    const auto rest = hn::Sub(low, share);
    const auto old16 = hn::BitCast(d16, old);
    const auto fill16 = hn::BitCast(d16, fill);
    const auto even = hn::Add(hn::Mul(hn::And(old16, low), rest), hn::Mul(hn::And(fill16, low), share));
    const auto odd =
        hn::Add(hn::Mul(hn::ShiftRight<8>(old16), rest), hn::Mul(hn::ShiftRight<8>(fill16), share));
    return hn::BitCast(d, hn::Or(dividedBy255(even), hn::ShiftLeft<8>(dividedBy255(odd))));
}

#endif

// Blends the first `count` of a vector's pixels at x. The rest of the vector gets cover 0, which
// leaves pixels as they are, so a whole vector is written wherever the row is long enough.
template <class D>
HWY_INLINE void blendAt(D d, const PlaneRow& row, int x, int count, hn::Vec<D> cover, std::uint32_t fill) {
    const int lanes = static_cast<int>(hn::Lanes(d));
    std::uint32_t* const at = row.pixels + x;
    if (x + lanes <= row.width) {
        if (count < lanes)
            cover = hn::IfThenElseZero(hn::FirstN(d, static_cast<std::size_t>(count)), cover);
        hn::StoreU(blendedPixels(d, hn::LoadU(d, at), hn::Set(d, fill), cover), d, at);
        return;
    }
    HWY_ALIGN std::uint32_t each[kMostLanes];
    hn::Store(cover, d, each);
    for (int i = 0; i < std::min(count, lanes); ++i)
        at[i] = blended(at[i], fill, each[i]);
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

// F of the header comment, for one half and a vector of u.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V areaLeftOf(D d, V u, const HalfRow& half) {
    const V low = hn::Set(d, half.low);
    const V high = hn::Set(d, half.high);
    const V arcBegin = hn::Set(d, half.widthAtHigh);
    const V reach = hn::Min(hn::Abs(u), hn::Set(d, half.widthAtLow));
    const V arcEnd = hn::Max(reach, arcBegin);
    const V endHeight = hn::Sqrt(hn::Max(hn::Zero(d), hn::Sub(hn::Set(d, 1.0), hn::Mul(arcEnd, arcEnd))));
    const V height = hn::Min(hn::Max(endHeight, low), high);
    const V across = hn::Sub(arcEnd, arcBegin);
    const V down = hn::Sub(high, height);
    const V flat = hn::Mul(hn::Min(reach, arcBegin), hn::Sub(high, low));
    const V meanHeight = hn::Mul(hn::Set(d, 0.5), hn::Add(hn::Sub(high, low), hn::Sub(height, low)));
    const V chordSquared = hn::Add(hn::Mul(across, across), hn::Mul(down, down));
    const V area = hn::Add(hn::Add(flat, hn::Mul(across, meanHeight)), segmentArea(d, chordSquared));
    return hn::CopySign(area, u);
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
        auto area = areaLeftOf(d, u, row.halves[0]);
        if (row.count == 2)
            area = hn::Add(area, areaLeftOf(d, u, row.halves[1]));
        hn::Store(area, d, left + i);
    }
    const auto factor = hn::Set(d, scale * ellipse.rx * ellipse.ry);
    for (int i = 0; i < count; i += lanes)
        hn::Store(hn::Mul(hn::Sub(hn::LoadU(d, left + i + 1), hn::Load(d, left + i)), factor), d, shares + i);
}

// Calls take(offset, lanes tag, cover) for one vector of coverage after another. `shares` are 255ths.
template <class Take>
HWY_INLINE void takeRounded(const double* HWY_RESTRICT shares, int count, const Take& take) {
    const hn::ScalableTag<double> d;
    const hn::Rebind<std::int32_t, decltype(d)> d32;
    const hn::RebindToUnsigned<decltype(d32)> du32;
    for (int i = 0; i < count; i += static_cast<int>(hn::Lanes(d))) {
        const auto rounded = hn::DemoteTo(d32, hn::Add(hn::Load(d, shares + i), hn::Set(d, 0.5)));
        const auto cover = hn::Min(hn::Max(rounded, hn::Zero(d32)), hn::Set(d32, 255));
        take(i, du32, hn::BitCast(du32, cover));
    }
}

template <class Take>
HWY_INLINE void takeHardCoverage(const StampEllipse& ellipse, int y, int x, int count, const Take& take) {
    HWY_ALIGN double shares[kBlock + kMostLanes];
    const DiscRow row = discRow(ellipse, y);
    if (row.count == 0)
        return;
    for (int begin = 0; begin < count; begin += kBlock) {
        const int size = std::min(kBlock, count - begin);
        discShares(ellipse, row, x + begin, size, 255, shares);
        takeRounded(shares, size, [&](int i, auto d, auto cover) HWY_ATTR { take(begin + i, d, cover); });
    }
}

template <class Take>
HWY_INLINE void takeLayeredCoverage(const StampEllipse& ellipse, double solid, int layers, int y, int x,
                                    int count, const Take& take) {
    const hn::ScalableTag<double> d;
    HWY_ALIGN double shares[kBlock + kMostLanes];
    HWY_ALIGN double sums[kBlock + kMostLanes];
    for (int begin = 0; begin < count; begin += kBlock) {
        const int size = std::min(kBlock, count - begin);
        std::fill(sums, sums + kBlock + kMostLanes, 0.0);
        for (int layer = 0; layer < layers; ++layer) {
            const double part = solid + (1 - solid) * (layer + 0.5) / layers;
            const StampEllipse disc{ellipse.cx, ellipse.cy, ellipse.rx * part, ellipse.ry * part};
            const DiscRow row = discRow(disc, y);
            if (row.count == 0)
                continue;
            discShares(disc, row, x + begin, size, 255.0 / layers, shares);
            for (int i = 0; i < size; i += static_cast<int>(hn::Lanes(d)))
                hn::Store(hn::Add(hn::Load(d, sums + i), hn::Load(d, shares + i)), d, sums + i);
        }
        takeRounded(sums, size, [&](int i, auto du, auto cover) HWY_ATTR { take(begin + i, du, cover); });
    }
}

// The ramp max(0, distance) averaged over a box one cell wide.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V smoothRamp(D d, V distance) {
    const V half = hn::Set(d, 0.5F);
    const V part = hn::Min(hn::Max(hn::Add(distance, half), hn::Zero(d)), hn::Set(d, 1.0F));
    return hn::Add(hn::Mul(hn::Mul(part, part), half), hn::Max(hn::Zero(d), hn::Sub(distance, half)));
}

// A round stamp, measured in cells.
struct CellStamp {
    float radius;
    float ring;
    int cells;  // a side of the pixel
};

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

// `wanted(offset)` says whether a vector of pixels needs its coverage at all.
template <class Wanted, class Take>
HWY_INLINE void takeCellCoverage(const StampEllipse& ellipse, double solid, int cells, int y, int x,
                                 int count, const Wanted& wanted, const Take& take) {
    const hn::ScalableTag<float> d;
    const hn::RebindToSigned<decltype(d)> d32;
    const hn::RebindToUnsigned<decltype(d)> du32;
    const double radius = ellipse.rx * cells;
    const CellStamp stamp{static_cast<float>(radius), static_cast<float>(radius * (1 - solid)), cells};
    // Whole pixels from the centre's own pixel are exact in float; only the fraction is rounded.
    const double centre = std::floor(ellipse.cx);
    const auto offset = hn::Set(d, static_cast<float>(0.5 - (ellipse.cx - centre)));
    const auto dy = static_cast<float>(y + 0.5 - ellipse.cy);
    const auto scale = hn::Set(d, 255 / (stamp.ring * static_cast<float>(cells * cells)));
    for (int i = 0; i < count; i += static_cast<int>(hn::Lanes(d))) {
        if (!wanted(i))
            continue;
        const auto pixels = countingFrom(d32, x + i - static_cast<std::int32_t>(centre));
        const auto dx = hn::Add(hn::ConvertTo(d, pixels), offset);
        const auto sum = hn::Mul(pixelCoverage(d, dx, dy, stamp), scale);
        const auto rounded = hn::ConvertTo(d32, hn::Add(sum, hn::Set(d, 0.5F)));
        const auto cover = hn::Min(hn::Max(rounded, hn::Zero(d32)), hn::Set(d32, 255));
        take(i, du32, hn::BitCast(du32, cover));
    }
}

template <class Wanted, class Take>
HWY_INLINE void takeCoverage(const StampEllipse& ellipse, double solid, int y, Span span,
                             const Wanted& wanted, const Take& take) {
    const CoverageMethod method = coverageMethod(ellipse, solid);
    const int count = span.right - span.left;
    switch (method.kind) {
        case CoverageKind::hard:
            return takeHardCoverage(ellipse, y, span.left, count, take);
        case CoverageKind::layers:
            return takeLayeredCoverage(ellipse, solid, method.steps, y, span.left, count, take);
        case CoverageKind::cells:
            return takeCellCoverage(ellipse, solid, method.steps, y, span.left, count, wanted, take);
    }
}

void coverageImpl(const StampEllipse& ellipse, double solid, int x, int y, int count,
                  std::uint8_t* coverage) {
    std::fill(coverage, coverage + count, std::uint8_t{0});
    const auto all = [](int) { return true; };
    takeCoverage(ellipse, solid, y, Span{x, x + count}, all, [&](int i, auto d, auto cover) HWY_ATTR {
        HWY_ALIGN std::uint32_t each[kMostLanes];
        hn::Store(cover, d, each);
        for (int k = 0; k < std::min(count - i, static_cast<int>(hn::Lanes(d))); ++k)
            coverage[i + k] = static_cast<std::uint8_t>(each[k]);
    });
}

// Whether the pixels from x on, as many as the widest vector holds, are `fill` one and all.
HWY_INLINE bool isFilled(const PlaneRow& row, int x, std::uint32_t fill) {
    const hn::ScalableTag<std::uint32_t> d;
    if (x + static_cast<int>(hn::Lanes(d)) > row.width)
        return false;
    return hn::AllTrue(d, hn::Eq(hn::LoadU(d, row.pixels + x), hn::Set(d, fill)));
}

HWY_INLINE void paintSpan(const PlaneRow& row, const StampEllipse& ellipse, Span span,
                          const StampPaint& paint) {
    if (span.isEmpty())
        return;
    const auto wanted = [&](int i) HWY_ATTR { return !isFilled(row, span.left + i, paint.fill); };
    takeCoverage(ellipse, paint.solid, row.y, span, wanted, [&](int i, auto d, auto cover) HWY_ATTR {
        blendAt(d, row, span.left + i, span.length() - i, cover, paint.fill);
    });
}

// A stamp's pixels of one row, but for the known ones.
HWY_INLINE void paintStampRow(const PlaneRow& row, const StampEllipse& ellipse, Span touched,
                              const FilledSpans& known, const StampPaint& paint) {
    for (const Span& filled : known.spans()) {
        paintSpan(row, ellipse, {touched.left, std::min(touched.right, filled.left)}, paint);
        touched.left = std::max(touched.left, filled.right);
    }
    paintSpan(row, ellipse, touched, paint);
}

// For as many stamps as a vector holds, from `first` on: where they begin and end in the row (an end
// before the beginning where they do not meet it).
template <class D, class V = hn::Vec<D>>
HWY_INLINE void rowEnds(D d, const StampList& stamps, std::size_t first, int y, V& left, V& right) {
    const V cx = hn::LoadU(d, &stamps.cx[first]);
    const V cy = hn::LoadU(d, &stamps.cy[first]);
    const V above = hn::Sub(hn::Set(d, static_cast<double>(y)), cy);
    const V below = hn::Sub(cy, hn::Set(d, static_cast<double>(y + 1)));
    const V away = hn::Max(hn::Max(above, below), hn::Zero(d));
    const V v = hn::Div(away, hn::LoadU(d, &stamps.ry[first]));
    const V inside = hn::Sub(hn::Set(d, 1.0), hn::Mul(v, v));
    const V reach = hn::Mul(hn::LoadU(d, &stamps.rx[first]), hn::Sqrt(hn::Max(inside, hn::Zero(d))));
    const V meets = hn::IfThenElse(hn::Gt(inside, hn::Zero(d)), reach, hn::Set(d, -1.0));
    left = hn::Floor(hn::Sub(cx, meets));
    right = hn::Ceil(hn::Add(cx, meets));
}

// Chooses the stamps that change the row somewhere outside what is known.
struct ChosenStamps {
    HWY_ALIGN double left[kMostLanes];
    HWY_ALIGN double right[kMostLanes];
    HWY_ALIGN double index[kMostLanes];
    std::size_t count = 0;
};

HWY_INLINE void choose(const PlaneRow& row, const StampList& stamps, std::size_t first,
                       const FilledSpans& known, ChosenStamps& chosen) {
    const hn::ScalableTag<double> d;
    auto left = hn::Zero(d);
    auto right = hn::Zero(d);
    rowEnds(d, stamps, first, row.y, left, right);
    left = hn::Max(left, hn::Zero(d));
    right = hn::Min(right, hn::Set(d, static_cast<double>(row.width)));
    const auto index = countingFrom(d, static_cast<double>(first));
    const auto exists = hn::Lt(index, hn::Set(d, static_cast<double>(stamps.count())));
    auto wanted = hn::And(exists, hn::Lt(left, right));
    for (const Span& filled : known.spans())
        wanted = hn::And(wanted, hn::Or(hn::Lt(left, hn::Set(d, static_cast<double>(filled.left))),
                                        hn::Gt(right, hn::Set(d, static_cast<double>(filled.right)))));
    chosen.count = hn::CompressStore(left, wanted, d, chosen.left);
    hn::CompressStore(right, wanted, d, chosen.right);
    hn::CompressStore(index, wanted, d, chosen.index);
}

void paintRowsImpl(const PlaneRow& row, const StampList& stamps, const FilledSpans& known,
                   const StampPaint& paint) {
    const hn::ScalableTag<double> d;
    const hn::Rebind<std::int32_t, decltype(d)> d32;
    const auto y = hn::Set(d32, row.y);
    const auto nextY = hn::Set(d32, row.y + 1);
    ChosenStamps chosen;
    for (std::size_t i = 0; i < stamps.count(); i += hn::Lanes(d)) {
        const auto inRow = hn::And(hn::Lt(hn::LoadU(d32, &stamps.tops[i]), nextY),
                                   hn::Gt(hn::LoadU(d32, &stamps.bottoms[i]), y));
        if (hn::AllFalse(d32, inRow))
            continue;
        choose(row, stamps, i, known, chosen);
        for (std::size_t k = 0; k < chosen.count; ++k) {
            const Span touched{static_cast<int>(chosen.left[k]), static_cast<int>(chosen.right[k])};
            paintStampRow(row, stamps.ellipse(static_cast<std::size_t>(chosen.index[k])), touched, known,
                          paint);
        }
    }
}

void fillImpl(const PlaneRow& row, Span span, std::uint32_t fill) {
    const hn::ScalableTag<std::uint32_t> d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    const auto value = hn::Set(d, fill);
    int x = span.left;
    for (; x + lanes <= span.right; x += lanes)
        hn::StoreU(value, d, row.pixels + x);
    for (; x < span.right; ++x)
        row.pixels[x] = fill;
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {

HWY_EXPORT(coverageImpl);
HWY_EXPORT(paintRowsImpl);
HWY_EXPORT(fillImpl);

void StampList::clear() {
    count_ = 0;
    std::fill(bottoms.begin(), bottoms.end(), 0);
}

void StampList::add(const StampEllipse& ellipse, int top, int bottom) {
    if (cx.size() < count_ + 1 + kMostLanes) {
        const std::size_t room = 2 * count_ + 1 + kMostLanes;
        for (auto* const values : {&cx, &cy, &rx, &ry})
            values->resize(room, 1);
        tops.resize(room, 0);
        bottoms.resize(room, 0);
    }
    cx[count_] = ellipse.cx;
    cy[count_] = ellipse.cy;
    rx[count_] = ellipse.rx;
    ry[count_] = ellipse.ry;
    tops[count_] = top;
    bottoms[count_] = bottom;
    ++count_;
}

void FilledSpans::add(Span span) {
    auto* const end = spans_.data() + count_;
    auto* const first = std::find_if(spans_.data(), end, [&](const Span& s) { return s.right >= span.left; });
    auto* const last = std::find_if(first, end, [&](const Span& s) { return s.left > span.right; });
    if (first != last) {
        span = {std::min(span.left, first->left), std::max(span.right, (last - 1)->right)};
        *first = span;
        std::move(last, end, first + 1);
        count_ -= static_cast<std::size_t>(last - first) - 1;
        return;
    }
    std::move_backward(first, end, end + 1);
    *first = span;
    if (++count_ <= kMost)
        return;
    auto* const shortest =
        std::min_element(spans_.data(), spans_.data() + count_,
                         [](const Span& a, const Span& b) { return a.length() < b.length(); });
    std::move(shortest + 1, spans_.data() + count_, shortest);
    --count_;
}

void fillSpan(const PlaneRow& row, Span span, std::uint32_t fill) {
    HWY_DYNAMIC_DISPATCH(fillImpl)(row, span, fill);
}

void paintStampRows(const PlaneRow& row, const StampList& stamps, const FilledSpans& known,
                    const StampPaint& paint) {
    HWY_DYNAMIC_DISPATCH(paintRowsImpl)(row, stamps, known, paint);
}

void stampCoverage(const StampEllipse& ellipse, double solid, int x, int y, int count,
                   std::uint8_t* coverage) {
    HWY_DYNAMIC_DISPATCH(coverageImpl)(ellipse, solid, x, y, count, coverage);
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
