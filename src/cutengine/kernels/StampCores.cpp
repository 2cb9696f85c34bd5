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

// Where cores begin and end in a row. One that does not meet it begins far right and ends far left.
template <class V>
struct CoreSpans {
    V begin, end;
};

// Beyond any row, and still an int32.
constexpr double kFarOut = 1 << 30;

template <class D, class V = hn::Vec<D>>
HWY_INLINE CoreSpans<V> coreSpans(D d, const CoreList& cores, std::size_t i, int y, int width) {
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
    return {hn::IfThenElse(exists, begin, hn::Set(d, kFarOut)),
            hn::IfThenElse(exists, end, hn::Set(d, -kFarOut))};
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

// A row that is being filled. Spans that follow each other mostly overlap and are filled at one go.
class RowFill {
 public:
    RowFill(std::uint32_t* pixels, std::uint32_t fill) : pixels_(pixels), fill_(fill) {}

    HWY_INLINE void add(std::int32_t begin, std::int32_t end) {
        if (begin <= end_ && end >= begin_) {
            begin_ = std::min(begin_, begin);
            end_ = std::max(end_, end);
            return;
        }
        finish();
        begin_ = begin;
        end_ = end;
    }
    HWY_INLINE void finish() { fillSpan(pixels_, begin_, end_, fill_); }

 private:
    std::uint32_t* pixels_;
    std::uint32_t fill_;
    std::int32_t begin_ = 0;
    std::int32_t end_ = 0;
};

template <class D, class V = hn::Vec<D>>
HWY_INLINE void addSpans(D d, const CoreSpans<V>& spans, RowFill& row) {
    const V far = hn::Set(d, kFarOut);
    const auto exists = hn::Lt(spans.begin, far);
    if (hn::AllFalse(d, exists))
        return;
    const auto lowest = [&](V values) HWY_ATTR { return hn::GetLane(hn::MinOfLanes(d, values)); };
    const auto highest = [&](V values) HWY_ATTR { return hn::GetLane(hn::MaxOfLanes(d, values)); };
    // All have a pixel in common if the last of them begins before the first of them ends.
    const double lastBegin = highest(hn::IfThenElse(exists, spans.begin, hn::Neg(far)));
    if (lastBegin <= lowest(hn::IfThenElse(exists, spans.end, far)))
        return row.add(static_cast<std::int32_t>(lowest(spans.begin)),
                       static_cast<std::int32_t>(highest(spans.end)));
    const hn::Rebind<std::int32_t, D> d32;
    HWY_ALIGN std::int32_t begins[kMostCoreLanes];
    HWY_ALIGN std::int32_t ends[kMostCoreLanes];
    hn::Store(hn::DemoteTo(d32, spans.begin), d32, begins);
    hn::Store(hn::DemoteTo(d32, spans.end), d32, ends);
    for (std::size_t k = 0; k < hn::Lanes(d); ++k) {
        if (begins[k] < ends[k])
            row.add(begins[k], ends[k]);
    }
}

HWY_INLINE void fillRow(const CoreList& cores, int y, int width, RowFill row) {
    const hn::ScalableTag<double> d;
    const hn::Rebind<std::int32_t, decltype(d)> d32;
    const auto top = hn::Set(d32, y);
    const auto next = hn::Set(d32, y + 1);
    for (std::size_t i = 0; i < cores.count(); i += hn::Lanes(d)) {
        const auto meets = hn::And(hn::Lt(hn::LoadU(d32, &cores.tops[i]), next),
                                   hn::Gt(hn::LoadU(d32, &cores.bottoms[i]), top));
        if (!hn::AllFalse(d32, meets))
            addSpans(d, coreSpans(d, cores, i, y, width), row);
    }
    row.finish();
}

void fillImpl(const CoreList& cores, const foundation::MutableBitmapView& plane, std::uint32_t fill) {
    const auto count = static_cast<std::ptrdiff_t>(cores.count());
    const int top = *std::min_element(cores.tops.begin(), cores.tops.begin() + count);
    const int bottom = *std::max_element(cores.bottoms.begin(), cores.bottoms.begin() + count);
    for (int y = std::max(top, 0); y < std::min(bottom, plane.height); ++y)
        fillRow(cores, y, plane.width, {reinterpret_cast<std::uint32_t*>(plane.row(y)), fill});
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {
namespace {

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

// Of cores that lie close together one in several is enough: what the others would add is a sliver of a
// tenth of a pixel, left to the exact step.
bool isClose(const StampEllipse& a, const StampEllipse& b) {
    constexpr double kSliver = 0.1;
    constexpr double kPartOfRadius = 1.0 / 5;
    const double radius = std::min(a.rx, a.ry);
    const double x = a.cx - b.cx;
    const double y = a.cy - b.cy;
    const double squared = std::min(radius * kPartOfRadius * kPartOfRadius, 8 * kSliver) * radius;
    return a.hasSizeOf(b) && x * x + y * y < squared;
}

// The row or, above the plane, the one below it.
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
    tops[count_] = rowAt(std::max(first.cy, second.cy) - first.ry) - 1;
    bottoms[count_] = rowAt(std::min(first.cy, second.cy) + first.ry) + 1;
    ++count_;
}

void CoreList::fill(MutableBitmapView plane, std::uint32_t fill) const {
    if (count_ > 0)
        HWY_DYNAMIC_DISPATCH(fillImpl)(*this, plane, fill);
}

StampCores::StampCores(double solid) : solid_(solid), covered_(0.5), shared_(solid < 1 ? 0.5 : 0) {}

void StampCores::find(std::span<const StampEllipse> stamps) {
    covered_.clear();
    shared_.clear();
    for (std::size_t count = 1; count <= stamps.size(); ++count)
        add(stamps.first(count));
    if (!stamps.empty())
        addCovered(stamps.back());
}

// The last of `stamps`, after all the others.
void StampCores::add(std::span<const StampEllipse> stamps) {
    const StampEllipse& stamp = stamps.back();
    if (stamps.size() >= kEnough) {
        if (shared_.count() > 0 && isClose(stamp, lastShared_))
            return;
        if (addShared(stamps.last(kEnough)))
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

// Of what `stamps` have in common; false where they are no line or too small.
bool StampCores::addShared(std::span<const StampEllipse> stamps) {
    constexpr double kLeastArc = 2;
    constexpr double kHalfAndABit = 0.51;
    const StampEllipse& last = stamps.back();
    if (!std::all_of(stamps.begin(), stamps.end(), [&](const auto& each) { return each.hasSizeOf(last); }))
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

void StampCores::fill(MutableBitmapView plane, std::uint32_t fill) const {
    covered_.fill(plane, fill);
    shared_.fill(plane, fill);
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
