#pragma once

#include <cstdint>
#include <vector>

#include "cutengine/kernels/MaskSnapshot.h"
#include "cutengine/kernels/Stretch.h"

namespace trimora::cutengine::kernels {

/// Pixels `begin` to `end` (not included) of a row.
struct Span {
    int begin;
    int end;
};

/// The mask stretched over a picture, row by row: which stretches of a row are wholly shown or wholly
/// cut away, and the coverage of each pixel in between.
///
/// Level and stretches are borrowed. One for each band of rows; not shared between threads.
class StretchedMask {
 public:
    struct Run {
        Span pixels;
        std::uint8_t value;  ///< 255 or 0
    };

    /// `across` and `down` lead from the level to the picture, which is `width` pixels wide.
    StretchedMask(const MaskSnapshot::Level& level, const Stretch& across, const Stretch& down, int width);

    /// Moves to picture row `y`. Before the first call nothing else may be asked.
    void moveTo(int y);

    /// The stretches of one value that are long enough to be worth it, left to right.
    [[nodiscard]] const std::vector<Run>& runs() const { return runs_; }

    /// The mask at pixel x, in 65536ths of a level.
    [[nodiscard]] std::uint32_t coverageAt(int x) const {
        const Stretch::Place place = across_.at(x);
        const std::uint32_t left = columnAt(place.index);
        const std::uint32_t right = columnAt(across_.next(place.index));
        const std::uint32_t exact = left * (Stretch::kOne - place.weight) + right * place.weight;
        return (exact + 128) >> 8;
    }

 private:
    [[nodiscard]] std::uint32_t columnAt(int column) const {
        const auto i = static_cast<std::size_t>(column);
        return top_[i] * (Stretch::kOne - weight_) + bottom_[i] * weight_;
    }

    void findRuns();
    void addRun(int begin, int end, std::uint8_t value);
    [[nodiscard]] int endOfRun(int column, std::uint8_t value) const;
    [[nodiscard]] int firstPixelFrom(int column) const;

    const MaskSnapshot::Level& level_;
    const Stretch& across_;
    const Stretch& down_;
    int width_;
    int row_ = -1;              ///< row of the level in top_; the one after it is in bottom_
    std::uint32_t weight_ = 0;  ///< of bottom_, in 4096ths
    std::vector<std::uint8_t> top_;
    std::vector<std::uint8_t> bottom_;
    std::vector<Run> runs_;
};

}  // namespace trimora::cutengine::kernels
