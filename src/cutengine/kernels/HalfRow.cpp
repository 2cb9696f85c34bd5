#include "cutengine/kernels/HalfRow.h"

// The code below the next line is compiled once for every instruction set.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/HalfRow.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// The means of four pixels a lane. Two components at a time stand in the halves of a 32-bit lane,
/// where four bytes and the rounding fit with room to spare.
template <class Tag, class V>
HWY_INLINE V meanOfFour(Tag pixels, V a, V b, V c, V d) {
    const auto evenBytes = hn::Set(pixels, 0x00FF00FFU);
    const auto rounding = hn::Set(pixels, 0x00020002U);
    const auto sum = [&](V first, V second, V third, V fourth) HWY_ATTR {
        const auto left = hn::Add(hn::And(first, evenBytes), hn::And(second, evenBytes));
        const auto right = hn::Add(hn::And(third, evenBytes), hn::And(fourth, evenBytes));
        return hn::And(hn::ShiftRight<2>(hn::Add(hn::Add(left, right), rounding)), evenBytes);
    };
    const auto even = sum(a, b, c, d);
    const auto odd =
        sum(hn::ShiftRight<8>(a), hn::ShiftRight<8>(b), hn::ShiftRight<8>(c), hn::ShiftRight<8>(d));
    return hn::Or(even, hn::ShiftLeft<8>(odd));
}

void halveRows(const std::uint8_t* top, const std::uint8_t* bottom, int width, std::uint8_t* half) {
    const hn::ScalableTag<std::uint32_t> pixels;
    const auto* const above = reinterpret_cast<const std::uint32_t*>(top);
    const auto* const below = reinterpret_cast<const std::uint32_t*>(bottom);
    auto* const to = reinterpret_cast<std::uint32_t*>(half);
    const int lanes = static_cast<int>(hn::Lanes(pixels));
    const int pairs = width / 2;
    int x = 0;
    for (; x + lanes <= pairs; x += lanes) {
        auto a = hn::Zero(pixels);
        auto b = a;
        auto c = a;
        auto d = a;
        hn::LoadInterleaved2(pixels, above + 2 * x, a, b);
        hn::LoadInterleaved2(pixels, below + 2 * x, c, d);
        hn::StoreU(meanOfFour(pixels, a, b, c, d), pixels, to + x);
    }
    const hn::CappedTag<std::uint32_t, 1> one;
    for (; x < (width + 1) / 2; ++x) {
        const int right = 2 * x + 1 < width ? 2 * x + 1 : 2 * x;
        const auto at = [&](const std::uint32_t* row, int column)
                            HWY_ATTR { return hn::Set(one, row[column]); };
        const auto mean =
            meanOfFour(one, at(above, 2 * x), at(above, right), at(below, 2 * x), at(below, right));
        to[x] = hn::GetLane(mean);
    }
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {

HWY_EXPORT(halveRows);

void halveRows(const std::uint8_t* top, const std::uint8_t* bottom, int width, std::uint8_t* half) {
    HWY_DYNAMIC_DISPATCH(halveRows)(top, bottom, width, half);
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
