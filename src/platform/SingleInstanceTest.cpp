#include "platform/SingleInstance.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <QDBusPendingCall>
#include <QFile>
#include <atomic>
#include <cerrno>
#include <fstream>
#include <memory>
#include <thread>

#include "platform/BusForTests.h"
#include "platform/LocalSocket.h"
#include "testing/CapturedLog.h"
#include "testing/TemporaryFolder.h"

namespace trimora::platform {
namespace {

using std::filesystem::path;
using Launch = SingleInstance::Launch;

/// Both places where processes can meet; a bus or none is what the parameter says.
class SingleInstanceTest : public ::testing::TestWithParam<bool> {
 protected:
    SingleInstanceTest() {
        if (GetParam())
            bus_ = std::make_unique<BusForTests>();
    }

    SingleInstance::Meeting meeting() {
        return {bus_ ? bus_->connect() : QDBusConnection("there is none"), folder_.path() / "runtime"};
    }

    /// A process that starts later, as a thread of its own; the first one's loop runs meanwhile.
    static Launch startLater(const SingleInstance::Meeting& meeting, const LaunchRequest& request) {
        std::atomic<bool> done = false;
        Launch result = Launch::first;
        std::thread later([&] {
            result = SingleInstance(meeting).launch(request);
            done = true;
        });
        pumpUntil([&] { return done.load(); });
        later.join();
        return result;
    }

    void keepRequests(SingleInstance& instance) {
        instance.onLaunch([this](const LaunchRequest& request) { requests_.push_back(request); });
    }

    testing::TemporaryFolder folder_;
    std::unique_ptr<BusForTests> bus_;
    std::vector<LaunchRequest> requests_;
};

TEST_P(SingleInstanceTest, TheFirstServesAndLaterOnesHandOverTheirFiles) {
    SingleInstance first(meeting());
    ASSERT_EQ(first.launch({{"of its own.png"}}), Launch::first);
    keepRequests(first);
    const path odd = "/odd \xff name, 50% #1.png";
    EXPECT_EQ(startLater(meeting(), {{odd, "../b.png"}, "", "token-3"}), Launch::handedOver);
    ASSERT_EQ(requests_.size(), 1U);
    EXPECT_EQ(requests_[0].files,
              (std::vector<path>{odd, std::filesystem::current_path().parent_path() / "b.png"}));
    EXPECT_EQ(requests_[0].action, "");
    EXPECT_EQ(requests_[0].activationToken, "token-3");
}

TEST_P(SingleInstanceTest, AStartWithNothingToOpenAndAnActionArriveToo) {
    SingleInstance first(meeting());
    ASSERT_EQ(first.launch({}), Launch::first);
    keepRequests(first);
    EXPECT_EQ(startLater(meeting(), {}), Launch::handedOver);
    EXPECT_EQ(startLater(meeting(), {{}, "show", "token-4"}), Launch::handedOver);
    ASSERT_EQ(requests_.size(), 2U);
    EXPECT_TRUE(requests_[0].files.empty() && requests_[0].action.empty());
    EXPECT_EQ(requests_[0].activationToken, "");
    EXPECT_EQ(requests_[1].action, "show");
    EXPECT_EQ(requests_[1].activationToken, "token-4");
}

TEST_P(SingleInstanceTest, WhatComesBeforeAnybodyListensIsToldLater) {
    SingleInstance first(meeting());
    ASSERT_EQ(first.launch({}), Launch::first);
    EXPECT_EQ(startLater(meeting(), {{"/a.png"}}), Launch::handedOver);
    EXPECT_EQ(startLater(meeting(), {{"/b.png"}}), Launch::handedOver);
    keepRequests(first);
    ASSERT_EQ(requests_.size(), 2U);
    EXPECT_EQ(requests_[0].files, std::vector<path>{"/a.png"});
    EXPECT_EQ(requests_[1].files, std::vector<path>{"/b.png"});
}

TEST_P(SingleInstanceTest, WhenTheFirstHasGoneTheNextIsFirst) {
    {
        SingleInstance gone(meeting());
        ASSERT_EQ(gone.launch({}), Launch::first);
    }
    SingleInstance next(meeting());
    EXPECT_EQ(next.launch({}), Launch::first);
}

TEST_P(SingleInstanceTest, OneThatDoesNotAnswerIsNotWaitedForTooLong) {
    const testing::CapturedLog log;
    SingleInstance first(meeting());
    ASSERT_EQ(first.launch({}), Launch::first);
    auto impatient = meeting();
    impatient.patience = std::chrono::milliseconds(50);
    SingleInstance later(impatient);  // on the same thread: the first one's loop stands still
    EXPECT_EQ(later.launch({{"/a.png"}}), Launch::alone);
    EXPECT_TRUE(log.contains("does not answer"));
}

INSTANTIATE_TEST_SUITE_P(Meeting, SingleInstanceTest, ::testing::Bool(),
                         [](const auto& with) { return with.param ? "OnTheBus" : "AtTheSocket"; });

class BusApplicationTest : public ::testing::Test {
 protected:
    static constexpr const char* kInterface = "org.freedesktop.Application";

    QDBusMessage call(const char* method, const QVariantList& arguments) {
        QDBusMessage message =
            QDBusMessage::createMethodCall("org.trimora.Trimora", "/org/trimora/Trimora", kInterface, method);
        message.setArguments(arguments);
        QDBusPendingCall answer = launcher_.asyncCall(message);
        pumpUntil([&] { return answer.isFinished(); });
        return answer.reply();
    }

    BusForTests bus_;
    QDBusConnection launcher_ = bus_.connect();
    std::vector<LaunchRequest> requests_;
    BusApplication application_{"org.trimora.Trimora", bus_.connect(),
                                [this](const LaunchRequest& request) { requests_.push_back(request); }};
};

TEST_F(BusApplicationTest, ALauncherFindsItByItsNameAndPath) {
    const testing::CapturedLog log;
    ASSERT_EQ(application_.claim(), BusApplication::Claim::first);
    const QVariantMap data{{"desktop-startup-id", "old-token"}};
    EXPECT_EQ(call("Activate", {data}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(call("Open", {QStringList{"file:///a%20b.png", "https://example.org/c.png"}, data}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(call("ActivateAction", {"new", QVariantList(), QVariantMap()}).type(),
              QDBusMessage::ReplyMessage);
    ASSERT_EQ(requests_.size(), 3U);
    EXPECT_EQ(requests_[0].activationToken, "old-token");
    EXPECT_EQ(requests_[1].files, std::vector<path>{"/a b.png"});
    EXPECT_EQ(requests_[2].action, "new");
    EXPECT_TRUE(log.contains("https://example.org/c.png"));
}

TEST_F(BusApplicationTest, CallsThatTheInterfaceDoesNotHaveAreRefused) {
    ASSERT_EQ(application_.claim(), BusApplication::Claim::first);
    EXPECT_EQ(call("Activate", {"no dictionary"}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call("Vanish", {}).type(), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(requests_.empty());
}

TEST_F(BusApplicationTest, DescribesItself) {
    ASSERT_EQ(application_.claim(), BusApplication::Claim::first);
    QDBusPendingCall answer = launcher_.asyncCall(QDBusMessage::createMethodCall(
        "org.trimora.Trimora", "/org/trimora/Trimora", "org.freedesktop.DBus.Introspectable", "Introspect"));
    pumpUntil([&] { return answer.isFinished(); });
    EXPECT_TRUE(answer.reply().arguments().value(0).toString().contains(kInterface));
}

class SocketApplicationTest : public ::testing::Test {
 protected:
    SocketApplication make() {
        return {folder_.path() / "runtime", [this](const auto& request) { requests_.push_back(request); }};
    }
    [[nodiscard]] path socket() const { return folder_.path() / "runtime" / "instance.socket"; }

    /// As another process would, on a thread of its own, while events are served here.
    foundation::Result<void> handOverFrom(SocketApplication& application, const LaunchRequest& request) {
        std::atomic<bool> done = false;
        foundation::Result<void> handed;
        std::thread other([&] {
            handed = application.handOver(request, std::chrono::seconds(60));
            done = true;
        });
        pumpUntil([&] { return done.load(); });
        other.join();
        return handed;
    }

    testing::TemporaryFolder folder_;
    std::vector<LaunchRequest> requests_;
};

TEST_F(SocketApplicationTest, OnlyTheAccountItselfCanReachIt) {
    SocketApplication application = make();
    ASSERT_EQ(application.claim(), SocketApplication::Claim::first);
    struct stat status {};
    ASSERT_EQ(::stat(socket().c_str(), &status), 0);
    EXPECT_TRUE(S_ISSOCK(status.st_mode));
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    ASSERT_EQ(::stat(socket().parent_path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(SocketApplicationTest, ASocketThatAKilledProcessLeftIsReplaced) {
    std::filesystem::create_directories(socket().parent_path());
    const int stale = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socket().string().copy(static_cast<char*>(address.sun_path), sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(stale, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(stale);
    ASSERT_TRUE(std::filesystem::exists(socket()));

    SocketApplication application = make();
    EXPECT_EQ(application.claim(), SocketApplication::Claim::first);
    EXPECT_TRUE(connectTo(socket()).ok());
}

TEST_F(SocketApplicationTest, TakesItsSocketAwayWhenItGoes) {
    {
        SocketApplication application = make();
        ASSERT_EQ(application.claim(), SocketApplication::Claim::first);
    }
    EXPECT_FALSE(std::filesystem::exists(socket()));
}

TEST_F(SocketApplicationTest, AFolderThatIsNoneIsToldAndLeavesTheProcessAlone) {
    const testing::CapturedLog log;
    std::ofstream(folder_.path() / "runtime") << "a file";
    EXPECT_EQ(make().claim(), SocketApplication::Claim::impossible);
    EXPECT_TRUE(log.contains("no folder for the socket"));
}

TEST_F(SocketApplicationTest, OneWhoLeavesInTheMiddleAsksForNothing) {
    SocketApplication application = make();
    ASSERT_EQ(application.claim(), SocketApplication::Claim::first);
    {
        const auto peer = connectTo(socket());
        ASSERT_TRUE(peer.ok());
        ASSERT_EQ(::send(peer->number(), "\0\0", 2, MSG_NOSIGNAL), 2);
    }
    ASSERT_TRUE(handOverFrom(application, {{"/p/cat.png"}}).ok());
    ASSERT_EQ(requests_.size(), 1U);
    EXPECT_EQ(requests_.front().files.front(), "/p/cat.png");
}

TEST_F(SocketApplicationTest, ANameThatIsTooLongForASocketIsTold) {
    const testing::CapturedLog log;
    SocketApplication application({folder_.path() / std::string(100, 'x')}, {});
    EXPECT_EQ(application.claim(), SocketApplication::Claim::impossible);
    EXPECT_TRUE(log.contains("no room for its name"));
}

TEST_F(SocketApplicationTest, NonsenseIsCutOffAndAsksForNothing) {
    SocketApplication application = make();
    ASSERT_EQ(application.claim(), SocketApplication::Claim::first);
    const auto peer = connectTo(socket());
    ASSERT_TRUE(peer.ok());
    const QByteArray nonsense(1 << 16, '\x7f');
    pumpUntil([&] {
        const auto sent = ::send(peer->number(), nonsense.constData(),
                                 static_cast<std::size_t>(nonsense.size()), MSG_NOSIGNAL);
        return sent < 0 && errno == EPIPE;
    });
    EXPECT_TRUE(requests_.empty());
}

}  // namespace
}  // namespace trimora::platform
