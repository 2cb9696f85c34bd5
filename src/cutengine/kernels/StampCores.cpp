#include "cutengine/kernels/StampCores.h"

#include <algorithm>
#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/StampCores.cpp"
#include "hwy/foreach_target.h"  // compiles this file again for every target
#include "hwy/highway.h"

#ifndef TRIMORA_STAMP_CORES_SHARED
#define TRIMORA_STAMP_CORES_SHARED
namespace trimora::cutengine::kernels {
constexpr std::size_t kMostCoreLanes = 64;  // at least the lanes of any target's vector of double
}  // namespace trimora::cutengine::kernels
#endif

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Where cores begin and end in a row (`begin` not before `end` where they do not meet it).
struct CoreSpans {
    HWY_ALIGN std::int32_t begin[kMostCoreLanes];
    HWY_ALIGN std::int32_t end[kMostCoreLanes];
    std::size_t count = 0;
};

HWY_INLINE void coreSpans(const CoreList& cores, std::size_t i, int y, int width, CoreSpans& spans) {
    const hn::ScalableTag<double> d;
    const hn::Rebind<std::int32_t, decltype(d)> d32;
    using V = hn::Vec<decltype(d)>;
    const V zero = hn::Zero(d);
    const V inset = hn::Set(d, cores.inset());
    const V rx = hn::LoadU(d, &cores.rx[i]);
    const V perRy = hn::LoadU(d, &cores.perRy[i]);
    const V middle = hn::Set(d, y + 0.5);
    const auto inside = [&](V cy) HWY_ATTR {
        const V v = hn::Mul(hn::Add(hn::Abs(hn::Sub(middle, cy)), inset), perRy);
        return hn::Sub(hn::Set(d, 1.0), hn::Mul(v, v));
    };
    const V first = inside(hn::LoadU(d, &cores.firstY[i]));
    const V second = inside(hn::LoadU(d, &cores.secondY[i]));
    const V firstX = hn::LoadU(d, &cores.firstX[i]);
    const V secondX = hn::LoadU(d, &cores.secondX[i]);
    const V firstReach = hn::Mul(rx, hn::Sqrt(hn::Max(first, zero)));
    const V secondReach = hn::Mul(rx, hn::Sqrt(hn::Max(second, zero)));
    const V left = hn::Max(hn::Sub(firstX, firstReach), hn::Sub(secondX, secondReach));
    const V right = hn::Min(hn::Add(firstX, firstReach), hn::Add(secondX, secondReach));
    const V shift = hn::Sub(hn::Set(d, 0.5), inset);
    const V most = hn::Set(d, static_cast<double>(width));
    const V begin = hn::Max(hn::Ceil(hn::Sub(left, shift)), zero);
    const V end = hn::Min(hn::Floor(hn::Add(right, shift)), most);
    const auto exists = hn::And(hn::Gt(hn::Min(first, second), zero), hn::Lt(begin, end));
    HWY_ALIGN double begins[kMostCoreLanes];
    HWY_ALIGN double ends[kMostCoreLanes];
    spans.count = hn::CompressStore(begin, exists, d, begins);
    hn::CompressStore(end, exists, d, ends);
    for (std::size_t k = 0; k < spans.count; k += hn::Lanes(d)) {
        hn::Store(hn::DemoteTo(d32, hn::Load(d, begins + k)), d32, spans.begin + k);
        hn::Store(hn::DemoteTo(d32, hn::Load(d, ends + k)), d32, spans.end + k);
    }
}

HWY_INLINE void fillSpan(std::uint32_t* pixels, std::int32_t begin, std::int32_t end, std::uint32_t fill) {
    const hn::ScalableTag<std::uint32_t> d;
    const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
    const auto value = hn::Set(d, fill);
    if (end - begin < lanes) {
        std::fill(pixels + begin, pixels + end, fill);
        return;
    }
    for (std::int32_t x = begin; x + lanes <= end; x += lanes)
        hn::StoreU(value, d, pixels + x);
    hn::StoreU(value, d, pixels + end - lanes);
}

// Spans of cores that follow each other mostly overlap and are filled at one go.
HWY_INLINE void fillRow(const CoreList& cores, int y, int width, std::uint32_t* pixels, std::uint32_t fill) {
    const hn::ScalableTag<double> d;
    const hn::Rebind<std::int32_t, decltype(d)> d32;
    const auto row = hn::Set(d32, y);
    const auto nextRow = hn::Set(d32, y + 1);
    CoreSpans spans;
    std::int32_t begin = 0;
    std::int32_t end = 0;
    for (std::size_t i = 0; i < cores.count(); i += hn::Lanes(d)) {
        const auto meets = hn::And(hn::Lt(hn::LoadU(d32, &cores.tops[i]), nextRow),
                                   hn::Gt(hn::LoadU(d32, &cores.bottoms[i]), row));
        if (hn::AllFalse(d32, meets))
            continue;
        coreSpans(cores, i, y, width, spans);
        for (std::size_t k = 0; k < spans.count; ++k) {
            if (spans.begin[k] <= end && spans.end[k] >= begin) {
                begin = std::min(begin, spans.begin[k]);
                end = std::max(end, spans.end[k]);
                continue;
            }
            fillSpan(pixels, begin, end, fill);
            begin = spans.begin[k];
            end = spans.end[k];
        }
    }
    fillSpan(pixels, begin, end, fill);
}

void fillImpl(const CoreList& cores, const foundation::MutableBitmapView& plane,
              const foundation::IntRect& bounds, std::uint32_t fill) {
    for (int y = bounds.y; y < bounds.bottom(); ++y)
        fillRow(cores, y, plane.width, reinterpret_cast<std::uint32_t*>(plane.row(y)), fill);
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {
namespace {

using foundation::IntRect;
using foundation::MutableBitmapView;

constexpr std::size_t kEnough = 8;   // stamps that cover a pixel by half bring it to fill
constexpr double kWorthwhile = 0.8;  // how much thinner than a stamp's own core a shared one may be

// How much thinner by radius what covers a pixel by half is, for it to be true of every pixel whose
// middle lies inside: of a straight edge nothing; of an arc the sliver outside its tangent, 0.121 / its
// radius of a pixel where that is 2 or more; and a 255th for the rounding.
double halfCoverMargin(double radiusOfArc) {
    return 0.125 / radiusOfArc + 0.004;
}

// How far the stamps between the first and the last lie off the line between those; none if they do not
// lie beside it.
double distanceOffLine(std::span<const StampEllipse> stamps) {
    constexpr double kNone = 1e300;
    const double x = stamps.back().cx - stamps.front().cx;
    const double y = stamps.back().cy - stamps.front().cy;
    const double squared = x * x + y * y;
    double most = 0;
    for (const StampEllipse& stamp : stamps.subspan(1, stamps.size() - 2)) {
        const double dx = stamp.cx - stamps.front().cx;
        const double dy = stamp.cy - stamps.front().cy;
        const double along = dx * x + dy * y;
        if (!(along >= 0 && along <= squared))
            return kNone;
        most = std::max(most, std::abs(dx * y - dy * x));
    }
    return squared > 0 ? most / std::sqrt(squared) : kNone;
}

bool sameSize(const StampEllipse& a, const StampEllipse& b) {
    return a.rx == b.rx && a.ry == b.ry;
}

// Of cores that lie close together one in several is enough: what the others would add is a sliver of a
// tenth of a pixel, left to the exact step.
bool isClose(const StampEllipse& a, const StampEllipse& b) {
    constexpr double kSliver = 0.1;
    constexpr double kPartOfRadius = 1.0 / 5;
    const double radius = std::min(a.rx, a.ry);
    const double x = a.cx - b.cx;
    const double y = a.cy - b.cy;
    const double squared = std::min(radius * kPartOfRadius * kPartOfRadius, 8 * kSliver) * radius;
    return sameSize(a, b) && x * x + y * y < squared;
}

std::int32_t rowAt(double y) {
    constexpr double kMost = 1 << 30;
    return static_cast<std::int32_t>(std::clamp(y, -kMost, kMost));
}

StampEllipse scaled(const StampEllipse& stamp, double part) {
    return {stamp.cx, stamp.cy, stamp.rx * part, stamp.ry * part};
}

}  // namespace

HWY_EXPORT(fillImpl);

void CoreList::clear() {
    count_ = 0;
    std::fill(bottoms.begin(), bottoms.end(), 0);
}

void CoreList::add(const StampEllipse& first, const StampEllipse& second) {
    if (rx.size() < count_ + 1 + kMostCoreLanes) {
        const std::size_t room = 2 * count_ + 1 + kMostCoreLanes;
        for (auto* const values : {&firstX, &firstY, &secondX, &secondY, &rx, &perRy})
            values->resize(room, 0);
        tops.resize(room, 0);
        bottoms.resize(room, 0);
    }
    firstX[count_] = first.cx;
    firstY[count_] = first.cy;
    secondX[count_] = second.cx;
    secondY[count_] = second.cy;
    rx[count_] = first.rx;
    perRy[count_] = 1 / first.ry;
    tops[count_] = rowAt(std::floor(std::max(first.cy, second.cy) - first.ry));
    bottoms[count_] = rowAt(std::ceil(std::min(first.cy, second.cy) + first.ry));
    ++count_;
}

void CoreList::fill(MutableBitmapView plane, const IntRect& bounds, std::uint32_t fill) const {
    if (count_ > 0)
        HWY_DYNAMIC_DISPATCH(fillImpl)(*this, plane, bounds, fill);
}

StampCores::StampCores(double solid) : solid_(solid), covered_(0.5), shared_(solid < 1 ? 0.5 : 0) {}

void StampCores::clear() {
    stamps_.clear();
    covered_.clear();
    shared_.clear();
}

void StampCores::add(const StampEllipse& stamp) {
    stamps_.push_back(stamp);
    if (stamps_.size() >= kEnough) {
        if (shared_.count() > 0 && isClose(stamp, lastShared_))
            return;
        if (addShared())
            return;
    }
    if (covered_.count() == 0 || !isClose(stamp, lastCovered_))
        addCovered(stamp);
}

void StampCores::addCovered(const StampEllipse& stamp) {
    const StampEllipse core = scaled(stamp, solid_);
    lastCovered_ = stamp;
    if (core.rx > 0.5 && core.ry > 0.5)
        covered_.add(core, core);
}

// Of what the last few stamps have in common; false where they are no line or too small.
bool StampCores::addShared() {
    constexpr double kLeastArc = 2;
    constexpr double kHalfAndABit = 0.51;
    const std::span<const StampEllipse> stamps = std::span(stamps_).last(kEnough);
    const StampEllipse& last = stamps.back();
    if (!std::all_of(stamps.begin(), stamps.end(), [&](const auto& each) { return sameSize(each, last); }))
        return false;
    const double radius = std::min(last.rx, last.ry);
    const double arc = radius * radius / std::max(last.rx, last.ry);
    if (arc < kLeastArc)
        return false;
    const double off = distanceOffLine(stamps);
    const double part = solid_ < 1 ? 1 - (1 - solid_) * kHalfAndABit - off / radius
                                   : 1 - (halfCoverMargin(arc) + off) / radius;
    if (!(part > solid_ * kWorthwhile))
        return false;
    shared_.add(scaled(stamps.front(), part), scaled(last, part));
    lastShared_ = last;
    return true;
}

void StampCores::fill(MutableBitmapView plane, const IntRect& bounds, std::uint32_t fill) {
    if (!stamps_.empty())
        addCovered(stamps_.back());
    covered_.fill(plane, bounds, fill);
    shared_.fill(plane, bounds, fill);
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
