#include "cutengine/kernels/StrokePainter.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "cutengine/kernels/StampRows.h"

// How a stroke is painted quickly and still exactly. A pixel that some stamp covers wholly ends at
// `fill` whatever else the call does to it: that stamp sets it to fill, and every later one mixes fill
// with fill, round((f (255 - c) + f c) / 255) = f. So in each row the spans that are wholly covered
// are united and filled first; then the stamps are painted in order, each on its pixels outside
// those spans. What is left for the second step is a thin line along both sides of the stroke.
namespace trimora::cutengine::kernels {
namespace {

using foundation::IntRect;
using foundation::MutableBitmapView;
using foundation::Rect;

// Stamps are worked on in groups, so that the groups' rows stay short and a group's stamps in cache.
constexpr std::size_t kGroup = 512;

StampEllipse ellipseOf(const Rect& stamp, int planeHeight) {
    const double rx = stamp.width / 2;
    const double ry = stamp.height / 2;
    return {stamp.x + rx, planeHeight - (stamp.y + ry), rx, ry};
}

// Every pixel that the ellipse touches, within the plane; empty also for what is no ellipse at all.
IntRect boundsOf(const StampEllipse& ellipse, const MutableBitmapView& plane) {
    const auto clip = [](double value, int most) {
        return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(most)));
    };
    const bool valid = ellipse.rx > 0 && ellipse.ry > 0 && std::isfinite(ellipse.cx + ellipse.rx) &&
                       std::isfinite(ellipse.cy + ellipse.ry);
    if (!valid)
        return {};
    const int left = clip(std::floor(ellipse.cx - ellipse.rx), plane.width);
    const int top = clip(std::floor(ellipse.cy - ellipse.ry), plane.height);
    const int right = clip(std::ceil(ellipse.cx + ellipse.rx), plane.width);
    const int bottom = clip(std::ceil(ellipse.cy + ellipse.ry), plane.height);
    return {left, top, right - left, bottom - top};
}

// The pixels of a row that lie wholly within the ellipse.
Span coveredSpan(const StampEllipse& ellipse, int y, int width) {
    const double v = std::max(std::abs(y - ellipse.cy), std::abs(y + 1 - ellipse.cy)) / ellipse.ry;
    if (!(v < 1))
        return {};
    const double reach = ellipse.rx * std::sqrt(1 - v * v);
    const double most = width;
    return {static_cast<int>(std::clamp(std::ceil(ellipse.cx - reach), 0.0, most)),
            static_cast<int>(std::clamp(std::floor(ellipse.cx + reach), 0.0, most))};
}

// One group of a call's stamps.
class StampGroup {
 public:
    StampGroup(MutableBitmapView plane, const StampPaint& paint) : plane_(plane), paint_(paint) {}

    void add(const Rect& stamp) {
        const StampEllipse ellipse = ellipseOf(stamp, plane_.height);
        const IntRect bounds = boundsOf(ellipse, plane_);
        if (bounds.isEmpty())
            return;
        stamps_.add(ellipse, bounds.y, bounds.bottom());
        bounds_ = united(bounds_, bounds);
        addCore(ellipse);
    }

    // Paints what was added, forgets it, and returns where that may have changed the plane.
    IntRect paint() {
        for (int y = bounds_.y; y < bounds_.bottom(); ++y) {
            const PlaneRow row{reinterpret_cast<std::uint32_t*>(plane_.row(y)), plane_.width, y};
            fillCovered(row);
            paintStampRows(row, stamps_, filled_, paint_);
        }
        const IntRect painted = bounds_;
        stamps_.clear();
        cores_.clear();
        bounds_ = {};
        return painted;
    }

    [[nodiscard]] bool isFull() const { return stamps_.count() >= kGroup; }

 private:
    // The wholly covered part of a stamp. Of stamps that lie close together one in several is enough:
    // what the others would add is a sliver of a tenth of a pixel, left to the exact step.
    void addCore(const StampEllipse& ellipse) {
        constexpr double kSliver = 0.1;
        const StampEllipse core{ellipse.cx, ellipse.cy, ellipse.rx * paint_.solid, ellipse.ry * paint_.solid};
        if (!cores_.empty()) {
            const StampEllipse& last = cores_.back();
            const double radius = std::min(core.rx, core.ry);
            const double apart = std::min(radius / 8, std::sqrt(8 * radius * kSliver));
            const bool sameSize = core.rx == last.rx && core.ry == last.ry;
            if (sameSize && std::hypot(core.cx - last.cx, core.cy - last.cy) < apart)
                return;
        }
        if (core.rx > 0.5 && core.ry > 0.5)
            cores_.push_back(core);
    }

    // Fills every span of the row that a core covers. Those of cores that follow each other mostly
    // overlap and are filled at one go.
    void fillCovered(const PlaneRow& row) {
        filled_.clear();
        Span current;
        const auto finish = [&] {
            if (current.isEmpty())
                return;
            fillSpan(row, current, paint_.fill);
            filled_.add(current);
        };
        for (const StampEllipse& core : cores_) {
            const Span covered = coveredSpan(core, row.y, row.width);
            if (covered.isEmpty())
                continue;
            if (covered.left <= current.right && covered.right >= current.left && !current.isEmpty()) {
                current = {std::min(current.left, covered.left), std::max(current.right, covered.right)};
            } else {
                finish();
                current = covered;
            }
        }
        finish();
    }

    MutableBitmapView plane_;
    StampPaint paint_;
    StampList stamps_;
    std::vector<StampEllipse> cores_;
    FilledSpans filled_;
    IntRect bounds_;
};

}  // namespace

IntRect paintStamps(MutableBitmapView plane, std::span<const Rect> stamps, const Brush& brush) {
    StampPaint paint;
    std::memcpy(&paint.fill, &brush.fill, sizeof paint.fill);
    if (brush.soft != nullptr)
        paint.solid = static_cast<double>(brush.soft->hardness());
    StampGroup group(plane, paint);
    IntRect painted;
    for (const Rect& stamp : stamps) {
        group.add(stamp);
        if (group.isFull())
            painted = united(painted, group.paint());
    }
    return united(painted, group.paint());
}

}  // namespace trimora::cutengine::kernels
