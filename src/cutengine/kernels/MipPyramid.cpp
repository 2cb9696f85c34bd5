#include "cutengine/kernels/MipPyramid.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "cutengine/kernels/HalfRow.h"
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
            halveRows(from.row(2 * y), from.row(std::min(2 * y + 1, from.height - 1)), from.width, to.row(y));
    });
}

int sideOf(int side, int level) {
    return std::max(1, (side + (1 << level) - 1) >> level);
}

/// Makes rows of a level out of the rows of level 0 that they cover. One a band of rows.
class LevelRows {
 public:
    explicit LevelRows(BitmapView base) : base_(base) {}

    void make(int level, int y, std::uint8_t* to) {
        const int above = level - 1;
        const std::uint8_t* const top = row(above, 2 * y, 0);
        const std::uint8_t* const bottom =
            row(above, std::min(2 * y + 1, sideOf(base_.height, above) - 1), 1);
        halveRows(top, bottom, sideOf(base_.width, above), to);
    }

 private:
    const std::uint8_t* row(int level, int y, std::size_t slot) {
        if (level == 0)
            return base_.row(y);
        const auto room = static_cast<std::size_t>(level);
        if (rooms_.size() <= room)
            rooms_.resize(room + 1);
        std::vector<std::uint8_t>& made = rooms_[room][slot];
        made.resize(std::size_t{4} * static_cast<std::size_t>(sideOf(base_.width, level)));
        std::uint8_t* const to = made.data();
        make(level, y, to);
        return to;
    }

    BitmapView base_;
    std::vector<std::array<std::vector<std::uint8_t>, 2>> rooms_;  // two rows of each level between
};

}  // namespace

foundation::Result<Bitmap> mipLevel(BitmapView base, int index, foundation::Workers& workers) {
    auto level = Bitmap::create(sideOf(base.width, index), sideOf(base.height, index), base.alphaMode);
    if (!level)
        return level;
    const int bands = std::min(level->height(), 4 * workers.width());
    workers.run(bands, [&](int band) {
        const auto top = [&](int i) { return static_cast<int>(std::int64_t{i} * level->height() / bands); };
        LevelRows rows(base);
        for (int y = top(band); y < top(band + 1); ++y)
            rows.make(index, y, level->row(y));
    });
    return level;
}

MipPyramid MipPyramid::build(BitmapView base, foundation::Workers& workers) {
    MipPyramid made;
    made.base_ = base;
    made.addSmaller(workers);
    return made;
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

/// Each further level, down to one pixel.
void MipPyramid::addSmaller(foundation::Workers& workers) {
    BitmapView last = smaller_.empty() ? base_ : smaller_.back().view();
    while (last.width > 1 || last.height > 1) {
        auto next = Bitmap::create((last.width + 1) / 2, (last.height + 1) / 2, base_.alphaMode);
        if (!next) {
            foundation::log::warning("smaller copies of a picture are missing: %s",
                                     next.error().message.c_str());
            break;
        }
        halve(last, next->view(), workers);
        smaller_.push_back(std::move(next).value());
        last = smaller_.back().view();
    }
}

}  // namespace trimora::cutengine::kernels
