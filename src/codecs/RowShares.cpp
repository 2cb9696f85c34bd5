#include "codecs/RowShares.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace trimora::codecs {
namespace {

// What passing over a row costs of reading it. It decides how well more than two parts are balanced.
constexpr double kPassingShare = 0.3;

/// How long `parts` parts that are at the same row take for what is left, if one alone took 1.
double timeOfSeveral(std::size_t parts) {
    double readMeanwhile = 0;  // by all, in the time in which the first reads 1
    double share = 1;
    for (std::size_t part = 0; part < parts; ++part) {
        readMeanwhile += share;
        share *= 1 - kPassingShare;
    }
    return 1 / readMeanwhile;
}

}  // namespace

RowShares::RowShares(int rows, int parts, int step)
    : rows_(rows), step_(step), parts_(static_cast<std::size_t>(parts)) {
    parts_.front().reads = true;
}

std::size_t RowShares::nextReader(std::size_t part) const {
    const auto from = parts_.begin() + static_cast<std::ptrdiff_t>(part) + 1;
    const auto found = std::find_if(from, parts_.end(), [](const Part& each) { return each.reads; });
    return static_cast<std::size_t>(found - parts_.begin());
}

int RowShares::endOf(std::size_t part) const {
    const std::size_t next = nextReader(part);
    return next < parts_.size() ? parts_[next].first : rows_;
}

std::optional<int> RowShares::place(int part, int earliest) {
    const auto index = static_cast<std::size_t>(part);
    const std::scoped_lock lock(mutex_);
    int above = 0;
    for (std::size_t i = 0; i < index; ++i)
        above = std::max(above, parts_[i].position);
    const int end = endOf(index);
    // Where the part above has as far to go to this row as this part and those that will follow it, together,
    // need for the rest.
    const double time = timeOfSeveral(nextReader(index) - index);
    const double row = (above + end * time) / (1 + time);
    const int best = std::max(static_cast<int>(std::ceil(row / step_)) * step_, earliest);
    const bool nothingLeft = best >= end || stopped_;
    parts_[index].position = nothingLeft ? end : earliest;
    return nothingLeft ? std::nullopt : std::optional(best);
}

bool RowShares::begin(int part, int row) {
    const auto index = static_cast<std::size_t>(part);
    const std::scoped_lock lock(mutex_);
    const bool isTaken = std::any_of(parts_.begin(), parts_.begin() + part, [row](const Part& above) {
        return above.reads && above.position > row;
    });
    if (isTaken || row >= endOf(index))
        return false;
    parts_[index] = {row, row, true};
    return true;
}

int RowShares::claim(int part, int most) {
    const auto index = static_cast<std::size_t>(part);
    const std::scoped_lock lock(mutex_);
    Part& claiming = parts_[index];
    if (stopped_ || !claiming.reads)
        return 0;
    const int count = std::min(most, endOf(index) - claiming.position);
    claiming.position += count;
    return count;
}

void RowShares::stop() {
    const std::scoped_lock lock(mutex_);
    stopped_ = true;
}

bool RowShares::isStopped() const {
    const std::scoped_lock lock(mutex_);
    return stopped_;
}

}  // namespace trimora::codecs
