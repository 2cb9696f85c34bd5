#include "foundation/Result.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace trimora::foundation {
namespace {

Result<std::string> greeting(bool works) {
    if (!works)
        return Error{"no voice", 3};
    return std::string("hello");
}

Result<void> deed(bool works) {
    if (!works)
        return Error{"no hands", 4};
    return {};
}

TEST(Result, HoldsTheValueWhereAllWentWell) {
    const auto result = greeting(true);
    ASSERT_TRUE(result.ok());
    EXPECT_TRUE(result);
    EXPECT_EQ(*result, "hello");
    EXPECT_EQ(result->size(), 5U);
}

TEST(Result, HoldsTheReasonWhereItDidNot) {
    const auto result = greeting(false);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().message, "no voice");
    EXPECT_EQ(result.error().code, 3);
}

TEST(Result, ValueMayBeChangedInPlaceAndMovedOut) {
    Result<std::unique_ptr<int>> result = std::make_unique<int>(1);
    *result.value() = 2;
    const std::unique_ptr<int> taken = *std::move(result);
    EXPECT_EQ(*taken, 2);
}

TEST(Result, WithoutAValueTellsDoneFromNotDone) {
    EXPECT_TRUE(deed(true));
    const auto failed = deed(false);
    ASSERT_FALSE(failed.ok());
    EXPECT_EQ(failed.error().message, "no hands");
}

}  // namespace
}  // namespace trimora::foundation
