#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "cutengine/kernels/StampCoverage.h"
#include "cutengine/kernels/StampMethod.h"
#include "foundation/Geometry.h"

/// Stamps as the row painter reads them: inner part of StrokePainter.h.
namespace trimora::cutengine::kernels {

/// What some stamps reach over.
class StampExtent {
 public:
    StampExtent() = default;
    explicit StampExtent(std::span<const StampEllipse> stamps);

    /// Every pixel that they touch in a plane of this size.
    [[nodiscard]] foundation::IntRect within(int width, int height) const;

 private:
    static constexpr double kFar = std::numeric_limits<double>::max();
    double left_ = kFar;
    double top_ = kFar;
    double right_ = -kFar;
    double bottom_ = -kFar;
};

/// What round stamps of one radius have in common.
struct RoundStamps {
    /// In a smaller disc the arc over a pixel bends too much for `segment`, in a much larger one a float
    /// cannot tell.
    static constexpr double kLeast = 3;
    static constexpr double kMost = 4096;

    double squared = 0;                 ///< of the radius; 0 for stamps of which this does not speak
    std::array<float, 4> segment = {};  ///< the segment of chord L has L^3 times this polynomial in L^2

    RoundStamps() = default;
    explicit RoundStamps(double radius);
};

/// A few stamps of one stroke, in order, as the row painter reads them: each thing that it looks at
/// stands side by side for whole vectors, with room for one more of the widest.
class StampBatch {
 public:
    static constexpr std::size_t kMost = 128;
    static constexpr std::size_t kRoom = kMost + 64;
    template <typename T>
    using Values = std::array<T, kRoom>;

    [[nodiscard]] std::size_t count() const { return count_; }
    [[nodiscard]] const StampExtent& extent() const { return extent_; }

    /// Holds the first of `stamps` in place of what it held, as many as there is room for and lie close
    /// together, at least one, and returns how many. `stamps` has one or more.
    std::size_t take(std::span<const StampEllipse> stamps, double solid);

    // For exact coverage.
    alignas(64) Values<double> cx{}, cy{}, perRx{}, perRy{};
    alignas(64) Values<double> scale{};  ///< rx ry, in 255ths
    std::vector<SoftStamp> soft;         ///< empty for hard stamps
    RoundStamps round;                   ///< set if all stamps are round and of the same size

    // For a quick look at who touches what: float is enough there.
    double originX = 0, originY = 0;
    alignas(64) Values<float> x{}, y{};     ///< of the centre, from the origin
    alignas(64) Values<float> steepness{};  ///< rx / ry
    alignas(64) Values<float> reach{};      ///< rx^2 and a bit; 0 beyond the last stamp

 private:
    void takePlaces(std::span<const StampEllipse> stamps);
    void takeSizes(std::span<const StampEllipse> stamps);

    std::size_t count_ = 0;
    StampExtent extent_;
};

}  // namespace trimora::cutengine::kernels
