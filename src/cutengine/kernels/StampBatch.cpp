#include "cutengine/kernels/StampBatch.h"

#include <algorithm>
#include <cmath>

namespace trimora::cutengine::kernels {
namespace {

// How many of the first stamps lie close to the one before each.
std::size_t closeTogether(std::span<const StampEllipse> stamps) {
    std::size_t count = 1;
    for (; count < stamps.size(); ++count) {
        const StampEllipse& last = stamps[count - 1];
        const StampEllipse& next = stamps[count];
        if (!(std::abs(next.cx - last.cx) <= next.rx + last.rx &&
              std::abs(next.cy - last.cy) <= next.ry + last.ry))
            break;
    }
    return count;
}

// How many stamps from the first on have its size.
std::size_t sameSize(std::span<const StampEllipse> stamps) {
    const auto other = std::find_if(stamps.begin(), stamps.end(),
                                    [&](const auto& each) { return !each.hasSizeOf(stamps.front()); });
    return static_cast<std::size_t>(other - stamps.begin());
}

}  // namespace

StampExtent::StampExtent(std::span<const StampEllipse> stamps) {
    StampExtent found;  // apart from `this`, to be kept in registers
    for (const StampEllipse& stamp : stamps) {
        found.left_ = std::min(found.left_, stamp.cx - stamp.rx);
        found.top_ = std::min(found.top_, stamp.cy - stamp.ry);
        found.right_ = std::max(found.right_, stamp.cx + stamp.rx);
        found.bottom_ = std::max(found.bottom_, stamp.cy + stamp.ry);
    }
    *this = found;
}

foundation::IntRect StampExtent::within(int width, int height) const {
    const auto clip = [](double value, int most) {
        return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(most)));
    };
    const int left = clip(std::floor(left_), width);
    const int top = clip(std::floor(top_), height);
    const int right = clip(std::ceil(right_), width);
    const int bottom = clip(std::ceil(bottom_), height);
    if (right <= left || bottom <= top)
        return {};
    return {left, top, right - left, bottom - top};
}

RoundStamps::RoundStamps(double radius) {
    if (!(radius >= kLeast && radius <= kMost))
        return;
    squared = radius * radius;
    // r^2 (asin(s) - s sqrt(1 - s^2)) with s = L / 2r, as a series.
    constexpr std::array<double, 4> kSeries = {2.0 / 3, 1.0 / 5, 3.0 / 28, 5.0 / 72};
    double scale = 1 / (8 * radius);
    for (std::size_t k = 0; k < kSeries.size(); ++k, scale /= 4 * squared)
        segment[k] = static_cast<float>(kSeries[k] * scale);
}

std::size_t StampBatch::take(std::span<const StampEllipse> stamps, double solid) {
    const std::size_t had = count_;
    count_ = closeTogether(stamps.first(std::min(stamps.size(), kMost)));
    const auto taken = stamps.first(count_);
    takePlaces(taken);
    takeSizes(taken);
    extent_ = StampExtent(taken);
    // Stamps of radius 0 touch nothing: what is left over in a last vector is never asked for.
    if (had > count_)
        std::fill_n(reach.begin() + static_cast<std::ptrdiff_t>(count_), had - count_, 0.0F);
    soft.clear();
    if (solid < 1) {
        for (const StampEllipse& stamp : taken)
            soft.emplace_back(stamp, solid);
    }
    return count_;
}

void StampBatch::takePlaces(std::span<const StampEllipse> stamps) {
    originX = std::floor(stamps.front().cx);
    originY = std::floor(stamps.front().cy);
    for (std::size_t i = 0; i < stamps.size(); ++i) {
        cx[i] = stamps[i].cx;
        cy[i] = stamps[i].cy;
        x[i] = static_cast<float>(stamps[i].cx - originX);
        y[i] = static_cast<float>(stamps[i].cy - originY);
    }
}

void StampBatch::takeSizes(std::span<const StampEllipse> stamps) {
    constexpr double kBit = 1e-5;  // more than float is wrong by, relatively
    round = {};
    for (std::size_t i = 0; i < stamps.size();) {
        const double rx = stamps[i].rx;
        const double ry = stamps[i].ry;
        const std::size_t count = sameSize(stamps.subspan(i));
        const auto fill = [i, count](auto& values, auto value) { std::fill_n(&values[i], count, value); };
        fill(perRx, 1 / rx);
        fill(perRy, 1 / ry);
        fill(scale, 255 * rx * ry);
        fill(steepness, static_cast<float>(rx / ry));
        fill(reach, static_cast<float>(rx * rx * (1 + kBit)));
        if (count == stamps.size() && rx == ry)
            round = RoundStamps(rx);
        i += count;
    }
}

}  // namespace trimora::cutengine::kernels
