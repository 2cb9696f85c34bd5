#include "cutengine/kernels/HalfRow.h"

#include <cstring>

// The code below the next line is compiled once for every instruction set.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/HalfRow.cpp"
#include "hwy/cache_control.h"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// Two rows of pixels, one a word.
struct PixelRows {
    const std::uint32_t* top = nullptr;
    const std::uint32_t* bottom = nullptr;
};
struct KeptRows {
    std::uint32_t* top = nullptr;
    std::uint32_t* bottom = nullptr;
};

HWY_INLINE PixelRows pixelRows(const std::uint8_t* top, const std::uint8_t* bottom) {
    return {reinterpret_cast<const std::uint32_t*>(top), reinterpret_cast<const std::uint32_t*>(bottom)};
}

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

/// What is done with the rows besides halving them.
enum class Besides : std::uint8_t { nothing, fetching, keeping };

/// Whole vectors of a row; returns how many pixels it made.
template <Besides kBesides>
HWY_INLINE int halveVectors(const PixelRows& from, int pairs, const KeptRows& kept, std::size_t ahead,
                            std::uint32_t* to) {
    const hn::ScalableTag<std::uint32_t> pixels;
    const int lanes = static_cast<int>(hn::Lanes(pixels));
    int x = 0;
    for (; x + lanes <= pairs; x += lanes) {
        const int left = 2 * x;
        const int right = left + lanes;
        for (const int at : {left, right}) {
            if constexpr (kBesides == Besides::fetching) {
                hwy::Prefetch(from.top + ahead + at);
                hwy::Prefetch(from.bottom + ahead + at);
            }
            if constexpr (kBesides == Besides::keeping) {
                hn::Stream(hn::LoadU(pixels, from.top + at), pixels, kept.top + at);
                hn::Stream(hn::LoadU(pixels, from.bottom + at), pixels, kept.bottom + at);
            }
        }
        auto a = hn::Zero(pixels);
        auto b = a;
        auto c = a;
        auto d = a;
        hn::LoadInterleaved2(pixels, from.top + left, a, b);
        hn::LoadInterleaved2(pixels, from.bottom + left, c, d);
        hn::StoreU(meanOfFour(pixels, a, b, c, d), pixels, to + x);
    }
    return x;
}

/// The pixels from `x` on.
HWY_INLINE void halveRest(const PixelRows& from, int x, int width, std::uint32_t* to) {
    const hn::CappedTag<std::uint32_t, 1> one;
    for (; x < (width + 1) / 2; ++x) {
        const int right = 2 * x + 1 < width ? 2 * x + 1 : 2 * x;
        const auto at = [&](const std::uint32_t* row, int column)
                            HWY_ATTR { return hn::Set(one, row[column]); };
        const auto mean = meanOfFour(one, at(from.top, 2 * x), at(from.top, right), at(from.bottom, 2 * x),
                                     at(from.bottom, right));
        to[x] = hn::GetLane(mean);
    }
}

void halveRows(const std::uint8_t* top, const std::uint8_t* bottom, int width, std::uint8_t* half,
               std::size_t ahead) {
    const PixelRows from = pixelRows(top, bottom);
    auto* const to = reinterpret_cast<std::uint32_t*>(half);
    const int made =
        ahead == 0 ? halveVectors<Besides::nothing>(from, width / 2, {}, 0, to)
                   : halveVectors<Besides::fetching>(from, width / 2, {}, ahead / sizeof(std::uint32_t), to);
    halveRest(from, made, width, to);
}

void keepAndHalveRows(const std::uint8_t* top, const std::uint8_t* bottom, int width, std::uint8_t* keptTop,
                      std::uint8_t* keptBottom, std::uint8_t* half) {
    const PixelRows from = pixelRows(top, bottom);
    auto* const to = reinterpret_cast<std::uint32_t*>(half);
    const KeptRows kept{reinterpret_cast<std::uint32_t*>(keptTop),
                        reinterpret_cast<std::uint32_t*>(keptBottom)};
    const int made = halveVectors<Besides::keeping>(from, width / 2, kept, 0, to);
    hwy::FlushStream();
    halveRest(from, made, width, to);
    const std::size_t done = std::size_t{8} * static_cast<std::size_t>(made);
    const std::size_t left = std::size_t{4} * static_cast<std::size_t>(width) - done;
    std::memcpy(keptTop + done, top + done, left);
    std::memcpy(keptBottom + done, bottom + done, left);
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {

HWY_EXPORT(halveRows);
HWY_EXPORT(keepAndHalveRows);

void halveRows(const std::uint8_t* top, const std::uint8_t* bottom, int width, std::uint8_t* half,
               std::size_t ahead) {
    HWY_DYNAMIC_DISPATCH(halveRows)(top, bottom, width, half, ahead);
}

void keepAndHalveRows(const std::uint8_t* top, const std::uint8_t* bottom, int width, std::uint8_t* keptTop,
                      std::uint8_t* keptBottom, std::uint8_t* half) {
    HWY_DYNAMIC_DISPATCH(keepAndHalveRows)(top, bottom, width, keptTop, keptBottom, half);
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
