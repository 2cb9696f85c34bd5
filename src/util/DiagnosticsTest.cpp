#include "util/Diagnostics.h"

#include <gtest/gtest.h>

#include "testing/CapturedLog.h"

namespace trimora::util {
namespace {

TEST(Diagnostics, APointIsOneDebugLine) {
    const testing::CapturedLog log;
    logPoint({1.5, -2});
    EXPECT_EQ(log.texts(foundation::log::Level::debug),
              std::vector<std::string>{"x = 1.500000, y = -2.000000"});
}

TEST(Diagnostics, TheCatHasEarsAndEyes) {
    const testing::CapturedLog log;
    logCat();
    EXPECT_EQ(log.lines().size(), 4U);
    EXPECT_TRUE(log.contains("o.o"));
}

}  // namespace
}  // namespace trimora::util
