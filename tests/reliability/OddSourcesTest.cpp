#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "IoFaults.h"
#include "Mounts.h"
#include "Processes.h"
#include "SavingForTests.h"
#include "codecs/PictureFileDecoder.h"
#include "files/FilesForTests.h"
#include "testing/TemporaryFolder.h"

// Opening what is no file, or a file that somebody changes or a disk that breaks while it is read: a
// picture or one message, at once.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using cutengine::DecodedPicture;
using files::contents;
using files::put;
using foundation::Result;

class OddSources : public ::testing::Test {
 protected:
    OddSources() {
        EXPECT_TRUE(savePng(bandedPicture(120, 90).view(), file_));
        whole_ = contents(file_);
    }

    [[nodiscard]] Result<DecodedPicture> decode() { return decoder_.decode(file_); }
    /// The message at opening what stands under the name now; empty where it is a picture.
    [[nodiscard]] std::string refusal() {
        const Result<DecodedPicture> read = decode();
        return read ? "" : read.error().message;
    }
    void replaceBy(const std::function<void()>& make) const {
        fs::remove_all(file_);
        make();
    }
    void decodeWhile(const std::function<void()>& somebody, const std::function<void(std::string)>& check);

    testing::TemporaryFolder folder_;
    fs::path file_ = folder_.path() / "picture.png";
    std::string whole_;
    foundation::InlineWorkers workers_;
    codecs::PictureFileDecoder decoder_{workers_, codecs::PixelBudget(4'000'000)};
};

TEST_F(OddSources, WhatIsNoFileIsRefusedAtOnce) {
    replaceBy([&] { ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0); });
    EXPECT_EQ(refusal(), "it is not a regular file");
    replaceBy([&] { fs::create_directory(file_); });
    EXPECT_EQ(refusal(), "it is a folder");
    for (const char* device : {"/dev/zero", "/dev/null", "/dev/tty"}) {
        replaceBy([&] { fs::create_symlink(device, file_); });
        EXPECT_NE(refusal(), "") << device;
    }
    replaceBy([&] { fs::create_symlink("picture.png", file_); });
    EXPECT_EQ(refusal(), "the file cannot be read: Too many levels of symbolic links");
    replaceBy([&] { fs::create_symlink("nowhere", file_); });
    EXPECT_EQ(refusal(), "the file cannot be read: No such file or directory");
    // What the system makes up while it is read has no size.
    replaceBy([&] { fs::create_symlink("/proc/self/status", file_); });
    EXPECT_NE(refusal(), "");
    put(folder_.path() / "no folder", "");
    EXPECT_NE(decoder_.decode(folder_.path() / "no folder" / "picture.png").error().message, "");
}

TEST_F(OddSources, SocketIsRefusedAtOnce) {
    replaceBy([] {});
    const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, file_.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_NE(refusal(), "");
    ::close(listener);
}

TEST_F(OddSources, UnreadableFileIsRefused) {
    fs::permissions(file_, fs::perms::none);
    fs::permissions(folder_.path(), fs::perms(0755));
    const int outcome =
        asPlainAccount([&] { return refusal() == "the file cannot be read: Permission denied" ? 0 : 1; });
    if (outcome < 0)
        TRIMORA_SKIP("the account cannot be changed");
    EXPECT_EQ(outcome, 0);
}

/// Lets somebody do something to the file right before each call that reading it makes.
void OddSources::decodeWhile(const std::function<void()>& somebody,
                             const std::function<void(std::string)>& check) {
    std::size_t calls = 0;
    put(file_, whole_);
    {
        const IoFaults watcher;
        ASSERT_TRUE(decode());
        calls = watcher.calls().size();
    }
    ASSERT_GE(calls, 4U);
    for (std::size_t call = 1; call <= calls; ++call) {
        fs::remove_all(file_);
        put(file_, whole_);
        IoPlan plan;
        plan.call = static_cast<int>(call);
        plan.before = somebody;
        const IoFaults faults(plan);
        const Result<DecodedPicture> read = decode();
        SCOPED_TRACE("before call " + std::to_string(call));
        check(read ? read->notice : read.error().message);
    }
}

TEST_F(OddSources, FileThatGrowsMeanwhileIsReadAsItWas) {
    decodeWhile([&] { put(file_, whole_ + whole_ + whole_); },
                [](const std::string& message) { EXPECT_EQ(message, ""); });
}

TEST_F(OddSources, FileThatShrinksMeanwhileIsReadOrTold) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{40}, whole_.size() / 2}) {
        int told = 0;
        decodeWhile([&] { fs::resize_file(file_, size); },
                    [&](const std::string& message) { told += message.empty() ? 0 : 1; });
        EXPECT_GE(told, 3);
    }
}

TEST_F(OddSources, FileThatIsReplacedOrDeletedMeanwhileIsReadOrTold) {
    const fs::path other = folder_.path() / "other.png";
    ASSERT_TRUE(savePng(bandedPicture(50, 40).view(), other));
    const std::string otherBytes = contents(other);
    decodeWhile(
        [&] {
            put(other, otherBytes);
            fs::rename(other, file_);
        },
        [](const std::string& message) { EXPECT_EQ(message, ""); });
    decodeWhile([&] { fs::remove(file_); },
                [](const std::string& message) {
                    EXPECT_THAT(message,
                                ::testing::AnyOf("", "the file cannot be read: No such file or directory"));
                });
}

TEST_F(OddSources, DiskThatFailsAtAnyCallGivesOneMessage) {
    std::vector<IoCall> calls;
    {
        const IoFaults watcher;
        ASSERT_TRUE(decode());
        calls = watcher.calls();
    }
    const int open = openFiles();
    for (const IoPlan& plan : plansFor(calls)) {
        if (plan.fault == IoFault::kill)
            continue;
        const IoFaults faults(plan);
        const Result<DecodedPicture> read = decode();
        SCOPED_TRACE(describe(plan, calls));
        if (plan.fault == IoFault::ioError && calls[static_cast<std::size_t>(plan.call) - 1].name != "close")
            EXPECT_EQ(read ? "" : read.error().message, "the file cannot be read: Input/output error");
        else
            EXPECT_TRUE(read) << read.error().message;
    }
    EXPECT_EQ(openFiles(), open);
}

}  // namespace
}  // namespace trimora::reliability
