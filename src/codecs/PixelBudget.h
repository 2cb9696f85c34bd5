#pragma once

#include <cstdint>
#include <optional>

#include "foundation/Result.h"

namespace trimora::codecs {

/// How many pixels a picture file may hold, all its bitmaps together. Asked before anything is allocated.
class PixelBudget {
 public:
    explicit PixelBudget(std::uint64_t pixels) : pixels_(pixels) {}

    /// What the free memory allows now: a picture costs at most 16 bytes a pixel from opening to saving,
    /// and a quarter of the free memory is left to others. 24 GiB, most of it free, give about a
    /// thousand megapixels.
    [[nodiscard]] static PixelBudget fromFreeMemory();

    [[nodiscard]] std::uint64_t pixels() const { return pixels_; }

    /// Nothing where a bitmap of this size may be made, else why not, naming the limit. The sides must
    /// also be between 1 and foundation::Bitmap::kMaxSide.
    [[nodiscard]] std::optional<foundation::Error> refusal(std::uint64_t width, std::uint64_t height) const;

    /// As refusal(), for the sum of the pixels of several bitmaps.
    [[nodiscard]] std::optional<foundation::Error> refusal(std::uint64_t pixels) const;

 private:
    std::uint64_t pixels_;
};

}  // namespace trimora::codecs
