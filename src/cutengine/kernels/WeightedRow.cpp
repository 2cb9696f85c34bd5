#include "cutengine/kernels/WeightedRow.h"

// The code below the next line is compiled once for every instruction set.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/WeightedRow.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

void addWeighted(const std::uint8_t* bytes, float weight, std::size_t count, float* sums) {
    const hn::ScalableTag<float> reals;
    const hn::RebindToSigned<decltype(reals)> wholes;
    const hn::Rebind<std::uint8_t, decltype(reals)> narrow;
    const std::size_t lanes = hn::Lanes(reals);
    const auto weights = hn::Set(reals, weight);
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const auto values = hn::ConvertTo(reals, hn::PromoteTo(wholes, hn::LoadU(narrow, bytes + i)));
        hn::StoreU(hn::Add(hn::LoadU(reals, sums + i), hn::Mul(values, weights)), reals, sums + i);
    }
    for (; i < count; ++i)
        sums[i] += static_cast<float>(bytes[i]) * weight;
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {

HWY_EXPORT(addWeighted);

void addWeighted(const std::uint8_t* bytes, float weight, std::size_t count, float* sums) {
    HWY_DYNAMIC_DISPATCH(addWeighted)(bytes, weight, count, sums);
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
