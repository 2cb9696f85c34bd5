#include "cutengine/kernels/MaskSnapshot.h"

#include <algorithm>

namespace trimora::cutengine::kernels {
namespace {

constexpr int kSide = MaskSnapshot::kTileSide;

template <typename AlphaAt>
MaskSnapshot::Level makeLevel(int width, int height, const AlphaAt& alphaAt) {
    MaskSnapshot::Level level{width, height, (width + kSide - 1) / kSide, {}};
    for (int top = 0; top < height; top += kSide) {
        for (int left = 0; left < width; left += kSide) {
            auto tile = std::make_shared<MaskSnapshot::Tile>();
            for (int y = 0; y < kSide; ++y) {
                for (int x = 0; x < kSide; ++x)
                    tile->alpha[static_cast<std::size_t>(y * kSide + x)] =
                        alphaAt(std::min(left + x, width - 1), std::min(top + y, height - 1));
            }
            level.tiles.push_back(std::move(tile));
        }
    }
    return level;
}

std::uint8_t meanBelow(const MaskSnapshot::Level& level, int x, int y) {
    const int right = std::min(2 * x + 1, level.width - 1);
    const int bottom = std::min(2 * y + 1, level.height - 1);
    return static_cast<std::uint8_t>((level.alphaAt(2 * x, 2 * y) + level.alphaAt(right, 2 * y) +
                                      level.alphaAt(2 * x, bottom) + level.alphaAt(right, bottom) + 2) /
                                     4);
}

}  // namespace

MaskSnapshotPtr MaskSnapshotter::take(foundation::BitmapView plane, const foundation::IntRect& /*changed*/) {
    auto made = std::make_shared<MaskSnapshot>();
    made->levels_.push_back(
        makeLevel(plane.width, plane.height, [&](int x, int y) { return plane.row(y)[4 * x + 3]; }));
    while (made->width() > 1 || made->height() > 1) {
        const MaskSnapshot::Level& last = made->levels_.back();
        if (last.width == 1 && last.height == 1)
            break;
        auto next = makeLevel((last.width + 1) / 2, (last.height + 1) / 2,
                              [&](int x, int y) { return meanBelow(last, x, y); });
        made->levels_.push_back(std::move(next));
    }
    last_ = made;
    return made;
}

}  // namespace trimora::cutengine::kernels
