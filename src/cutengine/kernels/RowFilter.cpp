#include "cutengine/kernels/RowFilter.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/RowFilter.cpp"
#include "hwy/foreach_target.h"  // compiles this file again for every target
#include "hwy/highway.h"

#ifndef TRIMORA_ROW_FILTER_ONCE
#define TRIMORA_ROW_FILTER_ONCE
namespace trimora::cutengine::kernels {
namespace {

constexpr std::size_t kPixel = 4;
// Costs are taken from every fourth piece of a row: neighbours are alike.
constexpr std::size_t kCostPiece = 64;
constexpr std::size_t kCostStep = 4 * kCostPiece;

int guess(RowFilter filter, int left, int above, int aboveLeft) {
    switch (filter) {
        case RowFilter::none:
            return 0;
        case RowFilter::sub:
            return left;
        case RowFilter::up:
            return above;
        case RowFilter::average:
            return (left + above) / 2;
        case RowFilter::paeth:
            break;
    }
    const int toLeft = std::abs(above - aboveLeft);
    const int toAbove = std::abs(left - aboveLeft);
    const int toAboveLeft = std::abs(left + above - 2 * aboveLeft);
    const int leftOrAbove = toLeft <= toAbove ? left : above;
    return std::min(toLeft, toAbove) <= toAboveLeft ? leftOrAbove : aboveLeft;
}

// Byte by byte: of a row too short for a piece, all.
[[maybe_unused]] std::array<std::uint32_t, kRowFilters> plainCosts(const std::uint8_t* row,
                                                                   const std::uint8_t* above,
                                                                   std::size_t size) {
    std::array<std::uint32_t, kRowFilters> costs{};
    for (std::size_t piece = 0; piece == 0 || piece + kCostPiece <= size; piece += kCostStep) {
        for (std::size_t i = piece; i < std::min(piece + kCostPiece, size); ++i) {
            for (std::size_t filter = 0; filter < kRowFilters; ++filter) {
                const auto difference = static_cast<std::uint8_t>(
                    row[i] -
                    guess(static_cast<RowFilter>(filter), (row - kPixel)[i], above[i], (above - kPixel)[i]));
                costs[filter] += std::min<std::uint32_t>(difference, 256U - difference);
            }
        }
    }
    return costs;
}

/// The pixel at `from` in the order B,G,R,A; the alpha of one that has none is any.
std::uint32_t filePixel(const std::uint8_t* from) {
    std::uint32_t value = 0;
    std::memcpy(&value, from, sizeof value);
    return (value & 0xFF00FF00U) | (value >> 16 & 0xFFU) | (value & 0xFFU) << 16;
}

constexpr std::uint32_t kOpaque = 0xFF000000U;

}  // namespace
}  // namespace trimora::cutengine::kernels
#endif

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

template <class V>
V distance(V a, V b) {
    return hn::Or(hn::SaturatedSub(a, b), hn::SaturatedSub(b, a));
}

// a >= b
template <class V>
auto atLeast(V a, V b) {
    return hn::Eq(hn::Max(a, b), a);
}

template <class V>
struct Neighbours {
    V left;
    V above;
    V aboveLeft;
};

struct GuessNone {
    template <class V>
    V operator()(const Neighbours<V>& near) const {
        return hn::Xor(near.left, near.left);
    }
};
struct GuessLeft {
    template <class V>
    V operator()(const Neighbours<V>& near) const {
        return near.left;
    }
};
struct GuessAbove {
    template <class V>
    V operator()(const Neighbours<V>& near) const {
        return near.above;
    }
};
struct GuessAverage {
    template <class V>
    V operator()(const Neighbours<V>& near) const {
        // The instruction rounds up.
        const auto one = hn::Set(hn::DFromV<V>(), std::uint8_t{1});
        return hn::Sub(hn::AverageRound(near.left, near.above), hn::And(hn::Xor(near.left, near.above), one));
    }
};
// left + above - 2 * aboveLeft is the sum of two differences whose sizes are known: where both point the
// same way it is as large as both together, else as their difference. A sum beyond 255 stays larger than
// either, which is all that is asked of it.
struct GuessPaeth {
    template <class V>
    V operator()(const Neighbours<V>& near) const {
        const V toLeft = distance(near.above, near.aboveLeft);
        const V toAbove = distance(near.left, near.aboveLeft);
        const auto sameWay =
            hn::Not(hn::Xor(atLeast(near.above, near.aboveLeft), atLeast(near.left, near.aboveLeft)));
        const V toAboveLeft =
            hn::IfThenElse(sameWay, hn::SaturatedAdd(toLeft, toAbove), distance(toLeft, toAbove));
        const V leftOrAbove = hn::IfThenElse(atLeast(toAbove, toLeft), near.left, near.above);
        return hn::IfThenElse(atLeast(toAboveLeft, hn::Min(toLeft, toAbove)), leftOrAbove, near.aboveLeft);
    }
};

template <class D>
Neighbours<hn::Vec<D>> neighboursAt(D d, const std::uint8_t* row, const std::uint8_t* above, std::size_t at) {
    return {hn::LoadU(d, row + at - kPixel), hn::LoadU(d, above + at), hn::LoadU(d, above + at - kPixel)};
}

template <class Guess>
void filterWith(RowFilter filter, const Guess& guessOf, const std::uint8_t* row, const std::uint8_t* above,
                std::size_t size, std::uint8_t* to) {
    const hn::ScalableTag<std::uint8_t> d;
    const std::size_t lanes = hn::Lanes(d);
    std::size_t i = 0;
    for (; i + lanes <= size; i += lanes)
        hn::StoreU(hn::Sub(hn::LoadU(d, row + i), guessOf(neighboursAt(d, row, above, i))), d, to + i);
    for (; i < size; ++i)
        to[i] = static_cast<std::uint8_t>(row[i] -
                                          guess(filter, (row - kPixel)[i], above[i], (above - kPixel)[i]));
}

void filterImpl(RowFilter filter, const std::uint8_t* row, const std::uint8_t* above, std::size_t size,
                std::uint8_t* to) {
    switch (filter) {
        case RowFilter::none:
            return filterWith(filter, GuessNone(), row, above, size, to);
        case RowFilter::sub:
            return filterWith(filter, GuessLeft(), row, above, size, to);
        case RowFilter::up:
            return filterWith(filter, GuessAbove(), row, above, size, to);
        case RowFilter::average:
            return filterWith(filter, GuessAverage(), row, above, size, to);
        case RowFilter::paeth:
            return filterWith(filter, GuessPaeth(), row, above, size, to);
    }
}

#if HWY_TARGET == HWY_SCALAR

void costsImpl(const std::uint8_t* row, const std::uint8_t* above, std::size_t size,
               std::array<std::uint32_t, kRowFilters>& costs) {
    costs = plainCosts(row, above, size);
}

#else

// The sum of the distances from 0 of one vector of differences, a part of it in each 64-bit lane.
template <class V>
auto sizesOf(V differences) {
    const V negated = hn::Sub(hn::Xor(differences, differences), differences);
    return hn::SumsOf8(hn::Min(differences, negated));
}

void costsImpl(const std::uint8_t* row, const std::uint8_t* above, std::size_t size,
               std::array<std::uint32_t, kRowFilters>& costs) {
    const hn::CappedTag<std::uint8_t, kCostPiece> d;
    const hn::Repartition<std::uint64_t, decltype(d)> d64;
    auto none = hn::Zero(d64);
    auto sub = none;
    auto up = none;
    auto average = none;
    auto paeth = none;
    for (std::size_t piece = 0; piece + kCostPiece <= size; piece += kCostStep) {
        for (std::size_t i = piece; i < piece + kCostPiece; i += hn::Lanes(d)) {
            const auto values = hn::LoadU(d, row + i);
            const auto near = neighboursAt(d, row, above, i);
            none = hn::Add(none, sizesOf(values));
            sub = hn::Add(sub, sizesOf(hn::Sub(values, near.left)));
            up = hn::Add(up, sizesOf(hn::Sub(values, near.above)));
            average = hn::Add(average, sizesOf(hn::Sub(values, GuessAverage()(near))));
            paeth = hn::Add(paeth, sizesOf(hn::Sub(values, GuessPaeth()(near))));
        }
    }
    std::size_t at = 0;
    for (const auto& each : {none, sub, up, average, paeth})
        costs[at++] = static_cast<std::uint32_t>(hn::GetLane(hn::SumOfLanes(d64, each)));
}

#endif

// Pixel by pixel: each waits for the one before it. The bytes of a pixel are worked on at once.
#if HWY_TARGET == HWY_SCALAR

template <FilePixel kind>
void unfilterImpl(RowFilter filter, const std::uint8_t* from, const std::uint8_t* above, std::size_t pixels,
                  std::uint8_t* to) {
    std::array<int, kPixel> left{};
    std::array<int, kPixel> aboveLeft{};
    for (std::size_t i = 0; i < pixels;
         ++i, from += static_cast<std::size_t>(kind), above += kPixel, to += kPixel) {
        const std::uint32_t difference = filePixel(from);
        std::uint32_t pixel = 0;
        for (std::size_t k = 0; k < kPixel; ++k) {
            left[k] =
                (static_cast<int>(difference >> (8 * k)) + guess(filter, left[k], above[k], aboveLeft[k])) &
                255;
            aboveLeft[k] = above[k];
            pixel |= static_cast<std::uint32_t>(left[k]) << (8 * k);
        }
        pixel |= kind == FilePixel::rgb ? kOpaque : 0;
        std::memcpy(to, &pixel, sizeof pixel);
    }
}

#else

template <FilePixel kind, class Guess>
void unfilterWith(const Guess& guessOf, const std::uint8_t* from, const std::uint8_t* above,
                  std::size_t pixels, std::uint8_t* to) {
    const hn::FixedTag<std::uint8_t, kPixel> d;
    const hn::FixedTag<std::uint32_t, 1> d32;
    const auto opaque = hn::BitCast(d, hn::Set(d32, kind == FilePixel::rgb ? kOpaque : 0U));
    auto left = hn::Zero(d);
    auto aboveLeft = left;
    for (std::size_t i = 0; i < pixels; ++i) {
        const auto difference = hn::BitCast(d, hn::Set(d32, filePixel(from)));
        const auto over = hn::LoadU(d, above + i * kPixel);
        left = hn::Add(difference, guessOf(Neighbours<decltype(left)>{left, over, aboveLeft}));
        aboveLeft = over;
        hn::StoreU(hn::Or(left, opaque), d, to + i * kPixel);
        from += static_cast<std::size_t>(kind);
    }
}

template <FilePixel kind>
void unfilterImpl(RowFilter filter, const std::uint8_t* from, const std::uint8_t* above, std::size_t pixels,
                  std::uint8_t* to) {
    switch (filter) {
        case RowFilter::none:
            return unfilterWith<kind>(GuessNone(), from, above, pixels, to);
        case RowFilter::sub:
            return unfilterWith<kind>(GuessLeft(), from, above, pixels, to);
        case RowFilter::up:
            return unfilterWith<kind>(GuessAbove(), from, above, pixels, to);
        case RowFilter::average:
            return unfilterWith<kind>(GuessAverage(), from, above, pixels, to);
        case RowFilter::paeth:
            return unfilterWith<kind>(GuessPaeth(), from, above, pixels, to);
    }
}

#endif

void unfilterRgbImpl(RowFilter filter, const std::uint8_t* from, const std::uint8_t* above,
                     std::size_t pixels, std::uint8_t* to) {
    unfilterImpl<FilePixel::rgb>(filter, from, above, pixels, to);
}

void unfilterRgbaImpl(RowFilter filter, const std::uint8_t* from, const std::uint8_t* above,
                      std::size_t pixels, std::uint8_t* to) {
    unfilterImpl<FilePixel::rgba>(filter, from, above, pixels, to);
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {

HWY_EXPORT(filterImpl);
HWY_EXPORT(costsImpl);
HWY_EXPORT(unfilterRgbImpl);
HWY_EXPORT(unfilterRgbaImpl);

std::array<std::uint32_t, kRowFilters> filterCosts(const std::uint8_t* row, const std::uint8_t* above,
                                                   std::size_t size) {
    if (size < kCostPiece)
        return plainCosts(row, above, size);
    std::array<std::uint32_t, kRowFilters> costs{};
    HWY_DYNAMIC_DISPATCH(costsImpl)(row, above, size, costs);
    return costs;
}

void filterRow(RowFilter filter, const std::uint8_t* row, const std::uint8_t* above, std::size_t size,
               std::uint8_t* to) {
    HWY_DYNAMIC_DISPATCH(filterImpl)(filter, row, above, size, to);
}

void unfilterRow(RowFilter filter, const std::uint8_t* from, FilePixel kind, const std::uint8_t* above,
                 std::size_t pixels, std::uint8_t* to) {
    if (kind == FilePixel::rgb)
        HWY_DYNAMIC_DISPATCH(unfilterRgbImpl)(filter, from, above, pixels, to);
    else
        HWY_DYNAMIC_DISPATCH(unfilterRgbaImpl)(filter, from, above, pixels, to);
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
