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
    heldRows_ = {-1, -1};
    row_ = -1;
    firstColumn_ = across_.at(x).index;
    const auto columns = across_.next(across_.at(x + width - 1).index) - firstColumn_ + 1;
    for (auto& line : lines_)
        line.resize(static_cast<std::size_t>(columns));
    for (int i = 0; i < width; ++i) {
        const SamplePlace place = across_.at(x + i);
        const auto slot = static_cast<std::size_t>(i);
        left_[slot] = place.index - firstColumn_;
        right_[slot] = across_.next(place.index) - firstColumn_;
        weights_[slot] = real(place.weight);
    }
}

bool ViewMask::moveToRow(int y) {
    const SamplePlace place = down_.at(y);
    weight_ = real(place.weight);
    if (place.index == row_)
        return false;
    row_ = place.index;
    top_ = line(row_);
    bottom_ = line(down_.next(row_));
    return true;
}

Cover ViewMask::coverOf(int begin, int end) const {
    const int first = left_[static_cast<std::size_t>(begin)];
    const int count = right_[static_cast<std::size_t>(end) - 1] - first + 1;
    const std::uint8_t value = top_[first];
    const bool solid = (value == 0 || value == 255) && isConstant(top_ + first, count, value) &&
                       isConstant(bottom_ + first, count, value);
    if (!solid)
        return Cover::mixed;
    return value == 0 ? Cover::none : Cover::whole;
}

float ViewMask::at(int pixel) const {
    const auto i = static_cast<std::size_t>(pixel);
    const auto between = [](float from, float to, float weight) { return from + (to - from) * weight; };
    const float top = between(top_[left_[i]], top_[right_[i]], weights_[i]);
    const float bottom = between(bottom_[left_[i]], bottom_[right_[i]], weights_[i]);
    return between(top, bottom, weight_) * (1.0F / 255);
}

const std::uint8_t* ViewMask::line(int row) {
    const auto slot = static_cast<std::size_t>(row % 2);
    std::vector<std::uint8_t>& line = lines_[slot];
    if (heldRows_[slot] != row) {
        heldRows_[slot] = row;
        copyMaskRow(level_, firstColumn_, row, static_cast<int>(line.size()), line.data());
    }
    return line.data();
}

}  // namespace trimora::cutengine::kernels
