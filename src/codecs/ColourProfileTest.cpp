#include "codecs/ColourProfile.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "codecs/SampleFiles.h"

namespace trimora::codecs {
namespace {

using Pixel4 = std::array<std::uint8_t, 4>;

TEST(ColourProfile, OfSrgbAsksForNothing) {
    EXPECT_EQ(ColourProfile::fromIcc(samples::srgbProfile(), ColourModel::rgb, SampleDepth::eight), nullptr);
    EXPECT_EQ(ColourProfile::fromIcc(samples::srgbProfile(), ColourModel::grey, SampleDepth::eight), nullptr);
}

TEST(ColourProfile, OfAWideSpaceMakesColoursStrongerAndLeavesGreyAndAlpha) {
    const auto profile = ColourProfile::fromIcc(samples::wideProfile(), ColourModel::rgb, SampleDepth::eight);
    ASSERT_NE(profile, nullptr);
    std::array<std::uint8_t, 8> row = {90, 160, 120, 77, 128, 128, 128, 78};
    profile->apply(row.data(), row.data(), 2);
    EXPECT_LT(row[2], 100) << "less red than before";
    EXPECT_NEAR(row[1], 160, 4);
    EXPECT_EQ(row[3], 77);
    for (std::size_t i : {4U, 5U, 6U})
        EXPECT_NEAR(row[i], 128, 2);
    EXPECT_EQ(row[7], 78);
}

TEST(ColourProfile, OfSixteenBitsAgreesWithEight) {
    const auto narrow = ColourProfile::fromIcc(samples::wideProfile(), ColourModel::rgb, SampleDepth::eight);
    const auto wide = ColourProfile::fromIcc(samples::wideProfile(), ColourModel::rgb, SampleDepth::sixteen);
    Pixel4 fromNarrow = {60, 140, 200, 0};
    narrow->apply(fromNarrow.data(), fromNarrow.data(), 1);
    const std::array<std::uint16_t, 4> samples16 = {200 * 257, 140 * 257, 60 * 257, 0};
    Pixel4 fromWide{};
    wide->apply(samples16.data(), fromWide.data(), 1);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(fromWide[i], fromNarrow[i], 1);
}

TEST(ColourProfile, OfGreyFollowsItsCurve) {
    const auto profile =
        ColourProfile::fromIcc(samples::greyProfile(1.0), ColourModel::grey, SampleDepth::eight);
    ASSERT_NE(profile, nullptr);
    Pixel4 pixel = {55, 55, 55, 200};  // 21.6 % of the light
    profile->apply(pixel.data(), pixel.data(), 1);
    const double encoded = 255 * (1.055 * std::pow(55 / 255.0, 1 / 2.4) - 0.055);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(pixel[i], encoded, 2);
    EXPECT_EQ(pixel[3], 200);
}

TEST(ColourProfile, OfInksTurnsBothKindsIntoTheSameColours) {
    const samples::Buffer icc = samples::inkProfile();
    const auto plain = ColourProfile::fromIcc(icc, ColourModel::cmyk, SampleDepth::eight);
    const auto inverted = ColourProfile::fromIcc(icc, ColourModel::invertedCmyk, SampleDepth::eight);
    ASSERT_NE(plain, nullptr);
    ASSERT_NE(inverted, nullptr);
    Pixel4 inks = {255 - 200, 255 - 100, 255 - 50, 0};
    Pixel4 complements = {200, 100, 50, 255};
    plain->apply(inks.data(), inks.data(), 1);
    inverted->apply(complements.data(), complements.data(), 1);
    EXPECT_NEAR(inks[2], 200, 6);
    EXPECT_NEAR(inks[1], 100, 6);
    EXPECT_NEAR(inks[0], 50, 6);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(inks[i], complements[i]);
}

TEST(ColourProfile, ThatDoesNotFitThePictureIsPassedOver) {
    EXPECT_EQ(ColourProfile::fromIcc(samples::greyProfile(1.0), ColourModel::rgb, SampleDepth::eight),
              nullptr);
    EXPECT_EQ(ColourProfile::fromIcc(samples::inkProfile(), ColourModel::rgb, SampleDepth::eight), nullptr);
    EXPECT_EQ(ColourProfile::fromIcc(samples::wideProfile(), ColourModel::cmyk, SampleDepth::eight), nullptr);
}

TEST(ColourProfile, OfColoursFitsAGreyPicture) {
    EXPECT_NE(ColourProfile::fromIcc(samples::wideProfile(), ColourModel::grey, SampleDepth::eight), nullptr);
}

TEST(ColourProfile, DamagedAnywhereDoesNoHarm) {
    const samples::Buffer whole = samples::inkProfile();
    for (std::size_t size = 0; size < whole.size(); size += 997) {
        const samples::Buffer cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(ColourProfile::fromIcc(cut, ColourModel::cmyk, SampleDepth::eight), nullptr) << size;
    }
    EXPECT_EQ(ColourProfile::fromIcc({}, ColourModel::rgb, SampleDepth::eight), nullptr);
}

TEST(ColourProfile, OfALinearPictureBrightensIt) {
    const auto profile = ColourProfile::fromGamma(1.0, std::nullopt, ColourModel::rgb, SampleDepth::eight);
    ASSERT_NE(profile, nullptr);
    Pixel4 pixel = {55, 55, 55, 255};
    profile->apply(pixel.data(), pixel.data(), 1);
    EXPECT_NEAR(pixel[0], 128, 2);
}

}  // namespace
}  // namespace trimora::codecs
