#include "util/Colors.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <set>

#include "testing/Seed.h"

namespace trimora::util {
namespace {

TEST(Colors, FractionsAndWholeComponentsGiveTheSameColour) {
    EXPECT_EQ(r_g_b(255, 128, 0).rgba(), r_g_b(1.0, 0.5, 0.0).rgba());
    EXPECT_EQ(r_g_b(1.0, 0.5, 0.0).rgba(), qRgb(255, 128, 0));
    EXPECT_EQ(r_g_b(249, 35, 95).rgba(), qRgb(249, 35, 95));
}

TEST(Colors, OneComponentAboveOneMakesAllOfThemWhole) {
    EXPECT_EQ(r_g_b(1, 1, 2).rgba(), qRgb(1, 1, 2));
    EXPECT_EQ(r_g_b(1, 1, 1).rgba(), qRgb(255, 255, 255));
}

TEST(Colors, OpacityIsAFractionAndOneByDefault) {
    EXPECT_EQ(r_g_b(255, 0, 0).alpha(), 255);
    EXPECT_EQ(r_g_b_a(255, 0, 0, 0.2).alpha(), 51);
}

TEST(Colors, WhatIsOutOfRangeIsClamped) {
    EXPECT_EQ(r_g_b(300, -1, 0).rgba(), qRgb(255, 0, 0));
}

TEST(Colors, RandomColoursAreOpaqueAndReachBothEnds) {
    QRandomGenerator generator(static_cast<quint32>(testing::announcedSeed()));
    std::set<int> reds;
    for (int i = 0; i < 10000; ++i) {
        const QColor colour = randomColor(generator);
        EXPECT_EQ(colour.alpha(), 255);
        reds.insert(colour.red());
    }
    EXPECT_EQ(*reds.begin(), 0);
    EXPECT_EQ(*reds.rbegin(), 255);
}

TEST(Colors, PixelIsOnePixelOfTheColour) {
    const QImage image = pixel(QColor(255, 0, 0, 128));
    EXPECT_EQ(image.size(), QSize(1, 1));
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 128);
    EXPECT_EQ(image.pixelColor(0, 0).red(), 255);
}

TEST(Colors, ThePatternIsACheckerboardOfEightPointSquares) {
    QImage drawn(32, 32, QImage::Format_RGB32);
    QPainter(&drawn).fillRect(drawn.rect(), patternBackground());
    const QRgb grey = qRgb(217, 217, 217);
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x)
            ASSERT_EQ(drawn.pixel(x, y), (x / 8 + y / 8) % 2 == 0 ? grey : qRgb(255, 255, 255));
    }
    EXPECT_EQ(&patternBackground(), &patternBackground());
}

}  // namespace
}  // namespace trimora::util
