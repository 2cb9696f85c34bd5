#include "cutengine/kernels/ViewPlane.h"

#include <algorithm>
#include <cstring>

namespace trimora::cutengine::kernels {
namespace {

constexpr std::size_t kPixelBytes = 4;

std::size_t samplesIn(int pixels) {
    return static_cast<std::size_t>(pixels) * kPixelBytes;
}

}  // namespace

void ViewPlane::moveToColumns(int x, int width) {
    width_ = width;
    heldRows_ = {-1, -1};
    contiguous_ = true;
    for (int i = 0; i < width; ++i) {
        const SamplePlace place = across_.at(x + i);
        indices_[static_cast<std::size_t>(i)] = place.index;
        std::fill_n(weights_.begin() + static_cast<std::ptrdiff_t>(samplesIn(i)), kPixelBytes, place.weight);
        contiguous_ = contiguous_ && place.index == indices_[0] + i;
    }
}

void ViewPlane::sample(int begin, int end, Sample* to) {
    const Sample* const top = stretchedRow(place_.index) + samplesIn(begin);
    if (place_.weight == 0) {
        std::memcpy(to, top, samplesIn(end - begin) * sizeof(Sample));
        return;
    }
    const Sample* const bottom = stretchedRow(down_.next(place_.index)) + samplesIn(begin);
    mixSamples(top, bottom, place_.weight, samplesIn(end - begin), to);
}

const std::uint8_t* ViewPlane::exactPixels(int begin) const {
    if (!contiguous_ || place_.weight != 0 || weights_[0] != 0)
        return nullptr;
    return bitmap_.row(place_.index) + samplesIn(indices_[0] + begin);
}

/// One row of the bitmap interpolated across. Two neighbouring rows are held at a time, so that going
/// down the screen every row of the bitmap is done once.
const Sample* ViewPlane::stretchedRow(int row) {
    const auto slot = static_cast<std::size_t>(row % 2);
    Sample* const to = stretched_[slot].data();
    if (heldRows_[slot] == row)
        return to;
    heldRows_[slot] = row;
    if (contiguous_) {
        const std::uint8_t* const left = bitmap_.row(row) + samplesIn(indices_[0]);
        stretchSamples(left, left + kPixelBytes, weights_.data(), samplesIn(width_), to);
    } else {
        gather(row);
        stretchSamples(left_.data(), right_.data(), weights_.data(), samplesIn(width_), to);
    }
    return to;
}

void ViewPlane::gather(int row) {
    const std::uint8_t* const pixels = bitmap_.row(row);
    const std::size_t next = bitmap_.width > 1 ? kPixelBytes : 0;
    for (int i = 0; i < width_; ++i) {
        const std::uint8_t* const pixel = pixels + samplesIn(indices_[static_cast<std::size_t>(i)]);
        std::memcpy(left_.data() + samplesIn(i), pixel, kPixelBytes);
        std::memcpy(right_.data() + samplesIn(i), pixel + next, kPixelBytes);
    }
}

}  // namespace trimora::cutengine::kernels
