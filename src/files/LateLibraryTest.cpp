#include "files/LateLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace trimora::files {
namespace {

using ::testing::HasSubstr;

TEST(LateLibrary, findsAFunction) {
    const auto library = LateLibrary::open("libm.so.6");
    ASSERT_TRUE(library.ok()) << library.error().message;
    double (*root)(double) = nullptr;
    ASSERT_TRUE(library->find("sqrt", root).ok());
    EXPECT_EQ(root(9), 3);
}

TEST(LateLibrary, thatIsNotInstalledSaysSo) {
    const auto library = LateLibrary::open("libnobody.so.1");
    ASSERT_FALSE(library.ok());
    EXPECT_THAT(library.error().message, HasSubstr("libnobody.so.1"));
}

TEST(LateLibrary, withoutTheFunctionSaysSo) {
    const auto library = LateLibrary::open("libm.so.6");
    ASSERT_TRUE(library.ok()) << library.error().message;
    void (*nobody)() = nullptr;
    const auto found = library->find("nobodyHasThis", nobody);
    ASSERT_FALSE(found.ok());
    EXPECT_THAT(found.error().message, HasSubstr("nobodyHasThis"));
    EXPECT_EQ(nobody, nullptr);
}

TEST(LoadedOnce, triesAgainUntilItWentWellAndThenNoMore) {
    static int tries = 0;
    LoadedOnce<int> kept;
    const auto load = [] {
        ++tries;
        return tries < 3 ? foundation::Result<int>(foundation::Error{"not yet"}) : foundation::Result<int>(7);
    };
    EXPECT_FALSE(kept.get(load).ok());
    EXPECT_FALSE(kept.get(load).ok());
    const auto made = kept.get(load);
    ASSERT_TRUE(made.ok());
    EXPECT_EQ(**made, 7);
    EXPECT_EQ(*kept.get(load), *made);
    EXPECT_EQ(tries, 3);
}

}  // namespace
}  // namespace trimora::files
