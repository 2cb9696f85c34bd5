#include "cutengine/kernels/StretchedMask.h"

#include <algorithm>

#include "cutengine/kernels/MaskRow.h"

namespace trimora::cutengine::kernels {
namespace {

/// Shorter stretches of one value are not worth treating by themselves.
constexpr int kShortestRun = 8;

}  // namespace

StretchedMask::StretchedMask(const MaskSnapshot::Level& level, const Stretch& across, const Stretch& down,
                             int width)
    : level_(level),
      across_(across),
      down_(down),
      width_(width),
      top_(static_cast<std::size_t>(maskPieces(level.width))),
      bottom_(top_.size()) {}

void StretchedMask::moveTo(int y) {
    const Stretch::Place place = down_.at(y);
    weight_ = place.weight;
    if (place.index == row_)
        return;
    row_ = place.index;
    copyMaskRow(level_, 0, row_, level_.width, top_.data());
    copyMaskRow(level_, 0, down_.next(row_), level_.width, bottom_.data());
    findRuns();
}

void StretchedMask::findRuns() {
    runs_.clear();
    for (int column = 0; column < level_.width;) {
        const std::uint8_t value = top_[static_cast<std::size_t>(column)];
        const int end = endOfRun(column, value);
        if (end > column && (value == 0 || value == 255))
            addRun(column, end, value);
        column = std::max(end, column + 1);
    }
}

/// Adds the pixels that read nothing but columns `begin` to `end`.
void StretchedMask::addRun(int begin, int end, std::uint8_t value) {
    const Span pixels{firstPixelFrom(begin), end == level_.width ? width_ : firstPixelFrom(end - 1)};
    if (pixels.end - pixels.begin >= kShortestRun)
        runs_.push_back({pixels, value});
}

int StretchedMask::endOfRun(int column, std::uint8_t value) const {
    const int end = endOfEqualValues(top_.data(), column, level_.width, value);
    return endOfEqualValues(bottom_.data(), column, end, value);
}

/// The first pixel that lies at `column` or beyond.
int StretchedMask::firstPixelFrom(int column) const {
    int low = 0;
    int high = width_;
    while (low < high) {
        const int middle = low + (high - low) / 2;
        if (across_.at(middle).index < column)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

}  // namespace trimora::cutengine::kernels
