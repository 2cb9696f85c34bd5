// Mixing stamps into pixels, for the sources that are compiled once for every kind of SIMD unit.

#include <cstdint>

#include "hwy/highway.h"

#if defined(TRIMORA_MIXED_PIXELS_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TRIMORA_MIXED_PIXELS_INL
#undef TRIMORA_MIXED_PIXELS_INL
#else
#define TRIMORA_MIXED_PIXELS_INL
#endif

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR

// The four components of a pixel, 16 bits each: all are mixed at once.
constexpr std::uint64_t kComponents = 0x00FF00FF00FF00FF;

HWY_INLINE std::uint64_t spread(std::uint32_t pixel) {
    const std::uint64_t halves = (pixel | std::uint64_t{pixel} << 16) & 0x0000FFFF0000FFFF;
    return (halves | halves << 8) & kComponents;
}

HWY_INLINE std::uint32_t joined(std::uint64_t components) {
    const std::uint64_t halves = (components | components >> 8) & 0x0000FFFF0000FFFF;
    return static_cast<std::uint32_t>(halves | halves >> 16);
}

// round((old (255 - cover) + fill cover) / 255), component by component.
HWY_INLINE std::uint64_t mixed(std::uint64_t old, std::uint64_t fill, std::uint32_t cover) {
    constexpr std::uint64_t kHalf = 0x0080008000800080;
    const std::uint64_t sum = old * (255 - cover) + (fill * cover + kHalf);
    return ((sum + (sum >> 8 & kComponents)) >> 8) & kComponents;
}

// A vector of pixels while stamps are mixed into it.
template <class D>
class MixedPixels {
 public:
    MixedPixels(D d, hn::Vec<D> pixels, std::uint32_t fill)
        : pixel_(spread(hn::GetLane(pixels))), fill_(spread(fill)) {
        (void)d;
    }
    template <class V>
    void mix(V cover) {
        pixel_ = mixed(pixel_, fill_, static_cast<std::uint32_t>(hn::GetLane(cover)));
    }
    [[nodiscard]] hn::Vec<D> pixels(D d) const { return hn::Set(d, joined(pixel_)); }

 private:
    std::uint64_t pixel_;
    std::uint64_t fill_;
};

#else

// Every second component of a vector of pixels, 16 bits each, while stamps are mixed into them. A sum
// old (255 - c) + fill c, at most 255 x 255, is divided by 255 and rounded exactly.
template <class D16>
struct MixedComponents {
    hn::Vec<D16> values, fill;

    HWY_INLINE void mix(D16 d, hn::Vec<D16> cover, hn::Vec<D16> rest) {
        const auto added = hn::Add(hn::Mul(fill, cover), hn::Set(d, 128));
        const auto biased = hn::Add(hn::Mul(values, rest), added);
        values = hn::ShiftRight<8>(hn::Add(biased, hn::ShiftRight<8>(biased)));
    }
};

// A vector of pixels while stamps are mixed into it. In a mask blue and red are the same everywhere, in
// pixels and fill: they are left alone where that is so.
template <class D>
class MixedPixels {
 public:
    HWY_INLINE MixedPixels(D d, hn::Vec<D> pixels, std::uint32_t fill)
        : even_{evenOf(d, pixels), evenOf(d, hn::Set(d, fill))},
          odd_{oddOf(d, pixels), oddOf(d, hn::Set(d, fill))},
          hasEven_(!hn::AllTrue(D16(), hn::Eq(even_.values, even_.fill))) {}

    template <class V>
    HWY_INLINE void mix(V cover) {
        const D16 d;
        const auto both = hn::BitCast(d, hn::Or(cover, hn::ShiftLeft<16>(cover)));
        const auto rest = hn::Sub(hn::Set(d, 255), both);
        odd_.mix(d, both, rest);
        if (hasEven_)
            even_.mix(d, both, rest);
    }
    [[nodiscard]] HWY_INLINE hn::Vec<D> pixels(D d) const {
        return hn::BitCast(d, hn::Or(even_.values, hn::ShiftLeft<8>(odd_.values)));
    }

 private:
    using D16 = hn::Repartition<std::uint16_t, D>;
    static HWY_INLINE hn::Vec<D16> evenOf(D, hn::Vec<D> pixels) {
        return hn::And(hn::BitCast(D16(), pixels), hn::Set(D16(), 0x00FF));
    }
    static HWY_INLINE hn::Vec<D16> oddOf(D, hn::Vec<D> pixels) {
        return hn::ShiftRight<8>(hn::BitCast(D16(), pixels));
    }

    MixedComponents<D16> even_, odd_;
    bool hasEven_;
};

#endif

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif  // TRIMORA_MIXED_PIXELS_INL
