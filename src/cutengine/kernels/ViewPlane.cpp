#include "cutengine/kernels/ViewPlane.h"

#include <algorithm>
#include <cstring>

namespace trimora::cutengine::kernels {
namespace {

constexpr std::size_t kPixelBytes = 4;

std::size_t bytesIn(int pixels) {
    return static_cast<std::size_t>(pixels) * kPixelBytes;
}

}  // namespace

void ViewPlane::moveToColumns(int x, int width) {
    for (StretchedRow& held : stretched_)
        held.row = -1;
    for (int i = 0; i < width; ++i) {
        const SamplePlace place = across_.at(x + i);
        const auto slot = static_cast<std::size_t>(i);
        indices_[slot] = static_cast<std::uint32_t>(place.index);
        std::fill_n(weights_.begin() + static_cast<std::ptrdiff_t>(kSharesPerPixel * slot), kSharesPerPixel,
                    place.weight);
    }
    reading_ = readingOf(width);
}

ViewPlane::Reading ViewPlane::readingOf(int width) const {
    int shortest = 1;
    int longest = 1;
    for (int i = 1; i < width; ++i) {
        const int step = indexOf(i) - indexOf(i - 1);
        shortest = std::min(shortest, step);
        longest = std::max(longest, step);
    }
    if (bitmap_.width < static_cast<int>(kGroupPixels) || longest > 2)
        return Reading::apart;
    if (shortest != 1 || longest != 1)
        return Reading::picked;
    const bool onPixels =
        std::all_of(weights_.begin(), weights_.begin() + static_cast<std::ptrdiff_t>(kSharesPerPixel) * width,
                    [](Share weight) { return weight == 0; });
    return onPixels ? Reading::aligned : Reading::run;
}

void ViewPlane::sample(int begin, int end, Sample* to) {
    const auto pixels = static_cast<std::size_t>(end - begin);
    const Sample* const top = stretchedRow(place_.index, begin, end);
    if (place_.weight == 0) {
        std::memcpy(to, top, kSamplesPerPixel * pixels * sizeof(Sample));
        return;
    }
    const Sample* const bottom = stretchedRow(down_.next(place_.index), begin, end);
    mixSamples(top, bottom, place_.weight, pixels, to);
}

void ViewPlane::draw(int begin, int end, std::uint8_t* to) {
    if (reading_ == Reading::aligned && place_.weight == 0) {
        std::memcpy(to, bitmap_.row(place_.index) + bytesIn(indexOf(begin)), bytesIn(end - begin));
        return;
    }
    const Sample* const top = stretchedRow(place_.index, begin, end);
    const Sample* const bottom = stretchedRow(down_.next(place_.index), begin, end);
    mixToBytes(top, bottom, place_.weight, static_cast<std::size_t>(end - begin), to);
}

/// Columns `begin` to `end` of one row of the bitmap interpolated across. Two neighbouring rows are held
/// at a time, so that going down the screen every row of the bitmap is done once.
const Sample* ViewPlane::stretchedRow(int row, int begin, int end) {
    StretchedRow& held = stretched_[static_cast<std::size_t>(row % 2)];
    const auto samplesAt = [&held](int column) {
        return held.samples.data() + kSamplesPerPixel * static_cast<std::size_t>(column);
    };
    if (held.row != row) {
        held.row = row;
        held.begin = begin;
        held.end = begin;
        fetchAhead(row + 2, begin, end);
    }
    if (begin < held.begin) {
        stretch(row, begin, held.begin, samplesAt(begin));
        held.begin = begin;
    }
    if (end > held.end) {
        stretch(row, held.end, end, samplesAt(held.end));
        held.end = end;
    }
    return samplesAt(begin);
}

void ViewPlane::stretch(int row, int begin, int end, Sample* to) {
    const std::uint8_t* const pixels = bitmap_.row(row);
    const auto first = static_cast<std::size_t>(begin);
    const auto count = static_cast<std::size_t>(end - begin);
    const Share* const weights = &weights_[kSharesPerPixel * first];
    switch (reading_) {
        case Reading::aligned:
        case Reading::run: {
            const std::uint8_t* const left = pixels + bytesIn(indexOf(begin));
            stretchRun(left, left + kPixelBytes, weights, count, to);
            break;
        }
        case Reading::picked:
            stretchPicked(pixels, static_cast<std::size_t>(bitmap_.width), &indices_[first], weights, count,
                          to);
            break;
        case Reading::apart:
            stretchApart(pixels, begin, end, to);
            break;
    }
}

void ViewPlane::stretchApart(const std::uint8_t* row, int begin, int end, Sample* to) {
    std::uint8_t* const lefts = sides_.data();
    std::uint8_t* const rights = lefts + bytesIn(kViewStripWidth);
    for (int i = begin; i < end; ++i) {
        std::memcpy(lefts + bytesIn(i - begin), row + bytesIn(indexOf(i)), kPixelBytes);
        std::memcpy(rights + bytesIn(i - begin), row + bytesIn(across_.next(indexOf(i))), kPixelBytes);
    }
    stretchRun(lefts, rights, &weights_[kSharesPerPixel * static_cast<std::size_t>(begin)],
               static_cast<std::size_t>(end - begin), to);
}

/// Asks for the part of a row that will be read soon. Rows of a large picture lie pages apart, where the
/// processor does not look ahead by itself.
void ViewPlane::fetchAhead(int row, int begin, int end) const {
    if (row >= bitmap_.height)
        return;
    constexpr std::size_t kCacheLine = 64;
    const std::size_t last = bytesIn(indexOf(end - 1) + 1);
    for (std::size_t at = bytesIn(indexOf(begin)); at < last; at += kCacheLine)
        __builtin_prefetch(bitmap_.row(row) + at);
}

}  // namespace trimora::cutengine::kernels
