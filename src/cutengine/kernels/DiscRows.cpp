#include "cutengine/kernels/DiscRows.h"

#include <algorithm>

// The code below the next line is compiled once for every instruction set.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/DiscRows.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

void splitRow(const std::uint8_t* pixels, int count, const DiscPlanes& planes) {
    const hn::ScalableTag<std::uint8_t> bytes;
    const hn::RebindToSigned<decltype(bytes)> centred;
    const auto middle = hn::Set(bytes, 0x80);
    const int lanes = static_cast<int>(hn::Lanes(bytes));
    const auto put = [&](auto values, std::int8_t* to)
                         HWY_ATTR { hn::StoreU(hn::BitCast(centred, hn::Xor(values, middle)), centred, to); };
    int x = 0;
    for (; x + lanes <= count; x += lanes) {
        auto blue = hn::Zero(bytes);
        auto green = blue;
        auto red = blue;
        auto alpha = blue;
        hn::LoadInterleaved4(bytes, pixels + 4 * x, blue, green, red, alpha);
        put(blue, planes[0] + x);
        put(green, planes[1] + x);
        put(red, planes[2] + x);
        put(alpha, planes[3] + x);
    }
    for (; x < count; ++x) {
        for (std::size_t i = 0; i < planes.size(); ++i)
            planes[i][x] = static_cast<std::int8_t>(pixels[4 * static_cast<std::size_t>(x) + i] - 128);
    }
}

void joinRow(const std::array<const std::uint8_t*, 4>& planes, std::uint8_t* pixels, int count) {
    const hn::ScalableTag<std::uint8_t> bytes;
    const int lanes = static_cast<int>(hn::Lanes(bytes));
    int x = 0;
    for (; x + lanes <= count; x += lanes)
        hn::StoreInterleaved4(hn::LoadU(bytes, planes[0] + x), hn::LoadU(bytes, planes[1] + x),
                              hn::LoadU(bytes, planes[2] + x), hn::LoadU(bytes, planes[3] + x), bytes,
                              pixels + 4 * x);
    for (; x < count; ++x) {
        for (std::size_t i = 0; i < planes.size(); ++i)
            pixels[4 * static_cast<std::size_t>(x) + i] = planes[i][x];
    }
}

/// Adds 16-bit changes to their 32-bit sums.
void addChanges(const std::int16_t* changes, std::size_t count, std::int32_t* sums) {
    const hn::ScalableTag<std::int32_t> wide;
    const hn::Rebind<std::int16_t, decltype(wide)> narrow;
    for (std::size_t i = 0; i < count; i += hn::Lanes(wide)) {
        const auto change = hn::PromoteTo(wide, hn::LoadU(narrow, changes + i));
        hn::StoreU(hn::Add(hn::LoadU(wide, sums + i), change), wide, sums + i);
    }
}

/// Moves as many neighbouring discs down one row as one vector of 16-bit numbers holds, or four of them.
template <bool kFour>
void slideSomeDiscs(const std::int8_t* row, const DiscArcs& arcs, std::int32_t* sums) {
    const hn::ScalableTag<std::int16_t> narrow;
    const hn::Rebind<std::int8_t, decltype(narrow)> bytes;
    const std::size_t lanes = hn::Lanes(narrow);
    // 128 differences of two bytes are 128 x 255 in size at most, which 16 bits hold.
    constexpr std::size_t kTermsThatFit = 128;

    for (std::size_t begin = 0; begin < arcs.entering.size(); begin += kTermsThatFit) {
        const std::size_t end = std::min(begin + kTermsThatFit, arcs.entering.size());
        auto change0 = hn::Zero(narrow);
        auto change1 = change0;
        auto change2 = change0;
        auto change3 = change0;
        for (std::size_t i = begin; i < end; ++i) {
            const std::int8_t* const in = row + arcs.entering[i];
            const std::int8_t* const out = row + arcs.leaving[i];
            const auto difference = [&](std::size_t at) HWY_ATTR {
                return hn::Sub(hn::PromoteTo(narrow, hn::LoadU(bytes, in + at)),
                               hn::PromoteTo(narrow, hn::LoadU(bytes, out + at)));
            };
            change0 = hn::Add(change0, difference(0));
            if constexpr (kFour) {
                change1 = hn::Add(change1, difference(lanes));
                change2 = hn::Add(change2, difference(2 * lanes));
                change3 = hn::Add(change3, difference(3 * lanes));
            }
        }
        HWY_ALIGN std::int16_t changes[4 * HWY_MAX_BYTES / sizeof(std::int16_t)];
        hn::Store(change0, narrow, changes);
        if constexpr (kFour) {
            hn::Store(change1, narrow, changes + lanes);
            hn::Store(change2, narrow, changes + 2 * lanes);
            hn::Store(change3, narrow, changes + 3 * lanes);
        }
        addChanges(changes, (kFour ? 4 : 1) * lanes, sums);
    }
}

void slideDiscs(const std::int8_t* row, const DiscArcs& arcs, std::int32_t* sums, int width) {
    const hn::ScalableTag<std::int16_t> narrow;
    const std::size_t lanes = hn::Lanes(narrow);
    const auto discs = static_cast<std::size_t>(width);
    std::size_t x = 0;
    for (; x + 4 * lanes <= discs; x += 4 * lanes)
        slideSomeDiscs<true>(row + x, arcs, sums + x);
    for (; x < discs; x += lanes)
        slideSomeDiscs<false>(row + x, arcs, sums + x);
}

void meansOfSums(const std::int32_t* sums, std::int32_t count, std::uint8_t* means, int width) {
    const hn::ScalableTag<std::int32_t> whole;
    const hn::RebindToFloat<decltype(whole)> real;
    const hn::Rebind<std::uint8_t, decltype(whole)> bytes;
    const auto share = hn::Set(real, 1.0F / static_cast<float>(count));
    const auto divisor = hn::Set(whole, count);
    const auto middle = hn::Set(whole, 128);
    const int lanes = static_cast<int>(hn::Lanes(whole));
    for (int x = 0; x < width; x += lanes) {
        // The quotient in floating point is off by less than 1/1000 before it is rounded, so the whole
        // number is off by one at most; what is left over tells which way.
        const auto sum = hn::LoadU(whole, sums + x);
        const auto guess = hn::NearestInt(hn::Mul(hn::ConvertTo(real, sum), share));
        const auto left = hn::Sub(sum, hn::Mul(guess, divisor));
        const auto twice = hn::Add(left, left);
        const auto tooSmall = hn::VecFromMask(whole, hn::Gt(twice, divisor));
        const auto tooLarge = hn::VecFromMask(whole, hn::Gt(hn::Neg(divisor), twice));
        const auto mean = hn::Add(hn::Sub(guess, tooSmall), tooLarge);
        hn::StoreU(hn::DemoteTo(bytes, hn::Add(mean, middle)), bytes, means + x);
    }
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {

HWY_EXPORT(splitRow);
HWY_EXPORT(joinRow);
HWY_EXPORT(slideDiscs);
HWY_EXPORT(meansOfSums);

void splitRow(const std::uint8_t* pixels, int count, const DiscPlanes& planes) {
    HWY_DYNAMIC_DISPATCH(splitRow)(pixels, count, planes);
}

void joinRow(const std::array<const std::uint8_t*, 4>& planes, std::uint8_t* pixels, int count) {
    HWY_DYNAMIC_DISPATCH(joinRow)(planes, pixels, count);
}

void slideDiscs(const std::int8_t* row, const DiscArcs& arcs, std::int32_t* sums, int width) {
    HWY_DYNAMIC_DISPATCH(slideDiscs)(row, arcs, sums, width);
}

void meansOfSums(const std::int32_t* sums, std::int32_t count, std::uint8_t* means, int width) {
    HWY_DYNAMIC_DISPATCH(meansOfSums)(sums, count, means, width);
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
