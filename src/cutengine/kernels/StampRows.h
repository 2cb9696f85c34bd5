#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "cutengine/kernels/StampCoverage.h"
#include "cutengine/kernels/StampMethod.h"
#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"

/// Painting stamps into the plane pixel by pixel: inner part of StrokePainter.h, apart from it because
/// the source is compiled once for every kind of SIMD unit; the best that the processor has is chosen
/// at run time. All kinds give the same bytes.
namespace trimora::cutengine::kernels {

/// What the stamps of one call have in common.
struct StampPaint {
    std::uint32_t fill = 0;  ///< the premultiplied pixel as it lies in memory
    double solid = 1;        ///< the share of the radius within which coverage is full; 1 for hard stamps
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

    /// Whether the stamp may be added: there is room, and it lies close to the one before. All stamps
    /// of a batch are hard, or all are soft.
    [[nodiscard]] bool takes(const StampEllipse& stamp) const;
    void add(const StampEllipse& stamp, double solid);
    void clear();

    // For exact coverage. Zero beyond the last stamp.
    alignas(64) Values<double> cx{}, cy{}, perRx{}, perRy{};
    alignas(64) Values<double> scale{};  ///< rx ry, in 255ths
    std::vector<SoftStamp> soft;         ///< empty for hard stamps

    // For a quick look at who touches what: float is enough there.
    double originX = 0, originY = 0;
    alignas(64) Values<float> x{}, y{};     ///< of the centre, from the origin
    alignas(64) Values<float> steepness{};  ///< rx / ry
    alignas(64) Values<float> reach{};      ///< rx^2 and a bit

 private:
    std::size_t count_ = 0;
    StampEllipse last_;
};

/// Paints every stamp of the batch, in order, rounding after each; `bounds` holds every pixel of the
/// plane that they touch. A pixel that holds `fill` already is not looked at: no stamp changes it.
void paintBatch(foundation::MutableBitmapView plane, const StampBatch& batch,
                const foundation::IntRect& bounds, const StampPaint& paint);

}  // namespace trimora::cutengine::kernels
