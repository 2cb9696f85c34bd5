#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "BadPictures.h"
#include "Mounts.h"
#include "Processes.h"
#include "SavingForTests.h"
#include "cutengine/CutViewForTests.h"
#include "files/FilesForTests.h"
#include "testing/Depth.h"

// The smallest, longest and largest pictures: worked on like others, or refused by what their head says.
namespace trimora::reliability {
namespace {

using cutengine::CutViewTest;
using foundation::Bitmap;
using foundation::BitmapView;
using foundation::samePixels;

/// Whether a premultiplied picture is this straight one, up to the rounding of colours.
bool looksLike(BitmapView premultiplied, BitmapView straight) {
    for (int y = 0; y < straight.height; ++y) {
        const std::uint8_t* const one = premultiplied.row(y);
        const std::uint8_t* const other = straight.row(y);
        for (std::ptrdiff_t i = 0; i < std::ptrdiff_t{4} * straight.width; ++i) {
            const int alpha = other[i | 3];
            const int expected = (i & 3) == 3 ? alpha : (other[i] * alpha + 127) / 255;
            if (std::abs(one[i] - expected) > ((i & 3) == 3 ? 0 : 1))
                return false;
        }
    }
    return true;
}

class Sizes : public CutViewTest {
 protected:
    /// Opens, strokes, steps back and forth, saves and reopens a picture of this size.
    void workOn(int width, int height) {
        const std::filesystem::path file = home.path() / "picture.png";
        ASSERT_TRUE(savePng(bandedPicture(width, height).view(), file));
        auto read = decoder_.decode(file);
        ASSERT_TRUE(read) << read.error().message;
        ASSERT_TRUE(samePixels(read->representations[0].view(), bandedPicture(width, height).view()));
        view.setImage(cutengine::Picture::create(std::move(read->representations)));
        queues.settle();
        stroke({{200, 150}});
        EXPECT_EQ(view.historyLength(), 2);
        view.prevHistoryState();
        queues.settle();
        view.nextHistoryState();
        queues.settle();
        EXPECT_EQ(view.historyCurrentState(), 1);
        const auto result = view.getResult();
        ASSERT_NE(result, nullptr);
        ASSERT_TRUE(savePng(result->bestRepresentation()->view(), file));
        const auto again = decoder_.decode(file);
        ASSERT_TRUE(again);
        EXPECT_EQ(again->representations[0].width(), width);
        EXPECT_EQ(again->representations[0].height(), height);
        EXPECT_TRUE(looksLike(again->representations[0].view(), result->bestRepresentation()->view()));
    }

    foundation::InlineWorkers workers_;
    codecs::PictureFileDecoder decoder_{workers_, codecs::PixelBudget(500'000'000)};
};

TEST_F(Sizes, OnePixelAndVeryLongOnesAreWorkedOn) {
    workOn(1, 1);
    workOn(1, 100'000);
    workOn(100'000, 1);
}

TEST_F(Sizes, ImpossibleOnesAreRefusedByTheirHeads) {
    constexpr long kMostKibibytesForAHead = 8L << 10;
    for (const std::uint32_t side : {65'535U, 2'147'483'647U, 4'294'967'295U}) {
        for (const NamedFile& file : filesOfSize(side)) {
            std::string message;
            const Ended ended = inOwnProcess([&] {
                const auto refused =
                    codecs::PictureFileDecoder(workers_, codecs::PixelBudget(kAdmittedPixels))
                        .decodeBytes(file.bytes);
                return !refused && !refused.error().message.empty() ? 0 : 1;
            });
            EXPECT_EQ(ended.text(), "exit 0") << file.name << " of " << side;
            EXPECT_LT(ended.grownKibibytes, kMostKibibytesForAHead) << file.name << " of " << side;
        }
    }
}

TEST_F(Sizes, FourHundredMegapixelsCostSixteenBytesEach) {
    if (testing::depth() < 2)
        TRIMORA_SKIP("400 megapixels are for the long run");
    const Ended ended = inOwnProcess(
        [&] {
            workOn(20'000, 20'000);
            return HasFailure() ? 1 : 0;
        },
        600);
    EXPECT_EQ(ended.text(), "exit 0");
    EXPECT_LT(ended.grownKibibytes, 400'000'000L * 16 / 1024);
    std::printf("400 megapixels: %.1f bytes a pixel\n",
                static_cast<double>(ended.grownKibibytes) * 1024 / 400'000'000);
}

}  // namespace
}  // namespace trimora::reliability
