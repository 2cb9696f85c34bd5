#include "cutengine/kernels/MipPyramid.h"

#include <algorithm>
#include <utility>

#include "cutengine/kernels/HalfRow.h"
#include "cutengine/kernels/MipBands.h"
#include "foundation/Log.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::Bitmap;
using foundation::BitmapView;
using foundation::MutableBitmapView;

/// Fewer rows than this are not worth handing to another core.
constexpr int kSmallestBand = 64;

/// Of rows whose picture is nowhere whole: many enough that the first of a blur's rows cost little.
constexpr int kBytesAtOnce = 32 << 20;

void halve(BitmapView from, MutableBitmapView to, foundation::Workers& workers) {
    const int bands = std::clamp(to.height / kSmallestBand, 1, 4 * workers.width());
    workers.run(bands, [&](int band) {
        const auto top = [&](int index) { return static_cast<int>(std::int64_t{index} * to.height / bands); };
        for (int y = top(band); y < top(band + 1); ++y)
            halveInto(to, y, from);
    });
}

}  // namespace

MipPyramid MipPyramid::build(BitmapView base, foundation::Workers& workers) {
    MipBands bands(base);
    const int steps = (base.height + MipBands::kStep - 1) / MipBands::kStep;
    const int shares = std::clamp(base.height / kSmallestBand, 1, 4 * workers.width());
    workers.run(shares, [&](int share) {
        const auto top = [&](int index) {
            const auto step = static_cast<int>(std::int64_t{index} * steps / shares);
            return std::min(step * MipBands::kStep, base.height);
        };
        bands.add(top(share), top(share + 1));
    });
    return std::move(bands).finished(workers);
}

MipPyramid MipPyramid::buildWithoutBase(int width, int height, foundation::AlphaMode alphaMode,
                                        const RowMaker& makeRows, foundation::Workers& workers) {
    const int atOnce = 2 * std::clamp(kBytesAtOnce / (8 * width), 1, (height + 1) / 2);
    auto rows = Bitmap::create(width, std::min(atOnce, height), alphaMode);
    auto half = Bitmap::create((width + 1) / 2, (height + 1) / 2, alphaMode);
    if (!rows || !half)
        return {};
    for (int y = 0; y < height; y += atOnce) {
        const MutableBitmapView made = subview(rows->view(), {0, 0, width, std::min(atOnce, height - y)});
        makeRows(y, made);
        halve(made, subview(half->view(), {0, y / 2, half->width(), (made.height + 1) / 2}), workers);
    }
    MipPyramid pyramid;
    pyramid.base_ = BitmapView(nullptr, width, height, 0, alphaMode);
    pyramid.smaller_.push_back(std::move(half).value());
    pyramid.addSmaller(workers);
    return pyramid;
}

void MipPyramid::addSmaller(foundation::Workers& workers) {
    for (BitmapView last = smallest(); addLevel(); last = smallest())
        halve(last, smaller_.back().view(), workers);
}

BitmapView MipPyramid::smallest() const {
    return smaller_.empty() ? base_ : smaller_.back().view();
}

bool MipPyramid::addLevel() {
    const BitmapView last = smallest();
    if (last.width <= 1 && last.height <= 1)
        return false;
    auto next = Bitmap::create((last.width + 1) / 2, (last.height + 1) / 2, base_.alphaMode);
    if (!next) {
        foundation::log::warning("smaller copies of a picture are missing: %s", next.error().message.c_str());
        return false;
    }
    smaller_.push_back(std::move(next).value());
    return true;
}

}  // namespace trimora::cutengine::kernels
