#include "cutengine/kernels/MipPyramid.h"

#include <algorithm>

#include "cutengine/kernels/HalfRow.h"
#include "foundation/Log.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::Bitmap;
using foundation::BitmapView;
using foundation::MutableBitmapView;

/// Fewer rows than this are not worth handing to another core.
constexpr int kSmallestBand = 64;

void halve(BitmapView from, MutableBitmapView to, foundation::Workers& workers) {
    const int bands = std::clamp(to.height / kSmallestBand, 1, 4 * workers.width());
    workers.run(bands, [&](int band) {
        const auto top = [&](int index) { return static_cast<int>(std::int64_t{index} * to.height / bands); };
        for (int y = top(band); y < top(band + 1); ++y)
            halveRows(from.row(2 * y), from.row(std::min(2 * y + 1, from.height - 1)), from.width, to.row(y));
    });
}

}  // namespace

MipPyramid MipPyramid::build(BitmapView base, foundation::Workers& workers) {
    MipPyramid made;
    made.base_ = base;
    BitmapView last = base;
    while (last.width > 1 || last.height > 1) {
        auto next = Bitmap::create((last.width + 1) / 2, (last.height + 1) / 2, base.alphaMode);
        if (!next) {
            foundation::log::warning("smaller copies of a picture are missing: %s",
                                     next.error().message.c_str());
            break;
        }
        halve(last, next->view(), workers);
        made.smaller_.push_back(std::move(next).value());
        last = made.smaller_.back().view();
    }
    return made;
}

}  // namespace trimora::cutengine::kernels
