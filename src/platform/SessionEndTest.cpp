#include "platform/SessionEnd.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QSessionManager>
#include <array>
#include <csignal>
#include <cstddef>

#include "platform/BusForTests.h"

namespace trimora::platform {
namespace {

class SessionEndTest : public ::testing::TestWithParam<int> {};

TEST_P(SessionEndTest, ASignalEndsTheProgramFromItsEventLoop) {
    int ended = 0;
    const auto sessionEnd = SessionEnd::create([&] { ++ended; });
    ASSERT_TRUE(sessionEnd);
    ASSERT_EQ(std::raise(GetParam()), 0);
    EXPECT_EQ(ended, 0);
    pumpUntil([&] { return ended > 0; });
    EXPECT_EQ(ended, 1);
}

TEST_P(SessionEndTest, ASecondSignalFindsTheSystemsOwnWay) {
    const auto sessionEnd = SessionEnd::create([] {});
    ASSERT_TRUE(sessionEnd);
    ASSERT_EQ(std::raise(GetParam()), 0);
    struct sigaction now {};
    ::sigaction(GetParam(), nullptr, &now);
    EXPECT_EQ(now.sa_handler, SIG_DFL);
}

TEST_P(SessionEndTest, GivesTheSignalsBackWhenItGoes) {
    struct sigaction before {};
    struct sigaction after {};
    ::sigaction(GetParam(), nullptr, &before);
    {
        const auto sessionEnd = SessionEnd::create([] {});
    }
    ::sigaction(GetParam(), nullptr, &after);
    EXPECT_EQ(before.sa_handler, after.sa_handler);
}

TEST_P(SessionEndTest, ASignalThatIsIgnoredStaysSo) {
    const auto before = std::signal(GetParam(), SIG_IGN);
    bool ended = false;
    {
        const auto sessionEnd = SessionEnd::create([&] { ended = true; });
        ASSERT_EQ(std::raise(GetParam()), 0);
        QCoreApplication::processEvents();
    }
    EXPECT_FALSE(ended);
    (void)std::signal(GetParam(), before);
}

INSTANTIATE_TEST_SUITE_P(Signals, SessionEndTest, ::testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(SessionEnd, AskedToPutDataAwayTheProgramGoesOnAsTheLogOutMayBeCancelled) {
    int ended = 0;
    const auto sessionEnd = SessionEnd::create([&] { ++ended; });
    ASSERT_TRUE(sessionEnd);
    // Nobody looks at the signal's argument, of which the toolkit lets nobody make one.
    alignas(QSessionManager) std::array<std::byte, sizeof(QSessionManager)> noManager{};
    emit qGuiApp->commitDataRequest(reinterpret_cast<QSessionManager&>(noManager));
    QCoreApplication::processEvents();
    EXPECT_EQ(ended, 0);
    ASSERT_EQ(std::raise(SIGTERM), 0);
    pumpUntil([&] { return ended > 0; });
}

}  // namespace
}  // namespace trimora::platform
