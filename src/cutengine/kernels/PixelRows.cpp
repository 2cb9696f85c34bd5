#include "cutengine/kernels/PixelRows.h"

#include <algorithm>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/PixelRows.cpp"
#include "hwy/cache_control.h"
#include "hwy/foreach_target.h"  // compiles this file again for every target
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// A vector of pixels from any byte on.
template <class D>
HWY_INLINE hn::Vec<D> loadedPixels(D d, const std::uint8_t* from) {
#if HWY_TARGET == HWY_SCALAR
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, from, sizeof pixel);
    return hn::Set(d, pixel);
#else
    return hn::BitCast(d, hn::LoadU(hn::Repartition<std::uint8_t, D>(), from));
#endif
}

int differingImpl(const std::uint8_t* row, const std::uint8_t* other, int width, std::int32_t* places) {
    constexpr int kPixel = 4;
    constexpr int kLine = 16;                // pixels in a line of the cache
    constexpr std::ptrdiff_t kAhead = 8192;  // about a row: callers go down row by row
    const hn::ScalableTag<std::uint32_t> d;
    const hn::ScalableTag<std::int32_t> d32;
    const int lanes = static_cast<int>(hn::Lanes(d));
    const auto pixels = [&](const std::uint8_t* from, int x)
                            HWY_ATTR { return loadedPixels(d, from + kPixel * x); };
    int count = 0;
    int x = 0;
    for (; x + 4 * lanes <= width; x += 4 * lanes) {
        for (int i = 0; i < 4 * lanes; i += kLine)
            hwy::Prefetch(row + kPixel * (x + i) + kAhead);
        // Four vectors at a time: nearly always all of them are the same.
        auto differs = hn::Zero(d);
        for (int i = 0; i < 4 * lanes; i += lanes)
            differs = hn::Or(differs, hn::Xor(pixels(row, x + i), pixels(other, x + i)));
        if (hn::AllTrue(d, hn::Eq(differs, hn::Zero(d))))
            continue;
        for (int i = 0; i < 4 * lanes; i += lanes) {
            const auto same = hn::Eq(pixels(row, x + i), pixels(other, x + i));
            const auto place = hn::Add(hn::Iota(d32, 0), hn::Set(d32, x + i));
            count += static_cast<int>(
                hn::CompressStore(place, hn::RebindMask(d32, hn::Not(same)), d32, places + count));
        }
    }
    for (; x < width; ++x) {
        places[count] = x;
        count += std::memcmp(row + kPixel * x, other + kPixel * x, kPixel) != 0 ? 1 : 0;
    }
    return count;
}

// How many of `count` pixels lie before the first that begins a vector; all if none does.
HWY_INLINE int pixelsBeforeVector(const std::uint8_t* to, int count) {
    constexpr std::uintptr_t kPixel = 4;
    const std::uintptr_t vector = kPixel * hn::Lanes(hn::ScalableTag<std::uint32_t>());
    const std::uintptr_t misplaced = (vector - reinterpret_cast<std::uintptr_t>(to) % vector) % vector;
    return misplaced % kPixel != 0 ? count : std::min(count, static_cast<int>(misplaced / kPixel));
}

void streamImpl(const std::uint8_t* from, std::uint8_t* to, int count) {
    constexpr int kPixel = 4;
    const hn::ScalableTag<std::uint32_t> d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    int x = pixelsBeforeVector(to, count);
    std::memcpy(to, from, static_cast<std::size_t>(kPixel * x));
    for (; x + lanes <= count; x += lanes)
        hn::Stream(loadedPixels(d, from + kPixel * x), d, reinterpret_cast<std::uint32_t*>(to + kPixel * x));
    std::memcpy(to + kPixel * x, from + kPixel * x, static_cast<std::size_t>(kPixel * (count - x)));
}

void streamClearImpl(std::uint8_t* to, int count) {
    constexpr int kPixel = 4;
    const hn::ScalableTag<std::uint32_t> d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    int x = pixelsBeforeVector(to, count);
    std::memset(to, 0, static_cast<std::size_t>(kPixel * x));
    for (; x + lanes <= count; x += lanes)
        hn::Stream(hn::Zero(d), d, reinterpret_cast<std::uint32_t*>(to + kPixel * x));
    std::memset(to + kPixel * x, 0, static_cast<std::size_t>(kPixel * (count - x)));
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {

HWY_EXPORT(differingImpl);
HWY_EXPORT(streamImpl);
HWY_EXPORT(streamClearImpl);

int differingPixels(const std::uint8_t* row, const std::uint8_t* other, int width, std::int32_t* places) {
    return HWY_DYNAMIC_DISPATCH(differingImpl)(row, other, width, places);
}

void streamPixels(const std::uint8_t* from, std::uint8_t* to, int count) {
    HWY_DYNAMIC_DISPATCH(streamImpl)(from, to, count);
}

void streamClear(std::uint8_t* to, int count) {
    HWY_DYNAMIC_DISPATCH(streamClearImpl)(to, count);
}

void endStreaming() {
    hwy::FlushStream();
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
