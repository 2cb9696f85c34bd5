#pragma once

#include <cstdint>
#include <vector>

namespace trimora::cutengine::kernels {

/// Where the pixels of a stretched line lie on the line that it is stretched from, pixel centres on
/// pixel centres: pixel i of `to` lies at ((i + 1/2) from / to) - 1/2, kept within 0 .. from - 1 and
/// rounded to the nearest 4096th.
class Stretch {
 public:
    static constexpr unsigned kWeightBits = 12;
    static constexpr std::uint32_t kOne = 1U << kWeightBits;

    /// A place between sample `index` and the one after it, of which `weight` 4096ths count; at the
    /// last sample the weight is 0, so the one after it is never needed.
    struct Place {
        int index;
        std::uint32_t weight;
    };

    Stretch() = default;
    Stretch(int from, int to) : from_(from) {
        places_.reserve(static_cast<std::size_t>(to));
        const std::int64_t last = std::int64_t{from - 1} << kWeightBits;
        for (std::int64_t i = 0; i < to; ++i) {
            const std::int64_t doubled = ((2 * i + 1) * from - to) * kOne;  // of the place, times 2 to
            const std::int64_t rounded = doubled <= 0 ? 0 : (doubled + to) / (2 * std::int64_t{to});
            places_.push_back(static_cast<std::uint32_t>(rounded < last ? rounded : last));
        }
    }

    [[nodiscard]] Place at(int i) const {
        const std::uint32_t place = places_[static_cast<std::size_t>(i)];
        return {static_cast<int>(place >> kWeightBits), place & (kOne - 1)};
    }

    /// The sample after `index`, or the last again.
    [[nodiscard]] int next(int index) const { return index + 1 < from_ ? index + 1 : index; }

 private:
    int from_ = 0;
    std::vector<std::uint32_t> places_;
};

}  // namespace trimora::cutengine::kernels
