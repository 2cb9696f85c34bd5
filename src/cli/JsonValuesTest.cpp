#include "cli/JsonValues.h"

#include <gtest/gtest.h>

namespace trimora {
namespace {

TEST(JsonValues, WholeNumbersHaveNoPoint) {
    EXPECT_EQ(jsonLine(jsonNumber(3.0)), "3");
    EXPECT_EQ(jsonLine(jsonNumber(-3.5)), "-3.5");
    EXPECT_EQ(jsonLine(jsonSize({600, 400.25})), "[600,400.25]");
    EXPECT_EQ(jsonLine(jsonRect({0, 1, 2, 3})), "[0,1,2,3]");
    EXPECT_EQ(jsonLine(jsonNumber(1e300)), "1e+300");
}

TEST(JsonValues, AFloatHasTheDigitsOfAFloat) {
    EXPECT_EQ(jsonLine(jsonNumber(0.1F)), "0.1");
    EXPECT_EQ(jsonLine(jsonNumber(70.0F)), "70");
}

TEST(JsonValues, TextThatIsNotUtf8IsMended) {
    EXPECT_EQ(jsonLine("a\xff"), "\"a\xEF\xBF\xBD\"");
}

}  // namespace
}  // namespace trimora
