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
    aligned_ = true;
    for (int i = 0; i < width; ++i) {
        const SamplePlace place = across_.at(x + i);
        indices_[static_cast<std::size_t>(i)] = place.index;
        std::fill_n(weights_.begin() + static_cast<std::ptrdiff_t>(samplesIn(i)), kPixelBytes, place.weight);
        contiguous_ = contiguous_ && place.index == indices_[0] + i;
        aligned_ = aligned_ && contiguous_ && place.weight == 0;
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

void ViewPlane::draw(int begin, int end, std::uint8_t* to) {
    const std::size_t count = samplesIn(end - begin);
    if (aligned_ && place_.weight == 0) {
        std::memcpy(to, bitmap_.row(place_.index) + samplesIn(indices_[0] + begin), count);
        return;
    }
    const Sample* const top = stretchedRow(place_.index) + samplesIn(begin);
    const Sample* const bottom = stretchedRow(down_.next(place_.index)) + samplesIn(begin);
    mixToBytes(top, bottom, place_.weight, count, to);
}

/// One row of the bitmap interpolated across. Two neighbouring rows are held at a time, so that going
/// down the screen every row of the bitmap is done once.
const Sample* ViewPlane::stretchedRow(int row) {
    const auto slot = static_cast<std::size_t>(row % 2);
    Sample* const to = stretched_[slot].data();
    if (heldRows_[slot] == row)
        return to;
    heldRows_[slot] = row;
    fetchAhead(row + 2);
    if (contiguous_) {
        const std::uint8_t* const left = bitmap_.row(row) + samplesIn(indices_[0]);
        stretchSamples(left, left + kPixelBytes, weights_.data(), samplesIn(width_), to);
    } else {
        gatherPairs(row);
        stretchPairs(pairs_.data(), weights_.data(), samplesIn(width_), to);
    }
    return to;
}

/// Asks for the part of a row that the strip will read soon. Rows of a large picture lie pages apart,
/// where the processor does not look ahead by itself.
void ViewPlane::fetchAhead(int row) const {
    if (row >= bitmap_.height)
        return;
    constexpr std::size_t kCacheLine = 64;
    const std::size_t end = samplesIn(indices_[static_cast<std::size_t>(width_) - 1] + 1);
    for (std::size_t at = samplesIn(indices_[0]); at < end; at += kCacheLine)
        __builtin_prefetch(bitmap_.row(row) + at);
}

void ViewPlane::gatherPairs(int row) {
    const std::uint8_t* const pixels = bitmap_.row(row);
    std::uint8_t* to = pairs_.data();
    if (bitmap_.width == 1) {
        for (int i = 0; i < 2 * width_; ++i, to += kPixelBytes)
            std::memcpy(to, pixels, kPixelBytes);
        return;
    }
    for (int i = 0; i < width_; ++i, to += 2 * kPixelBytes)
        std::memcpy(to, pixels + samplesIn(indices_[static_cast<std::size_t>(i)]), 2 * kPixelBytes);
}

}  // namespace trimora::cutengine::kernels
