#include "cutengine/kernels/StrokePainter.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "cutengine/kernels/StampCores.h"
#include "cutengine/kernels/StampRows.h"

// How a stroke is painted quickly and still exactly. What is sure to end at `fill` under a group of stamps
// is filled first, whatever the single stamps leave there meanwhile; see StampCores.h. Then the stamps are
// painted in order, each on the pixels that do not hold fill, which stamps of that fill do not change. What
// is left for the second step is a thin line along both sides of the stroke.
namespace trimora::cutengine::kernels {
namespace {

using foundation::IntRect;
using foundation::MutableBitmapView;
using foundation::Rect;

// Stamps are worked on in groups, so that a group's stamps stay in cache.
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

// One group of a call's stamps.
class StampGroup {
 public:
    StampGroup(MutableBitmapView plane, const StampPaint& paint)
        : plane_(plane), paint_(paint), cores_(paint.solid) {}

    void add(const Rect& stamp) {
        const StampEllipse ellipse = ellipseOf(stamp, plane_.height);
        const IntRect bounds = boundsOf(ellipse, plane_);
        if (bounds.isEmpty())
            return;
        stamps_.push_back({ellipse, bounds});
        bounds_ = united(bounds_, bounds);
        cores_.add(ellipse);
    }

    // Paints what was added, forgets it, and returns where that may have changed the plane.
    IntRect paint() {
        cores_.fill(plane_, bounds_, paint_.fill);
        for (const Placed& stamp : stamps_) {
            if (!batch_.takes(stamp.ellipse))
                paintBatchNow();
            batch_.add(stamp.ellipse, paint_.solid);
            batchBounds_ = united(batchBounds_, stamp.bounds);
        }
        paintBatchNow();
        const IntRect painted = bounds_;
        stamps_.clear();
        cores_.clear();
        bounds_ = {};
        return painted;
    }

    [[nodiscard]] bool isFull() const { return stamps_.size() >= kGroup; }

 private:
    struct Placed {
        StampEllipse ellipse;
        IntRect bounds;
    };

    void paintBatchNow() {
        paintBatch(plane_, batch_, batchBounds_, paint_);
        batch_.clear();
        batchBounds_ = {};
    }

    MutableBitmapView plane_;
    StampPaint paint_;
    std::vector<Placed> stamps_;
    StampCores cores_;
    IntRect bounds_;
    StampBatch batch_;
    IntRect batchBounds_;
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
