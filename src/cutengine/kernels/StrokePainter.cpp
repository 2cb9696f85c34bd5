#include "cutengine/kernels/StrokePainter.h"

#include <algorithm>
#include <array>
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

// Whether the stamp is an ellipse at all and meets the plane, which none does whose centre is no number.
bool meets(const StampEllipse& stamp, const MutableBitmapView& plane) {
    constexpr double kMost = std::numeric_limits<double>::max();
    return stamp.rx > 0 && stamp.ry > 0 && stamp.rx <= kMost && stamp.ry <= kMost &&
           stamp.cx + stamp.rx > 0 && stamp.cy + stamp.ry > 0 && stamp.cx - stamp.rx < plane.width &&
           stamp.cy - stamp.ry < plane.height;
}

// The stamps of one call, group by group.
class GroupPainter {
 public:
    GroupPainter(MutableBitmapView plane, const StampPaint& paint)
        : plane_(plane), paint_(paint), cores_(paint.solid) {}

    // Paints `stamps`, kGroup at most, and returns where that may have changed the plane.
    IntRect paint(std::span<const Rect> stamps) {
        const auto group = ellipsesOf(stamps);
        cores_.find(group);
        cores_.fill(plane_, paint_.fill);
        IntRect painted;
        for (auto left = group; !left.empty();) {
            left = left.subspan(batch_.take(left, paint_.solid));
            const IntRect bounds = batch_.extent().within(plane_.width, plane_.height);
            paintBatch(plane_, batch_, bounds, paint_);
            painted = united(painted, bounds);
        }
        return painted;
    }

 private:
    std::span<const StampEllipse> ellipsesOf(std::span<const Rect> stamps) {
        std::size_t count = 0;
        for (const Rect& stamp : stamps) {
            ellipses_[count] = ellipseOf(stamp, plane_.height);
            count += meets(ellipses_[count], plane_) ? 1 : 0;
        }
        return std::span(ellipses_).first(count);
    }

    MutableBitmapView plane_;
    StampPaint paint_;
    std::array<StampEllipse, kGroup> ellipses_;
    StampCores cores_;
    StampBatch batch_;
};

}  // namespace

IntRect paintStamps(MutableBitmapView plane, std::span<const Rect> stamps, const Brush& brush) {
    StampPaint paint;
    std::memcpy(&paint.fill, &brush.fill, sizeof paint.fill);
    if (brush.soft != nullptr)
        paint.solid = static_cast<double>(brush.soft->hardness());
    GroupPainter painter(plane, paint);
    IntRect painted;
    while (!stamps.empty()) {
        const auto group = stamps.first(std::min(stamps.size(), kGroup));
        painted = united(painted, painter.paint(group));
        stamps = stamps.subspan(group.size());
    }
    return painted;
}

}  // namespace trimora::cutengine::kernels
