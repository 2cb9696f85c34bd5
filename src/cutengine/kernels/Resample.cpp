#include "cutengine/kernels/Resample.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "cutengine/kernels/WeightedRow.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::BitmapView;
using foundation::MutableBitmapView;

constexpr std::size_t kComponents = 4;
constexpr double kLobes = 3;

double lanczos(double x) {
    if (x == 0)
        return 1;
    if (std::abs(x) >= kLobes)
        return 0;
    const double angle = std::numbers::pi * x;
    return kLobes * std::sin(angle) * std::sin(angle / kLobes) / (angle * angle);
}

double triangle(double x) {
    return std::max(0.0, 1 - std::abs(x));
}

/// A filter's weight at a distance, and the distance from which it has none.
struct Shape {
    double (*weight)(double);
    double reach;
};

Shape shapeOf(Filter filter) {
    return filter == Filter::lanczos ? Shape{&lanczos, kLobes} : Shape{&triangle, 1};
}

/// Which samples of a line make each sample of the scaled line, and by how much.
class Taps {
 public:
    struct Tap {
        std::vector<float> weights;
        int first;
    };

    Taps(int from, int to, const Shape& shape) {
        const double ratio = static_cast<double>(from) / to;
        for (int i = 0; i < to; ++i)
            taps_.push_back(tapAt((i + 0.5) * ratio, std::max(ratio, 1.0), from, shape));
    }

    [[nodiscard]] const Tap& at(int i) const { return taps_[static_cast<std::size_t>(i)]; }

 private:
    /// Samples beyond the line's ends lend their weight to the last one inside.
    static Tap tapAt(double centre, double widening, int count, const Shape& shape) {
        const int begin = static_cast<int>(std::floor(centre - shape.reach * widening));
        const int end = static_cast<int>(std::ceil(centre + shape.reach * widening));
        const int first = std::clamp(begin, 0, count - 1);
        std::vector<double> weights(static_cast<std::size_t>(std::clamp(end, first + 1, count) - first));
        double sum = 0;
        for (int j = begin; j < end; ++j) {
            const double weight = shape.weight((j + 0.5 - centre) / widening);
            weights[static_cast<std::size_t>(std::clamp(j, 0, count - 1) - first)] += weight;
            sum += weight;
        }
        Tap tap{{}, first};
        for (const double weight : weights)
            tap.weights.push_back(static_cast<float>(weight / sum));
        return tap;
    }

    std::vector<Tap> taps_;
};

void writeRow(const std::vector<float>& line, const Taps& across, MutableBitmapView to, int y) {
    std::uint8_t* pixel = to.row(y);
    for (int x = 0; x < to.width; ++x, pixel += kComponents) {
        const Taps::Tap& tap = across.at(x);
        const float* from = line.data() + static_cast<std::size_t>(tap.first) * kComponents;
        std::array<float, kComponents> sums{};
        for (const float weight : tap.weights) {
            for (std::size_t i = 0; i < kComponents; ++i)
                sums[i] += *from++ * weight;
        }
        const float alpha = std::clamp(std::round(sums[3]), 0.0F, 255.0F);
        for (std::size_t i = 0; i < kComponents; ++i)
            pixel[i] = static_cast<std::uint8_t>(std::clamp(std::round(sums[i]), 0.0F, alpha));
    }
}

}  // namespace

void resample(BitmapView from, MutableBitmapView to, foundation::Workers& workers, Filter filter) {
    if (from.isEmpty() || to.isEmpty())
        return;
    if (from.width == to.width && from.height == to.height) {
        foundation::copyPixels(from, to);
        return;
    }
    const Taps across(from.width, to.width, shapeOf(filter));
    const Taps down(from.height, to.height, shapeOf(filter));
    const int bands = std::min(to.height, 8 * workers.width());
    workers.run(bands, [&](int band) {
        const auto top = [&](int index) { return static_cast<int>(std::int64_t{index} * to.height / bands); };
        std::vector<float> line(static_cast<std::size_t>(from.width) * kComponents);
        for (int y = top(band); y < top(band + 1); ++y) {
            const Taps::Tap& tap = down.at(y);
            std::fill(line.begin(), line.end(), 0.0F);
            for (std::size_t i = 0; i < tap.weights.size(); ++i)
                addWeighted(from.row(tap.first + static_cast<int>(i)), tap.weights[i], line.size(),
                            line.data());
            writeRow(line, across, to, y);
        }
    });
}

}  // namespace trimora::cutengine::kernels
