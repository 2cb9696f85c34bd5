#include "cutengine/kernels/MipBands.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "cutengine/kernels/HalfRow.h"

namespace trimora::cutengine::kernels {

using foundation::BitmapView;
using foundation::MutableBitmapView;

namespace {

/// A step is one row of the last of them.
constexpr int kLevelsOfAStep = 3;
static_assert(MipBands::kStep == 1 << kLevelsOfAStep);

}  // namespace

MipBands::MipBands(BitmapView base) {
    made_.base_ = base;
    for (int level = 0; level < kLevelsOfAStep && made_.addLevel(); ++level) {
    }
}

void MipBands::add(int first, int end) {
    assert(first % kStep == 0 && (end % kStep == 0 || end == made_.base_.height));
    if (made_.smaller_.empty())
        return;
    const BitmapView base = made_.base_;
    const MutableBitmapView half = made_.smaller_.front().view();
    for (int step = first; step < end; step += kStep) {
        const int stepEnd = std::min(step + kStep, end);
        for (int y = step; y < stepEnd; y += 2) {
            const bool fetches = y + 3 < end;
            halveRows(base.row(y), base.row(std::min(y + 1, stepEnd - 1)), base.width, half.row(y / 2),
                      fetches ? 2 * base.stride : 0);
        }
        addBelowHalf(step / 2, (stepEnd + 1) / 2);
    }
}

void MipBands::take(BitmapView rows, int first, MutableBitmapView base) {
    assert(first % kStep == 0 && (rows.height % kStep == 0 || first + rows.height == base.height));
    if (made_.smaller_.empty()) {
        copyPixels(rows, subview(base, {0, first, rows.width, rows.height}));
        return;
    }
    const MutableBitmapView half = made_.smaller_.front().view();
    for (int y = 0; y < rows.height; y += 2) {
        const int next = std::min(y + 1, rows.height - 1);
        keepAndHalveRows(rows.row(y), rows.row(next), rows.width, base.row(first + y), base.row(first + next),
                         half.row((first + y) / 2));
    }
    addBelowHalf(first / 2, (first + rows.height + 1) / 2);
}

/// The rows of the second and third level that rows `first` to `end` of the first cover.
void MipBands::addBelowHalf(int first, int end) {
    for (std::size_t index = 1; index < made_.smaller_.size(); ++index) {
        const BitmapView above = made_.smaller_[index - 1].view();
        const MutableBitmapView level = made_.smaller_[index].view();
        first /= 2;
        end = (end + 1) / 2;
        for (int y = first; y < end; ++y)
            halveInto(level, y, above);
    }
}

MipPyramid MipBands::finished(foundation::Workers& workers) && {
    made_.addSmaller(workers);
    return std::move(made_);
}

}  // namespace trimora::cutengine::kernels
