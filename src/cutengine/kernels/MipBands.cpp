#include "cutengine/kernels/MipBands.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "cutengine/kernels/HalfRow.h"

namespace trimora::cutengine::kernels {

using foundation::BitmapView;

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
    for (int y = first; y < end; y += kStep)
        addStep(y, std::min(y + kStep, end));
}

void MipBands::addStep(int first, int end) {
    BitmapView above = made_.base_;
    for (foundation::Bitmap& level : made_.smaller_) {
        first /= 2;
        end = (end + 1) / 2;
        for (int y = first; y < end; ++y)
            halveRows(above.row(2 * y), above.row(std::min(2 * y + 1, above.height - 1)), above.width,
                      level.row(y));
        above = level.view();
    }
}

MipPyramid MipBands::finished(foundation::Workers& workers) && {
    made_.addSmaller(workers);
    return std::move(made_);
}

}  // namespace trimora::cutengine::kernels
