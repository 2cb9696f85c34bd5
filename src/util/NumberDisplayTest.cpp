#include "util/NumberDisplay.h"

#include <gtest/gtest.h>

#include <limits>

namespace trimora::util {
namespace {

TEST(NumberDisplay, HalvesGoToTheEvenDigit) {
    EXPECT_EQ(displayedNumber(11.5F, 0), "12");
    EXPECT_EQ(displayedNumber(12.5F, 0), "12");
    EXPECT_EQ(displayedNumber(13.5F, 0), "14");
    EXPECT_EQ(displayedNumber(0.125F, 2), "0.12");
    EXPECT_EQ(displayedNumber(0.375F, 2), "0.38");
}

TEST(NumberDisplay, OtherFractionsGoToTheNearest) {
    EXPECT_EQ(displayedNumber(12.49F, 0), "12");
    EXPECT_EQ(displayedNumber(12.51F, 0), "13");
    EXPECT_EQ(displayedNumber(99.999F, 2), "100");
}

TEST(NumberDisplay, TrailingZerosAreLeftOutAndNumbersBelowOneBeginWithZero) {
    EXPECT_EQ(displayedNumber(1.5F, 2), "1.5");
    EXPECT_EQ(displayedNumber(100, 2), "100");
    EXPECT_EQ(displayedNumber(0.5F, 2), "0.5");
    EXPECT_EQ(displayedNumber(-0.25F, 2), "-0.25");
}

TEST(NumberDisplay, ThereIsNoGroupingAndNoExponent) {
    EXPECT_EQ(displayedNumber(1234567, 2), "1234567");
}

TEST(NumberDisplay, WhatRoundsToZeroIsZero) {
    EXPECT_EQ(displayedNumber(0, 2), "0");
    EXPECT_EQ(displayedNumber(-0.3F, 0), "0");
    EXPECT_EQ(displayedNumber(-0.001F, 2), "0");
    EXPECT_EQ(displayedNumber(std::numeric_limits<float>::quiet_NaN(), 2), "0");
    EXPECT_EQ(displayedNumber(std::numeric_limits<float>::infinity(), 2), "0");
}

TEST(LeadingNumber, IsReadUpToWhatIsNoNumber) {
    EXPECT_EQ(leadingNumber("45%"), 45.0F);
    EXPECT_EQ(leadingNumber("12.7"), 12.7F);
    EXPECT_EQ(leadingNumber("12.7.3"), 12.7F);
    EXPECT_EQ(leadingNumber(".5"), 0.5F);
    EXPECT_EQ(leadingNumber("  8 x"), 8.0F);
    EXPECT_EQ(leadingNumber("-3"), -3.0F);
    EXPECT_EQ(leadingNumber("+3"), 3.0F);
}

TEST(LeadingNumber, IsZeroWhereThereIsNone) {
    for (const char* text : {"", "%", "ABC", "INF", "nan", "--5", "+-5", "-", ".", "   "})
        EXPECT_EQ(leadingNumber(text), 0.0F) << text;
}

TEST(LeadingNumber, IsTheLargestFloatWhereItIsLarger) {
    EXPECT_EQ(leadingNumber("9E99"), std::numeric_limits<float>::max());
    EXPECT_EQ(leadingNumber("9E999"), std::numeric_limits<float>::max());
    EXPECT_EQ(leadingNumber("-9E99"), -std::numeric_limits<float>::max());
}

TEST(LeadingNumber, IsZeroWhereItIsTooSmall) {
    EXPECT_EQ(leadingNumber("1E-99"), 0.0F);
    EXPECT_EQ(leadingNumber("1E-999"), 0.0F);
}

}  // namespace
}  // namespace trimora::util
