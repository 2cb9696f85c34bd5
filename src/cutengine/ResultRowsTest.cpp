#include "cutengine/ResultRows.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "cutengine/imageutil/FilterImage.h"
#include "cutengine/kernels/RandomMask.h"
#include "cutengine/kernels/RandomPicture.h"
#include "foundation/ThreadQueues.h"
#include "testing/Seed.h"

namespace trimora::cutengine {
namespace {

using foundation::AlphaMode;
using foundation::Bitmap;
using kernels::randomBetween;

class ResultRowsTest : public ::testing::Test {
 protected:
    /// The result put together by hand, over a blurred copy that is whole.
    Bitmap expected(const PicturePtr& picture, const kernels::MaskSnapshot* mask) {
        const auto sharp = picture->bestRepresentation();
        const auto behind = blurredCopy(picture, workers_)->bestRepresentation();
        Bitmap result = Bitmap::create(sharp->width(), sharp->height(), AlphaMode::straight).value();
        composeResult(sharp->view(), mask, {kernels::Background::Kind::picture, {}, behind->view()},
                      result.view(), workers_);
        return result;
    }

    std::mt19937_64 random_ = testing::seededGenerator();
    foundation::ThreadWorkers workers_{2};
};

TEST_F(ResultRowsTest, BlurOfTheRowsInQuestionIsThatOfTheWholePictureByteForByte) {
    for (const auto mode : {AlphaMode::opaque, AlphaMode::premultiplied}) {
        const PicturePtr picture = Picture::create(kernels::randomPicture(random_, 700, 900, mode));
        const auto mask = kernels::snapshotOf(kernels::randomMaskPlane(random_, 350, 450));
        const Bitmap whole = expected(picture, mask.get());
        const ResultRows rows(picture->bestRepresentation(), mask,
                              {ResultBackground::Kind::blurred, {}, picture->bestRepresentation()}, workers_);
        EXPECT_TRUE(samePixels(rows.whole()->bestRepresentation()->view(), whole.view()));
        Bitmap room;
        for (int first = 0; first < 900;) {
            const int end = std::min(900, first + randomBetween(random_, 1, 300));
            const auto part = rows.rows(first, end, room);
            ASSERT_TRUE(part);
            EXPECT_TRUE(samePixels(*part, subview(whole.view(), {0, first, 700, end - first})))
                << first << " to " << end;
            first = end;
        }
    }
}

TEST_F(ResultRowsTest, RoomThatIsLargeEnoughIsKept) {
    const PicturePtr picture = Picture::create(kernels::randomPicture(random_, 40, 90));
    const ResultRows rows(picture->bestRepresentation(), nullptr, {}, workers_);
    Bitmap room;
    const auto first = rows.rows(0, 50, room);
    ASSERT_TRUE(first);
    const auto second = rows.rows(60, 90, room);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->pixels, first->pixels);
    EXPECT_EQ(second->height, 30);
}

TEST_F(ResultRowsTest, LargePicturesBlurIsShownFromItsSmallerCopies) {
    const auto finestOf = [&](int width, int height) {
        auto bitmap = Bitmap::createFilled(width, height, {10, 20, 30, 255}, AlphaMode::opaque);
        return blurredDrawable(Picture::create(std::move(bitmap).value()), workers_)->pyramid->finestLevel();
    };
    EXPECT_EQ(finestOf(15'900, 40), 0);
    EXPECT_EQ(finestOf(15'900, 100), 1);
}

}  // namespace
}  // namespace trimora::cutengine
