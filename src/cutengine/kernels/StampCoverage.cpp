#include "cutengine/kernels/StampCoverage.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cutengine/kernels/StampCoverage.cpp"
#include "hwy/foreach_target.h"  // compiles this file again for every target
//
#include "cutengine/kernels/StampCoverage-inl.h"

HWY_BEFORE_NAMESPACE();
namespace trimora::cutengine::kernels::HWY_NAMESPACE {

void coverageImpl(const StampEllipse& ellipse, double solid, int x, int y, int count,
                  std::uint8_t* coverage) {
    const hn::ScalableTag<std::int32_t> d;
    const bool hard = solid >= 1;
    const SoftStamp soft = hard ? SoftStamp() : SoftStamp(ellipse, solid);
    const int step = hard ? kBlock : static_cast<int>(hn::Lanes(d));
    HWY_ALIGN std::int32_t covers[kBlock + kMostLanes];
    for (int i = 0; i < count; i += step) {
        const int size = std::min(step, count - i);
        if (hard)
            layeredCover(ellipse, 1, 1, y, x + i, size, covers);
        else
            hn::Store(softCover(d, soft, y, x + i), d, covers);
        std::copy(covers, covers + size, coverage + i);
    }
}

}  // namespace trimora::cutengine::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace trimora::cutengine::kernels {

HWY_EXPORT(coverageImpl);

void stampCoverage(const StampEllipse& ellipse, double solid, int x, int y, int count,
                   std::uint8_t* coverage) {
    HWY_DYNAMIC_DISPATCH(coverageImpl)(ellipse, solid, x, y, count, coverage);
}

}  // namespace trimora::cutengine::kernels
#endif  // HWY_ONCE
