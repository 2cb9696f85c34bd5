#include "editor/RecentFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "editor/EditorDoubles.h"

namespace trimora::editor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST(RecentFilesTest, TheNewestIsFirstAndEachFileStandsOnce) {
    MemorySettings settings;
    RecentFiles recent(settings);
    recent.add("/p/a.png");
    recent.add("/p/b.png");
    recent.add("/p/./a.png");
    EXPECT_THAT(recent.files(), ElementsAre("/p/a.png", "/p/b.png"));
    EXPECT_THAT(RecentFiles(settings).files(), SizeIs(2));
}

TEST(RecentFilesTest, TheOldestGoesWhereThereAreTooMany) {
    MemorySettings settings;
    RecentFiles recent(settings);
    for (int i = 0; i < 12; ++i)
        recent.add("/p/" + std::to_string(i) + ".png");
    EXPECT_THAT(recent.files(), SizeIs(RecentFiles::kMost));
    EXPECT_EQ(recent.files().front(), "/p/11.png");
    EXPECT_EQ(recent.files().back(), "/p/2.png");
}

TEST(RecentFilesTest, RemovingAndClearingTellWhoeverShowsTheList) {
    MemorySettings settings;
    RecentFiles recent(settings);
    recent.add("/p/a.png");
    recent.add("/p/b.png");
    int changes = 0;
    recent.onChange([&] { ++changes; });
    recent.remove("/p/unknown.png");
    EXPECT_EQ(changes, 0);
    recent.remove("/p/a.png");
    EXPECT_THAT(recent.files(), ElementsAre("/p/b.png"));
    recent.clear();
    EXPECT_THAT(recent.files(), IsEmpty());
    EXPECT_EQ(changes, 2);
}

}  // namespace
}  // namespace trimora::editor
