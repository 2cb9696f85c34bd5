#include "codecs/WideRows.h"

#include <algorithm>

#include "codecs/Bands.h"
#include "codecs/PixelRows.h"

namespace trimora::codecs {
namespace {

constexpr int kRowsPerPart = 8;

}  // namespace

WideRows::WideRows(foundation::MutableBitmapView target, const ColourProfile* profile,
                   foundation::Workers& workers, int rowsHeld)
    : target_(target),
      profile_(profile),
      workers_(workers),
      samplesPerRow_(static_cast<std::size_t>(target.width) * 4),
      rowsHeld_(std::min(rowsHeld, target.height)),
      samples_(samplesPerRow_ * static_cast<std::size_t>(rowsHeld_)) {}

std::uint16_t* WideRows::row(int y) {
    while (y >= first_ + rowsHeld_)
        flush();
    end_ = std::max(end_, y + 1);
    return samples_.data() + samplesPerRow_ * static_cast<std::size_t>(y - first_);
}

void WideRows::flush() {
    const int end = std::min(end_, target_.height);
    inBands(workers_, std::max(end - first_, 0), kRowsPerPart, [&](int top, int bottom) {
        for (int y = first_ + top; y < first_ + bottom; ++y)
            pass(y);
    });
    first_ += rowsHeld_;
    std::fill(samples_.begin(), samples_.end(), std::uint16_t{0});
}

void WideRows::pass(int y) {
    const std::uint16_t* const from = samples_.data() + samplesPerRow_ * static_cast<std::size_t>(y - first_);
    const auto count = static_cast<std::size_t>(target_.width);
    if (profile_ == nullptr) {
        narrowRgba(from, target_.row(y), count);
        return;
    }
    profile_->apply(from, target_.row(y), count);
    narrowAlpha(from, target_.row(y), count);
}

}  // namespace trimora::codecs
