#include "files/RegularFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "files/FilesForTests.h"
#include "testing/TemporaryFolder.h"

namespace trimora::files {
namespace {

constexpr std::size_t kLimit = 1000;

class RegularFile : public ::testing::Test {
 protected:
    testing::TemporaryFolder folder_;
    std::filesystem::path file_ = folder_.path() / "file";
};

TEST_F(RegularFile, IsReadWhole) {
    put(file_, "all of it");
    EXPECT_EQ(text(readRegularFile(file_, kLimit)->view()), "all of it");
}

TEST_F(RegularFile, MayBeEmpty) {
    put(file_, "");
    EXPECT_EQ(readRegularFile(file_, kLimit)->size(), 0U);
}

TEST_F(RegularFile, OfExactlyTheLimitIsReadAndOneByteMoreIsRefused) {
    put(file_, std::string(kLimit, 'x'));
    EXPECT_EQ(readRegularFile(file_, kLimit)->size(), kLimit);
    put(file_, std::string(kLimit + 1, 'x'));
    const auto refused = readRegularFile(file_, kLimit);
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().message, "the file is larger than 1000 bytes");
}

TEST_F(RegularFile, ThatIsMissingGivesTheReason) {
    const auto missing = readRegularFile(file_, kLimit);
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().code, ENOENT);
    EXPECT_EQ(missing.error().message, "the file cannot be read: No such file or directory");
}

TEST_F(RegularFile, IsNotAFolder) {
    EXPECT_EQ(readRegularFile(folder_.path(), kLimit).error().message, "it is a folder");
}

TEST_F(RegularFile, IsNotAPipeAndAPipeWithoutAWriterDoesNotBlock) {
    ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0);
    EXPECT_EQ(readRegularFile(file_, kLimit).error().message, "it is not a regular file");
}

TEST_F(RegularFile, IsNotADevice) {
    EXPECT_EQ(readRegularFile("/dev/zero", kLimit).error().message, "it is not a regular file");
}

TEST_F(RegularFile, IsNotASocket) {
    const FileDescriptor listener(::socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, file_.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(listener.number(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_FALSE(readRegularFile(file_, kLimit));
}

TEST_F(RegularFile, IsFollowedThroughALinkOnlyWhereThatIsAsked) {
    put(file_, "behind");
    const std::filesystem::path link = folder_.path() / "link";
    std::filesystem::create_symlink(file_, link);
    EXPECT_TRUE(readRegularFile(link, kLimit));
    EXPECT_FALSE(openRegularFileAt(AT_FDCWD, link.c_str(), Links::refuse));
}

TEST_F(RegularFile, ThatShrinksAfterOpeningGivesWhatIsLeft) {
    put(file_, "long contents");
    const auto open = openRegularFileAt(AT_FDCWD, file_.c_str(), Links::follow);
    ASSERT_TRUE(open);
    ASSERT_EQ(::truncate(file_.c_str(), 4), 0);
    EXPECT_EQ(text(readAll(*open, kLimit)->view()), "long");
}

TEST_F(RegularFile, ThatIsReplacedAfterOpeningGivesTheOldContents) {
    put(file_, "old");
    const auto open = openRegularFileAt(AT_FDCWD, file_.c_str(), Links::follow);
    std::filesystem::remove(file_);
    put(file_, "new");
    EXPECT_EQ(text(readAll(*open, kLimit)->view()), "old");
}

}  // namespace
}  // namespace trimora::files
