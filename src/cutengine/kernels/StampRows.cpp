#include "cutengine/kernels/StampRows.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/StampRows.cpp"
#include "hwy/foreach_target.h"  // compiles this file again for every target
//
#include "cutengine/kernels/MixedPixels-inl.h"
#include "cutengine/kernels/RimCoverage-inl.h"
#include "cutengine/kernels/StampCoverage-inl.h"

#ifndef TRIMORA_STAMP_ROWS_SHARED
#define TRIMORA_STAMP_ROWS_SHARED

namespace trimora::cutengine::kernels {

// One row of the plane.
struct PlaneRow {
    std::uint32_t* pixels = nullptr;
    int width = 0;
    int y = 0;
};

// Pixels of a row, or stamps of a batch: `begin` up to and without `end`.
template <typename T>
struct Range {
    T begin = 0;
    T end = 0;
};

// How far beside a stamp a pixel still counts as touched. More than float is wrong by within any plane;
// a pixel touched by less than a 700th of its width has coverage 0.
constexpr float kSlack = 1.0F / 64;

}  // namespace trimora::cutengine::kernels

#endif  // TRIMORA_STAMP_ROWS_SHARED

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {

// Which stamps of a batch touch a row, and how far each reaches there.
struct RowReach {
    HWY_ALIGN StampBatch::Values<float> squared;  // 0 or less for a stamp that does not meet the row
    Range<std::size_t> stamps;                    // in whole vectors
    Range<int> pixels;
};

HWY_INLINE Range<int> clipped(float left, float right, double origin, Range<int> to) {
    const auto place = [&](double value) {
        return static_cast<int>(
            std::clamp(value + origin, static_cast<double>(to.begin), static_cast<double>(to.end)));
    };
    return {place(std::floor(static_cast<double>(left - kSlack))),
            place(std::ceil(static_cast<double>(right + kSlack)))};
}

HWY_INLINE void findReach(const StampBatch& batch, int y, Range<int> within, RowReach& reach) {
    constexpr float kFar = std::numeric_limits<float>::max();
    const hn::ScalableTag<float> d;
    const auto zero = hn::Zero(d);
    const auto middle = hn::Set(d, static_cast<float>(y + 0.5 - batch.originY));
    auto left = hn::Set(d, kFar);
    auto right = hn::Set(d, -kFar);
    reach.stamps = {batch.count(), 0};
    for (std::size_t i = 0; i < batch.count(); i += hn::Lanes(d)) {
        const auto away =
            hn::Sub(hn::Abs(hn::Sub(middle, hn::Load(d, &batch.y[i]))), hn::Set(d, 0.5F + kSlack));
        const auto scaled = hn::Mul(hn::Max(away, zero), hn::Load(d, &batch.steepness[i]));
        const auto squared = hn::Sub(hn::Load(d, &batch.reach[i]), hn::Mul(scaled, scaled));
        hn::Store(squared, d, &reach.squared[i]);
        const auto meets = hn::Gt(squared, zero);
        if (hn::AllFalse(d, meets))
            continue;
        reach.stamps = {std::min(reach.stamps.begin, i), i + hn::Lanes(d)};
        const auto width = hn::Sqrt(hn::Max(squared, zero));
        const auto x = hn::Load(d, &batch.x[i]);
        left = hn::Min(left, hn::IfThenElse(meets, hn::Sub(x, width), left));
        right = hn::Max(right, hn::IfThenElse(meets, hn::Add(x, width), right));
    }
    if (reach.stamps.begin >= reach.stamps.end)
        reach.pixels = {};
    else
        reach.pixels = clipped(hn::GetLane(hn::MinOfLanes(d, left)), hn::GetLane(hn::MaxOfLanes(d, right)),
                               batch.originX, within);
}

// The stamps from the first to the last that touch a pixel of the row between `left` and `right`.
HWY_INLINE Range<std::size_t> touching(const StampBatch& batch, const RowReach& reach, int left, int right) {
    const hn::ScalableTag<float> d;
    const auto middle = hn::Set(d, static_cast<float>(0.5 * (left + right) - batch.originX));
    const auto half = hn::Set(d, 0.5F * static_cast<float>(right - left) + kSlack);
    Range<std::size_t> found{batch.count(), 0};
    for (std::size_t i = reach.stamps.begin; i < reach.stamps.end; i += hn::Lanes(d)) {
        const auto away =
            hn::Max(hn::Sub(hn::Abs(hn::Sub(middle, hn::Load(d, &batch.x[i]))), half), hn::Zero(d));
        const auto touches = hn::Lt(hn::Mul(away, away), hn::Load(d, &reach.squared[i]));
        if (hn::AllFalse(d, touches))
            continue;
        std::uint64_t bits = 0;
        hn::StoreMaskBits(d, touches, reinterpret_cast<std::uint8_t*>(&bits));
        found.begin = std::min(found.begin, i + static_cast<std::size_t>(std::countr_zero(bits)));
        found.end = i + static_cast<std::size_t>(std::bit_width(bits));
    }
    return found;
}

// A vector of pixels that may be longer than the row is: then it stands in a copy.
template <class D>
class PixelVector {
 public:
    HWY_INLINE PixelVector(D d, const PlaneRow& row, int x) : at_(row.pixels + x), left_(row.width - x) {
        if (isShort(d)) {
            hn::Store(hn::Zero(d), d, copy_);
            std::copy(at_, at_ + left_, copy_);
        }
    }
    [[nodiscard]] HWY_INLINE hn::Vec<D> load(D d) const {
        return isShort(d) ? hn::Load(d, copy_) : hn::LoadU(d, at_);
    }
    HWY_INLINE void store(D d, hn::Vec<D> pixels) {
        if (!isShort(d))
            return hn::StoreU(pixels, d, at_);
        hn::Store(pixels, d, copy_);
        std::copy(copy_, copy_ + left_, at_);
    }

 private:
    [[nodiscard]] HWY_INLINE bool isShort(D d) const { return left_ < static_cast<int>(hn::Lanes(d)); }

    std::uint32_t* at_;
    int left_;
    HWY_ALIGN std::uint32_t copy_[kMostLanes];
};

// The coverage of one pixel by a vector of hard stamps, from the batch's i-th on.
template <class D>
HWY_INLINE auto hardCover(D d, const StampBatch& batch, std::size_t i, int x, int y) {
    const auto perRx = hn::LoadU(d, &batch.perRx[i]);
    const auto perRy = hn::LoadU(d, &batch.perRy[i]);
    const auto cx = hn::LoadU(d, &batch.cx[i]);
    const auto cy = hn::LoadU(d, &batch.cy[i]);
    const auto scaled = [&](int place, auto centre, auto perRadius) HWY_ATTR {
        return hn::Mul(hn::Sub(hn::Set(d, static_cast<double>(place)), centre), perRadius);
    };
    const auto area = areaInRectangle(d, scaled(x, cx, perRx), scaled(x + 1, cx, perRx), scaled(y, cy, perRy),
                                      scaled(y + 1, cy, perRy));
    return roundedCover(d, hn::Mul(area, hn::LoadU(d, &batch.scale[i])));
}

using Covers = StampBatch::Values<std::int32_t>;

// Rim pixels that wait to be painted. Mixing is a chain in which every step waits for the one before, so
// pixels are mixed side by side, whichever stamps each of them lies under.
class RimQueue {
 public:
    RimQueue(const StampBatch& batch, std::uint32_t fill) : batch_(batch), fill_(fill) {}

    HWY_INLINE void add(std::uint32_t* pixel, Range<std::size_t> stamps, int x, int y) {
        const std::size_t k = count_++;
        pixels_[k] = pixel;
        steps_[k] = stamps.begin < stamps.end ? stamps.end - stamps.begin : 0;
        findCovers(stamps, x, y, covers_[k]);
        if (count_ == kTogether)
            paint();
    }

    // Paints all that wait.
    HWY_INLINE void paint() {
        std::size_t steps = 0;
        for (std::size_t k = 0; k < count_; ++k)
            steps = std::max(steps, steps_[k]);
        const D d;
        const hn::RebindToSigned<D> d32;
        HWY_ALIGN std::uint32_t values[kTogether] = {};
        for (std::size_t k = 0; k < count_; ++k) {
            values[k] = *pixels_[k];
            clearFrom(steps_[k], steps, covers_[k]);
        }
        MixedPixels<D> mixing(d, hn::Load(d, values), fill_);
        const auto lanes =
            hn::Mul(hn::Iota(d32, 0), hn::Set(d32, static_cast<std::int32_t>(StampBatch::kRoom)));
        for (std::size_t i = 0; i < steps; ++i)
            mixing.mix(hn::GatherIndex(d32, &covers_[0][i], lanes));
        hn::Store(mixing.pixels(d), d, values);
        for (std::size_t k = 0; k < count_; ++k)
            *pixels_[k] = values[k];
        count_ = 0;
    }

 private:
    using D = hn::CappedTag<std::uint32_t, 16>;  // more would hold too much of the first-level cache
    static constexpr std::size_t kTogether = hn::MaxLanes(D());

    static HWY_INLINE void clearFrom(std::size_t begin, std::size_t end, Covers& covers) {
        const hn::ScalableTag<std::int32_t> d;
        for (; begin < end; begin += hn::Lanes(d))
            hn::StoreU(hn::Zero(d), d, &covers[begin]);
    }

    // The coverage of a pixel by some stamps, and by some beyond.
    HWY_INLINE void findExactCovers(Range<std::size_t> stamps, int x, int y, std::int32_t* covers) const {
        const hn::ScalableTag<double> d;
        const hn::Rebind<std::int32_t, decltype(d)> d32;
        for (std::size_t i = stamps.begin; i < stamps.end; i += hn::Lanes(d), covers += hn::Lanes(d))
            hn::StoreU(hardCover(d, batch_, i, x, y), d32, covers);
    }

    HWY_INLINE void findCovers(Range<std::size_t> stamps, int x, int y, Covers& covers) const {
#if HWY_TARGET == HWY_SCALAR
        findExactCovers(stamps, x, y, covers.data());
#else
        if (batch_.round.squared <= 0)
            return findExactCovers(stamps, x, y, covers.data());
        const std::size_t lanes = hn::Lanes(hn::ScalableTag<float>());
        std::int32_t* to = covers.data();
        for (std::size_t i = stamps.begin; i < stamps.end; i += lanes, to += lanes) {
            if (HWY_UNLIKELY(!rimCover(batch_, i, x, y, to)))
                findExactCovers({i, std::min(i + lanes, stamps.end)}, x, y, to);
        }
#endif
    }

    const StampBatch& batch_;
    std::uint32_t fill_;
    std::size_t count_ = 0;
    std::uint32_t* pixels_[kTogether] = {};
    std::size_t steps_[kTogether] = {};
    Covers covers_[kTogether] = {};
};

HWY_INLINE void paintHardRow(const PlaneRow& row, const StampBatch& batch, const RowReach& reach,
                             std::uint32_t fill, RimQueue& queue) {
    const hn::ScalableTag<std::uint32_t> d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int x = reach.pixels.begin; x < reach.pixels.end; x += lanes) {
        const auto other = hn::Ne(PixelVector(d, row, x).load(d), hn::Set(d, fill));
        std::uint64_t bits = 0;
        hn::StoreMaskBits(d, other, reinterpret_cast<std::uint8_t*>(&bits));
        for (; bits != 0; bits &= bits - 1) {
            const int at = x + std::countr_zero(bits);
            if (at >= reach.pixels.end)
                break;
            queue.add(row.pixels + at, touching(batch, reach, at, at + 1), at, row.y);
        }
    }
}

HWY_INLINE void paintSoftRow(const PlaneRow& row, const StampBatch& batch, const RowReach& reach,
                             std::uint32_t fill) {
    const hn::ScalableTag<std::uint32_t> d;
    const hn::RebindToSigned<decltype(d)> d32;
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int x = reach.pixels.begin; x < reach.pixels.end; x += lanes) {
        PixelVector<decltype(d)> at(d, row, x);
        const auto old = at.load(d);
        if (hn::AllTrue(d, hn::Eq(old, hn::Set(d, fill))))
            continue;
        MixedPixels<decltype(d)> pixels(d, old, fill);
        const Range<std::size_t> stamps = touching(batch, reach, x, x + lanes);
        for (std::size_t i = stamps.begin; i < stamps.end; ++i)
            pixels.mix(softCover(d32, batch.soft[i], row.y, x));
        at.store(d, pixels.pixels(d));
    }
}

void paintImpl(const foundation::MutableBitmapView& plane, const StampBatch& batch,
               const foundation::IntRect& bounds, const StampPaint& paint) {
    RowReach reach;
    RimQueue rim(batch, paint.fill);
    for (int y = bounds.y; y < bounds.bottom(); ++y) {
        findReach(batch, y, {bounds.x, bounds.right()}, reach);
        const PlaneRow row{reinterpret_cast<std::uint32_t*>(plane.row(y)), plane.width, y};
        if (batch.soft.empty())
            paintHardRow(row, batch, reach, paint.fill, rim);
        else
            paintSoftRow(row, batch, reach, paint.fill);
    }
    rim.paint();
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {

HWY_EXPORT(paintImpl);

void paintBatch(foundation::MutableBitmapView plane, const StampBatch& batch,
                const foundation::IntRect& bounds, const StampPaint& paint) {
    HWY_DYNAMIC_DISPATCH(paintImpl)(plane, batch, bounds, paint);
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
