#include "codecs/Orientation.h"

#include <gtest/gtest.h>

#include "codecs/SampleFiles.h"
#include "foundation/ThreadQueues.h"

namespace trimora::codecs {
namespace {

using foundation::Bitmap;

/// Where the upright pixel (x, y) is stored, straight from the meaning of the numbers.
foundation::Pixel storedPixel(const Bitmap& stored, int number, int x, int y) {
    const int right = stored.width() - 1;
    const int bottom = stored.height() - 1;
    switch (number) {
        case 2:
            return stored.pixel(right - x, y);
        case 3:
            return stored.pixel(right - x, bottom - y);
        case 4:
            return stored.pixel(x, bottom - y);
        case 5:
            return stored.pixel(y, x);
        case 6:
            return stored.pixel(y, bottom - x);
        case 7:
            return stored.pixel(right - y, bottom - x);
        case 8:
            return stored.pixel(right - y, x);
        default:
            return stored.pixel(x, y);
    }
}

TEST(Orientation, EveryPixelGoesWhereEachNumberSays) {
    foundation::ThreadWorkers workers(2);
    for (const auto& [width, height] :
         {std::pair(1, 1), std::pair(3, 2), std::pair(1, 70), std::pair(131, 67)}) {
        const Bitmap stored = samples::fading(width, height);
        for (int number = 1; number <= 8; ++number) {
            const Bitmap turned =
                upright(stored.clone().value(), orientationOf(static_cast<std::uint32_t>(number)), workers)
                    .value();
            ASSERT_EQ(turned.width(), number >= 5 ? height : width);
            ASSERT_EQ(turned.height(), number >= 5 ? width : height);
            for (int y = 0; y < turned.height(); ++y) {
                for (int x = 0; x < turned.width(); ++x)
                    ASSERT_EQ(turned.pixel(x, y), storedPixel(stored, number, x, y)) << number;
            }
        }
    }
}

TEST(Orientation, IsFoundInExifOfBothByteOrders) {
    for (int number = 1; number <= 8; ++number) {
        EXPECT_EQ(exifOrientation(samples::exif(number, true)), static_cast<Orientation>(number));
        EXPECT_EQ(exifOrientation(samples::exif(number, false)), static_cast<Orientation>(number));
    }
}

TEST(Orientation, OfANumberWithoutMeaningIsAsStored) {
    for (const std::uint32_t number : {0U, 9U, 65535U, 0xFFFFFFFFU})
        EXPECT_EQ(orientationOf(number), Orientation::topLeft);
}

TEST(Orientation, OfDamagedExifIsAsStoredAndNothingOutsideIsRead) {
    const samples::Buffer whole = samples::exif(6);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        // A buffer of exactly that size, so that a sanitizer sees every step outside.
        const samples::Buffer cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        const Orientation found = exifOrientation(cut);
        EXPECT_TRUE(found == Orientation::topLeft || (found == Orientation::rightTop && size >= 20));
    }
    samples::Buffer far = whole;
    far[4] = far[5] = far[6] = far[7] = 0xFF;  // the directory lies beyond everything
    EXPECT_EQ(exifOrientation(far), Orientation::topLeft);
    samples::Buffer many = whole;
    many[8] = many[9] = 0xFF;  // more entries than there are bytes
    EXPECT_EQ(exifOrientation(many), Orientation::rightTop);
    many[10] = 0;
    EXPECT_EQ(exifOrientation(many), Orientation::topLeft);
}

}  // namespace
}  // namespace trimora::codecs
