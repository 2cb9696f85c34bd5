#include "cutengine/kernels/ViewMask.h"

#include <cmath>

#include "cutengine/kernels/MaskRow.h"

namespace trimora::cutengine::kernels {
namespace {

float real(Share weight) {
    return static_cast<float>(weight) / 32768;
}

}  // namespace

void ViewMask::moveToColumns(int x, int width) {
    blocks_ = width / kViewBlockWidth;
    row_ = -1;
    firstColumn_ = across_.at(x).index;
    const auto columns = across_.next(across_.at(x + width - 1).index) - firstColumn_ + 1;
    for (Line& line : lines_) {
        line.row = -1;
        line.values.resize(static_cast<std::size_t>(columns));
    }
    for (int i = 0; i < width; ++i) {
        const SamplePlace place = across_.at(x + i);
        const auto slot = static_cast<std::size_t>(i);
        left_[slot] = place.index - firstColumn_;
        weights_[slot] = real(place.weight);
    }
}

bool ViewMask::moveToRow(int y) {
    const SamplePlace place = down_.at(y);
    weight_ = real(place.weight);
    if (place.index == row_)
        return false;
    row_ = place.index;
    top_ = lineOf(row_);
    bottom_ = lineOf(down_.next(row_));
    return true;
}

void ViewMask::findShares(int begin, int end, const float* columnCoverage, float rowCoverage, Share* shares) {
    const auto first = static_cast<std::size_t>(begin) * kViewBlockWidth;
    const std::size_t count = static_cast<std::size_t>(end - begin) * kViewBlockWidth;
    const std::uint8_t* const top = top_->values.data();
    const std::uint8_t* const bottom = bottom_->values.data();
    const int next = across_.next(0);  // 0 in a mask of one column, whose only value stands for both
    for (std::size_t i = first; i < first + count; ++i) {
        const int left = left_[i];
        const int right = left + next;
        quads_[i] = static_cast<std::uint32_t>(top[left] | top[right] << 8 | bottom[left] << 16) |
                    static_cast<std::uint32_t>(bottom[right]) << 24;
    }
    maskShares({&quads_[first], &weights_[first], weight_, columnCoverage + first, rowCoverage}, count,
               shares);
}

const ViewMask::Line* ViewMask::lineOf(int row) {
    Line& line = lines_[static_cast<std::size_t>(row % 2)];
    if (line.row != row) {
        line.row = row;
        copyMaskRow(level_, firstColumn_, row, static_cast<int>(line.values.size()), line.values.data());
        findCovers(line);
    }
    return &line;
}

void ViewMask::findCovers(Line& line) const {
    const auto coverOfColumns = [&line](int first, int count) {
        const std::uint8_t* const values = line.values.data() + first;
        if ((*values != 0 && *values != 255) || !isConstant(values, count, *values))
            return Cover::mixed;
        return *values == 0 ? Cover::none : Cover::whole;
    };
    const Cover all = coverOfColumns(0, static_cast<int>(line.values.size()));
    line.covers.fill(all);
    for (int block = 0; all == Cover::mixed && block < blocks_; ++block) {
        const auto begin = static_cast<std::size_t>(block * kViewBlockWidth);
        const int first = left_[begin];
        const int last = left_[begin + kViewBlockWidth - 1] + across_.next(0);
        line.covers[static_cast<std::size_t>(block)] = coverOfColumns(first, last - first + 1);
    }
}

}  // namespace trimora::cutengine::kernels
