#include "cutengine/kernels/MaskSnapshot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::Bitmap;
using foundation::IntRect;
using foundation::Pixel;
using Level = MaskSnapshot::Level;

Bitmap noisePlane(int width, int height, std::mt19937_64& random) {
    Bitmap plane = std::move(Bitmap::create(width, height)).value();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            plane.setPixel(x, y, Pixel{0, 0, 0, static_cast<std::uint8_t>(random())});
    }
    return plane;
}

void scribble(Bitmap& plane, const IntRect& area, std::mt19937_64& random) {
    for (int y = area.y; y < area.bottom(); ++y) {
        for (int x = area.x; x < area.right(); ++x)
            plane.setPixel(x, y, Pixel{0, 0, 0, static_cast<std::uint8_t>(random())});
    }
}

// A rectangle that may reach beyond the plane.
IntRect randomRect(int width, int height, std::mt19937_64& random) {
    const auto upTo = [&](int most) { return std::uniform_int_distribution(0, most)(random); };
    return {upTo(width + 10) - 10, upTo(height + 10) - 10, 1 + upTo(width / 2), 1 + upTo(height / 2)};
}

int meanAbove(const Level& above, int x, int y) {
    int sum = 0;
    int count = 0;
    for (int j = 2 * y; j < std::min(2 * y + 2, above.height); ++j) {
        for (int i = 2 * x; i < std::min(2 * x + 2, above.width); ++i) {
            sum += above.alphaAt(i, j);
            ++count;
        }
    }
    return (2 * sum + count) / (2 * count);
}

void expectTrueToPlane(const MaskSnapshot& snapshot, const Bitmap& plane) {
    const Level& whole = snapshot.levels().front();
    for (int y = 0; y < plane.height(); ++y) {
        for (int x = 0; x < plane.width(); ++x)
            ASSERT_EQ(whole.alphaAt(x, y), plane.pixel(x, y).alpha) << x << ' ' << y;
    }
    for (std::size_t k = 1; k < snapshot.levels().size(); ++k) {
        const Level& level = snapshot.levels()[k];
        for (int y = 0; y < level.height; ++y) {
            for (int x = 0; x < level.width; ++x)
                ASSERT_EQ(level.alphaAt(x, y), meanAbove(snapshot.levels()[k - 1], x, y))
                    << k << ' ' << x << ' ' << y;
        }
    }
}

void expectEdgesRepeated(const MaskSnapshot& snapshot) {
    for (const Level& level : snapshot.levels()) {
        const int across = level.tilesAcross * MaskSnapshot::kTileSide;
        const int down = static_cast<int>(level.tiles.size()) / level.tilesAcross * MaskSnapshot::kTileSide;
        for (int y = 0; y < down; ++y) {
            for (int x = 0; x < across; ++x)
                ASSERT_EQ(level.alphaAt(x, y),
                          level.alphaAt(std::min(x, level.width - 1), std::min(y, level.height - 1)));
        }
    }
}

TEST(MaskSnapshot, isTrueToThePlaneAfterRandomChanges) {
    auto random = testing::seededGenerator();
    for (const auto& [width, height] :
         {std::pair{300, 200}, {1, 1}, {129, 257}, {1000, 1}, {128, 256}, {77, 131}}) {
        Bitmap plane = noisePlane(width, height, random);
        MaskSnapshotter snapshotter;
        MaskSnapshotPtr snapshot = snapshotter.take(plane.view(), {});
        expectTrueToPlane(*snapshot, plane);
        for (int k = 0; k < 12; ++k) {
            const IntRect area = randomRect(width, height, random);
            scribble(plane, intersected(area, plane.view().bounds()), random);
            snapshot = snapshotter.take(plane.view(), area);
        }
        expectTrueToPlane(*snapshot, plane);
        expectEdgesRepeated(*snapshot);
    }
}

void expectRowsSummedUp(const MaskSnapshot& snapshot) {
    for (const Level& level : snapshot.levels()) {
        for (const MaskSnapshot::TilePtr& tile : level.tiles) {
            for (std::size_t y = 0; y < tile->rows.size(); ++y) {
                const auto first = tile->alpha.begin() + static_cast<std::ptrdiff_t>(y * tile->rows.size());
                const auto all = [&](std::uint8_t value) {
                    return std::count(first, first + MaskSnapshot::kTileSide, value) ==
                           MaskSnapshot::kTileSide;
                };
                ASSERT_EQ(tile->rows[y], all(0) ? 0 : all(255) ? 255 : MaskSnapshot::Tile::kMixed) << y;
            }
        }
    }
}

TEST(MaskSnapshot, OfAFilledPlaneIsThatOfReadingItAndSoAreThoseThatFollow) {
    auto random = testing::seededGenerator();
    for (const std::uint8_t alpha : {0, 77, 255}) {
        Bitmap plane = Bitmap::createFilled(300, 200, {0, 0, 0, alpha}).value();
        MaskSnapshotter snapshotter;
        const MaskSnapshotPtr filled = snapshotter.takeFilled(300, 200, alpha);
        expectTrueToPlane(*filled, plane);
        expectRowsSummedUp(*filled);
        scribble(plane, {120, 90, 30, 40}, random);
        const MaskSnapshotPtr changed = snapshotter.take(plane.view(), {120, 90, 30, 40});
        expectTrueToPlane(*changed, plane);
        expectRowsSummedUp(*changed);
        EXPECT_EQ(filled->levels()[0].alphaAt(130, 100), alpha);
    }
}

TEST(MaskSnapshot, saysOfEveryRowOfATileWhetherItIsOfOneValue) {
    auto random = testing::seededGenerator();
    Bitmap plane = std::move(Bitmap::createFilled(300, 411, Pixel{0, 0, 0, 255})).value();
    MaskSnapshotter snapshotter;
    for (int k = 0; k < 40 && !::testing::Test::HasFailure(); ++k) {
        const IntRect area = randomRect(300, 411, random);
        const auto alpha = static_cast<std::uint8_t>(k % 4 == 0 ? 255 : k % 4 == 1 ? random() : 0);
        const IntRect inside = intersected(area, plane.view().bounds());
        for (int y = inside.y; y < inside.bottom(); ++y) {
            for (int x = inside.x; x < inside.right(); ++x)
                plane.setPixel(x, y, Pixel{0, 0, 0, alpha});
        }
        expectRowsSummedUp(*snapshotter.take(plane.view(), area));
    }
}

TEST(MaskSnapshot, sharesEveryTileThatNothingTouched) {
    auto random = testing::seededGenerator();
    Bitmap plane = noisePlane(700, 500, random);
    MaskSnapshotter snapshotter;
    const MaskSnapshotPtr before = snapshotter.take(plane.view(), {});
    const IntRect area{130, 260, 100, 100};  // inside the tile of column 1, row 2
    scribble(plane, area, random);
    const MaskSnapshotPtr after = snapshotter.take(plane.view(), area);
    for (std::size_t k = 0; k < before->levels().size(); ++k) {
        const Level& old = before->levels()[k];
        const std::size_t changed = k == 0 ? 2 * 6 + 1 : k == 1 ? 3 : 0;  // three tiles across in level 1
        for (std::size_t i = 0; i < old.tiles.size(); ++i)
            EXPECT_EQ(old.tiles[i] == after->levels()[k].tiles[i], i != changed) << k << ' ' << i;
    }
}

TEST(MaskSnapshot, staysAsItWasWhenThePlaneGoesOn) {
    auto random = testing::seededGenerator();
    Bitmap plane = noisePlane(300, 300, random);
    const Bitmap then = std::move(plane.clone()).value();
    MaskSnapshotter snapshotter;
    const MaskSnapshotPtr snapshot = snapshotter.take(plane.view(), {});
    scribble(plane, plane.view().bounds(), random);
    (void)snapshotter.take(plane.view(), plane.view().bounds());
    expectTrueToPlane(*snapshot, then);
}

TEST(MaskSnapshot, halvesItsSidesRoundingUpDownToOnePixel) {
    const Bitmap plane = std::move(Bitmap::createFilled(2000, 667, Pixel{0, 0, 0, 9})).value();
    const MaskSnapshotPtr snapshot = MaskSnapshotter().take(plane.view(), {});
    std::vector<std::pair<int, int>> sizes;
    for (const Level& level : snapshot->levels())
        sizes.emplace_back(level.width, level.height);
    const std::vector<std::pair<int, int>> expected{{2000, 667}, {1000, 334}, {500, 167}, {250, 84},
                                                    {125, 42},   {63, 21},    {32, 11},   {16, 6},
                                                    {8, 3},      {4, 2},      {2, 1},     {1, 1}};
    EXPECT_EQ(sizes, expected);
    EXPECT_EQ(snapshot->levels().back().alphaAt(0, 0), 9);
}

TEST(MaskSnapshot, isTheSameOneWhileNothingChanges) {
    const Bitmap plane = std::move(Bitmap::createFilled(50, 50, Pixel{})).value();
    MaskSnapshotter snapshotter;
    const MaskSnapshotPtr first = snapshotter.take(plane.view(), {});
    EXPECT_EQ(snapshotter.take(plane.view(), {}), first);
    EXPECT_EQ(snapshotter.take(plane.view(), {60, 60, 5, 5}), first);
}

TEST(MaskSnapshot, ofAPlaneOfAnotherSizeIsReadWhole) {
    auto random = testing::seededGenerator();
    MaskSnapshotter snapshotter;
    (void)snapshotter.take(noisePlane(50, 60, random).view(), {});
    const Bitmap other = noisePlane(61, 50, random);
    expectTrueToPlane(*snapshotter.take(other.view(), {0, 0, 1, 1}), other);
}

TEST(MaskSnapshot, afterAResetIsReadWhole) {
    auto random = testing::seededGenerator();
    Bitmap plane = noisePlane(40, 40, random);
    MaskSnapshotter snapshotter;
    (void)snapshotter.take(plane.view(), {});
    scribble(plane, plane.view().bounds(), random);
    snapshotter.reset();
    expectTrueToPlane(*snapshotter.take(plane.view(), {}), plane);
}

TEST(MaskSnapshot, ofNoPlaneIsNone) {
    EXPECT_EQ(MaskSnapshotter().take({}, {}), nullptr);
}

TEST(MaskSnapshot, getsReleasedTilesBack) {
    const Bitmap plane = std::move(Bitmap::createFilled(128, 128, Pixel{})).value();
    std::set<const MaskSnapshot::Tile*> released;
    {
        const MaskSnapshotPtr snapshot = MaskSnapshotter().take(plane.view(), {});
        for (const Level& level : snapshot->levels())
            released.insert(level.tiles.front().get());
    }
    const MaskSnapshotPtr next = MaskSnapshotter().take(plane.view(), {});
    for (const Level& level : next->levels())
        EXPECT_EQ(released.count(level.tiles.front().get()), 1U);
}

}  // namespace
}  // namespace trimora::cutengine::kernels
