#include "cutengine/kernels/StrokePainter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

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

// Whether the stamp is an ellipse at all and meets the plane.
bool meets(const StampEllipse& stamp, const MutableBitmapView& plane) {
    return stamp.rx > 0 && stamp.ry > 0 && std::isfinite(stamp.rx) && std::isfinite(stamp.ry) &&
           stamp.cx + stamp.rx > 0 && stamp.cy + stamp.ry > 0 && stamp.cx - stamp.rx < plane.width &&
           stamp.cy - stamp.ry < plane.height && std::isfinite(stamp.cx) && std::isfinite(stamp.cy);
}

// What some stamps reach over.
class Extent {
 public:
    void add(const StampEllipse& stamp) {
        left_ = std::min(left_, stamp.cx - stamp.rx);
        top_ = std::min(top_, stamp.cy - stamp.ry);
        right_ = std::max(right_, stamp.cx + stamp.rx);
        bottom_ = std::max(bottom_, stamp.cy + stamp.ry);
    }

    // Every pixel of the plane that they touch.
    [[nodiscard]] IntRect within(const MutableBitmapView& plane) const {
        const auto clip = [](double value, int most) {
            return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(most)));
        };
        const int left = clip(std::floor(left_), plane.width);
        const int top = clip(std::floor(top_), plane.height);
        const int right = clip(std::ceil(right_), plane.width);
        const int bottom = clip(std::ceil(bottom_), plane.height);
        return right > left && bottom > top ? IntRect{left, top, right - left, bottom - top} : IntRect{};
    }

 private:
    static constexpr double kFar = std::numeric_limits<double>::max();
    double left_ = kFar;
    double top_ = kFar;
    double right_ = -kFar;
    double bottom_ = -kFar;
};

// One group of a call's stamps.
class StampGroup {
 public:
    StampGroup(MutableBitmapView plane, const StampPaint& paint)
        : plane_(plane), paint_(paint), cores_(paint.solid) {}

    void add(const Rect& stamp) {
        const StampEllipse ellipse = ellipseOf(stamp, plane_.height);
        if (!meets(ellipse, plane_))
            return;
        stamps_.push_back(ellipse);
        extent_.add(ellipse);
        cores_.add(ellipse);
    }

    // Paints what was added, forgets it, and returns where that may have changed the plane.
    IntRect paint() {
        const IntRect bounds = extent_.within(plane_);
        cores_.fill(plane_, bounds, paint_.fill);
        for (const StampEllipse& stamp : stamps_) {
            if (!batch_.takes(stamp))
                paintBatchNow();
            batch_.add(stamp, paint_.solid);
            batchExtent_.add(stamp);
        }
        paintBatchNow();
        stamps_.clear();
        cores_.clear();
        extent_ = {};
        return bounds;
    }

    [[nodiscard]] bool isFull() const { return stamps_.size() >= kGroup; }

 private:
    void paintBatchNow() {
        paintBatch(plane_, batch_, batchExtent_.within(plane_), paint_);
        batch_.clear();
        batchExtent_ = {};
    }

    MutableBitmapView plane_;
    StampPaint paint_;
    std::vector<StampEllipse> stamps_;
    StampCores cores_;
    Extent extent_;
    StampBatch batch_;
    Extent batchExtent_;
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
