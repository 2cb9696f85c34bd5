#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "cutengine/kernels/EveryInstructionSet.h"
#include "cutengine/kernels/MaskCodec.h"
#include "cutengine/kernels/RandomMask.h"
#include "cutengine/kernels/StrokePainter.h"
#include "testing/Depth.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::Bitmap;
using foundation::IntRect;
using foundation::Pixel;
using foundation::Rect;
using Bytes = std::vector<std::uint8_t>;

constexpr int kMaxSide = 4096;

/// A stroke of any brush, which may reach beyond the plane; returns what that changed.
IntRect paintAny(Bitmap& plane, std::mt19937_64& random) {
    const double d = randomBetween(random, 1, 60);
    const double x = randomBetween(random, -20, plane.width());
    const double y = randomBetween(random, -20, plane.height());
    const double slope = randomBetween(random, -20, 20) / 10.0;
    std::vector<Rect> stamps;
    for (int i = randomBetween(random, 1, 80); i > 0; --i)
        stamps.push_back({x + i, y + slope * i, d, d});
    const BrushStamp soft(200, 0.01F * static_cast<float>(randomBetween(random, 0, 98)));
    const auto alpha = static_cast<std::uint8_t>(randomBetween(random, 0, 2) * 127);
    return paintStamps(plane.view(), stamps,
                       {Pixel{0, 0, 0, alpha}, randomBetween(random, 0, 1) == 0 ? &soft : nullptr});
}

Bitmap cloned(const Bitmap& plane) {
    return std::move(plane.clone()).value();
}

/// A mask, its history, and what is kept of it.
class Walk {
 public:
    explicit Walk(std::mt19937_64& random)
        : random_(random),
          plane_(randomMaskPlane(random, randomBetween(random, 1, 300), randomBetween(random, 1, 700))) {
        write(plane_.view().bounds());
    }

    void paint() { changed_ = united(changed_, paintAny(plane_, random_)); }

    void write() { write(changed_); }

    void readAny() {
        const State& state = states_[random_() % states_.size()];
        auto read = files_.read(state.file, kMaxSide, changed_);
        ASSERT_TRUE(read.ok()) << read.error().message;
        const int rows = read->pixels.height();
        if (rows > 0)
            copyPixels(read->pixels.view(), subview(plane_.view(), {0, read->top, plane_.width(), rows}));
        ASSERT_TRUE(samePixels(plane_.view(), state.plane.view()));
        changed_ = {};
    }

    void readDamaged() {
        Bytes file = states_[random_() % states_.size()].file;
        file[random_() % file.size()] ^= static_cast<std::uint8_t>(1U << random_() % 8);
        if (files_.read(file, kMaxSide, changed_).ok())
            changed_ = plane_.view().bounds();
    }

    void begin() {
        files_.forget();
        plane_ = randomMaskPlane(random_, randomBetween(random_, 1, 300), randomBetween(random_, 1, 700));
        states_.clear();
        write(plane_.view().bounds());
    }

 private:
    struct State {
        Bitmap plane;
        Bytes file;
    };

    void write(const IntRect& changed) {
        const auto file = files_.write(plane_.view(), changed);
        ASSERT_TRUE(file.ok());
        ASSERT_EQ(*file, encodeMask(plane_.view()).value()) << "not the file of a mask written whole";
        states_.push_back({cloned(plane_), *file});
        changed_ = {};
    }

    std::mt19937_64& random_;
    Bitmap plane_;
    IntRect changed_;
    MaskFiles files_;
    std::vector<State> states_;
};

TEST(MaskFiles, areThoseOfMasksWrittenAndReadWholeWhateverWasKept) {
    auto random = testing::seededGenerator();
    onEveryInstructionSet([&] {
        Walk walk(random);
        for (int step = testing::byDepth(120, 2'000, 20'000); step > 0 && !HasFatalFailure(); --step) {
            const int kind = randomBetween(random, 0, 40);
            if (kind == 0)
                walk.begin();
            else if (kind < 4)
                walk.readDamaged();
            else if (kind < 16)
                walk.paint();
            else if (kind < 28)
                walk.write();
            else
                walk.readAny();
        }
    });
}

/// A mask of many strips, of which two states differ in a spot.
struct Spotted {
    Bitmap plane = Bitmap::createFilled(50, 1000, {0, 0, 0, 255}).value();
    MaskFiles files;
    Bytes before;
    Bytes after;
    IntRect spot{10, 300, 5, 5};

    Spotted() {
        before = files.write(plane.view(), plane.view().bounds()).value();
        for (int y = spot.y; y < spot.bottom(); ++y)
            plane.setPixel(spot.x, y, {});
        after = files.write(plane.view(), spot).value();
    }
};

TEST(MaskFiles, unpackOnlyTheStripsThatDiffer) {
    Spotted mask;
    const auto rows = mask.files.read(mask.before, kMaxSide, {});
    ASSERT_TRUE(rows.ok());
    EXPECT_FALSE(rows->isWhole);
    EXPECT_LE(rows->top, 300);
    EXPECT_GE(rows->top + rows->pixels.height(), 305);
    EXPECT_LE(rows->pixels.height(), 2 * kStripRows);
    const auto nothing = mask.files.read(mask.before, kMaxSide, {});
    ASSERT_TRUE(nothing.ok());
    EXPECT_TRUE(nothing->pixels.isEmpty());
    EXPECT_FALSE(nothing->isWhole);
}

TEST(MaskFiles, unpackTooWhatHasBeenPaintedOnSince) {
    Spotted mask;
    const auto rows = mask.files.read(mask.before, kMaxSide, {0, 900, 1, 1});
    ASSERT_TRUE(rows.ok());
    EXPECT_LE(rows->top, 300);
    EXPECT_GE(rows->top + rows->pixels.height(), 901);
}

TEST(MaskFiles, packOnlyTheStripsThatChanged) {
    Spotted mask;
    mask.plane.setPixel(0, 900, {});  // which nobody is told
    EXPECT_EQ(mask.files.write(mask.plane.view(), mask.spot).value(), mask.after);
}

TEST(MaskFiles, findDamageInStripsThatNeedNoUnpacking) {
    Spotted mask;
    const Bytes good = mask.after;
    for (std::size_t at = 0; at < good.size(); at += 3) {
        Bytes damaged = good;
        damaged[at] ^= 4;
        const auto read = mask.files.read(damaged, kMaxSide, {});
        ASSERT_FALSE(read.ok()) << at;
        ASSERT_TRUE(mask.files.write(mask.plane.view(), {}).value() == good) << "and nothing is kept then";
    }
}

TEST(MaskFiles, readAMaskOfAnotherSizeWholeAndKeepNothingOfIt) {
    Spotted mask;
    const Bitmap other = Bitmap::createFilled(80, 1000, {0, 0, 0, 255}).value();
    const auto rows = mask.files.read(encodeMask(other.view()).value(), kMaxSide, {});
    ASSERT_TRUE(rows.ok());
    EXPECT_TRUE(rows->isWhole);
    EXPECT_TRUE(samePixels(rows->pixels.view(), other.view()));
    const auto again = mask.files.read(mask.after, kMaxSide, {});
    ASSERT_TRUE(again.ok());
    EXPECT_TRUE(again->isWhole);
    EXPECT_TRUE(samePixels(again->pixels.view(), mask.plane.view()));
}

}  // namespace
}  // namespace trimora::cutengine::kernels
