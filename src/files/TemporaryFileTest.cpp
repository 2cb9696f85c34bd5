#include "files/TemporaryFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "files/FilesForTests.h"
#include "testing/TemporaryFolder.h"

namespace trimora::files {
namespace {

class TemporaryFileTest : public ::testing::TestWithParam<TemporaryFile::Name> {
 protected:
    testing::TemporaryFolder folder_;
    FileDescriptor open_ = openAt(AT_FDCWD, folder_.path().c_str(), O_RDONLY | O_DIRECTORY);
};

TEST_P(TemporaryFileTest, TakesItsNameInOneStep) {
    put(folder_.path() / "name", "old");
    foundation::Result<TemporaryFile> file = TemporaryFile::create(open_.number(), 0600, GetParam());
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->write(bytes("new")));
    EXPECT_EQ(contents(folder_.path() / "name"), "old");
    ASSERT_TRUE(file->publish("name"));
    EXPECT_EQ(contents(folder_.path() / "name"), "new");
    EXPECT_EQ(entriesIn(folder_.path()), 1U);
}

TEST_P(TemporaryFileTest, VanishesUnpublished) {
    {
        foundation::Result<TemporaryFile> file = TemporaryFile::create(open_.number(), 0600, GetParam());
        ASSERT_TRUE(file->write(bytes("text")));
        const std::size_t visible = GetParam() == TemporaryFile::Name::atOnce ? 1 : 0;
        EXPECT_LE(entriesIn(folder_.path()), 1U);
        EXPECT_GE(entriesIn(folder_.path()), visible);
    }
    EXPECT_EQ(entriesIn(folder_.path()), 0U);
}

TEST_P(TemporaryFileTest, LeavesNothingWhenItsNameIsRefused) {
    std::filesystem::create_directory(folder_.path() / "name");
    {
        foundation::Result<TemporaryFile> file = TemporaryFile::create(open_.number(), 0600, GetParam());
        EXPECT_FALSE(file->publish("name"));
    }
    EXPECT_EQ(entriesIn(folder_.path()), 1U);
}

TEST_P(TemporaryFileTest, IsAbandonedOnlyWhenItsWriterIsGone) {
    const std::filesystem::path left = folder_.path() / ".trimora-0123456789abcdef.part";
    const std::filesystem::path others = folder_.path() / ".trimora-notes.part";
    put(left, "half a pict");
    put(others, "the person's own");
    foundation::Result<TemporaryFile> file = TemporaryFile::create(open_.number(), 0600, GetParam());
    ASSERT_TRUE(file->write(bytes("new")));
    TemporaryFile::removeAbandoned(open_.number());
    EXPECT_FALSE(std::filesystem::exists(left));
    EXPECT_TRUE(std::filesystem::exists(others));
    ASSERT_TRUE(file->publish("name"));
    EXPECT_EQ(contents(folder_.path() / "name"), "new");
}

TEST_P(TemporaryFileTest, LinkOfAnAbandonedFilesNameIsLeftAlone) {
    put(folder_.path() / "behind", "kept");
    const std::filesystem::path link = folder_.path() / ".trimora-0123456789abcdef.part";
    std::filesystem::create_symlink("behind", link);
    TemporaryFile::removeAbandoned(open_.number());
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(contents(folder_.path() / "behind"), "kept");
}

TEST_P(TemporaryFileTest, LeavesAFileOfThatNameAloneWhereAsked) {
    put(folder_.path() / "name", "theirs");
    {
        foundation::Result<TemporaryFile> file = TemporaryFile::create(open_.number(), 0600, GetParam());
        const foundation::Result<void> published = file->publish("name", Existing::keep);
        ASSERT_FALSE(published);
        EXPECT_EQ(published.error().code, EEXIST);
    }
    EXPECT_EQ(contents(folder_.path() / "name"), "theirs");
    EXPECT_EQ(entriesIn(folder_.path()), 1U);
}

INSTANTIATE_TEST_SUITE_P(BothWays, TemporaryFileTest,
                         ::testing::Values(TemporaryFile::Name::whenWhole, TemporaryFile::Name::atOnce),
                         [](const auto& way) {
                             return way.param == TemporaryFile::Name::atOnce ? "NamedAtOnce"
                                                                             : "NamedWhenWhole";
                         });

}  // namespace
}  // namespace trimora::files
