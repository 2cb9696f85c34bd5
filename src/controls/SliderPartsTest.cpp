#include "controls/SliderParts.h"

#include <gtest/gtest.h>

namespace trimora::controls {
namespace {

constexpr QSizeF kKnob(16, 18);

TEST(SliderParts, AtTheMinimumTheFilledLineIsAStubAndTheKnobStandsAQuarterIn) {
    const SliderParts parts = sliderParts(200, 25, kKnob, 0);
    EXPECT_EQ(parts.filled, QRectF(8, 11, 8, 3));
    EXPECT_EQ(parts.unfilled, QRectF(16, 11, 176, 3));
    EXPECT_EQ(parts.knob, QRectF(4, 4, 16, 18));
}

TEST(SliderParts, AtTheMaximumNothingIsLeftUnfilled) {
    const SliderParts parts = sliderParts(200, 25, kKnob, 1);
    EXPECT_EQ(parts.filled, QRectF(8, 11, 184, 3));
    EXPECT_EQ(parts.unfilled.width(), 0);
    EXPECT_EQ(parts.knob, QRectF(180, 4, 16, 18));
}

TEST(SliderParts, InBetweenTheKnobCoversTheSeam) {
    const SliderParts parts = sliderParts(200, 25, kKnob, 0.25);
    EXPECT_EQ(parts.filled, QRectF(8, 11, 52, 3));
    EXPECT_EQ(parts.unfilled, QRectF(60, 11, 132, 3));
    EXPECT_EQ(parts.knob, QRectF(48, 4, 16, 18));
}

TEST(SliderParts, TheKnobAndTheLinesPlaceAreRoundedAndTheirLengthIsNot) {
    const SliderParts parts = sliderParts(101, 20, QSizeF(17, 17), 0.5);
    EXPECT_EQ(parts.filled, QRectF(9, 9, 8.5 + 37.75, 3));
    EXPECT_EQ(parts.unfilled, QRectF(17 + 37.75, 9, 37.75, 3));
    EXPECT_EQ(parts.knob, QRectF(42, 2, 17, 17));
}

TEST(SliderParts, TheFilledLengthIsKeptInSinglePrecision) {
    const SliderParts parts = sliderParts(200, 25, kKnob, 0.1);
    EXPECT_EQ(parts.filled.width(), 8 + static_cast<double>(17.6F));
}

TEST(SliderParts, APlaceAndItsFractionAreEachOthersInverse) {
    EXPECT_EQ(fractionAt(12, 200, 16), 0);
    EXPECT_EQ(fractionAt(188, 200, 16), 1);
    EXPECT_EQ(knobCentre(0.25, 200, 16), 56);
    EXPECT_DOUBLE_EQ(fractionAt(knobCentre(0.3, 200, 16), 200, 16), 0.3);
}

TEST(SliderParts, ASliderShorterThanItsKnobHasNoWay) {
    EXPECT_EQ(fractionAt(5, 20, 16), 0);
}

}  // namespace
}  // namespace trimora::controls
