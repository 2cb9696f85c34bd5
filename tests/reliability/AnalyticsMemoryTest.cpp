#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <new>
#include <string>

#include "AllocationFaults.h"
#include "Processes.h"
#include "analytics/TelemetrixForTests.h"
#include "foundation/Log.h"
#include "testing/Depth.h"

// Usage analytics with memory running out at any allocation: the program that it is part of never notices,
// and what comes after is recorded again.
namespace trimora::reliability {
namespace {

using analytics::PropertyValues;
using analytics::Telemetrix;
using analytics::TelemetrixTest;

class AnalyticsMemory : public TelemetrixTest {
 protected:
    void SetUp() override {
        TelemetrixTest::SetUp();
        rememberLaunch();
    }

    /// What a program calls; nothing of the library may throw. The notifications are the program's own.
    void useLibrary() noexcept {
        Telemetrix::startSession();
        queues.settle();
        for (int i = 0; i < 4; ++i)
            Telemetrix::logEvent(button_, parameters_);
        Telemetrix::logTimedEvent(button_);
        Telemetrix::endTimedEvent(button_);
        queues.settle();
        for (const char* notification :
             {analytics::kNSWindowDidResignKeyNotification, analytics::kNSWindowDidBecomeKeyNotification}) {
            try {
                notifications.post(notification);
            } catch (const std::bad_alloc&) {
            }
            queues.settle();
        }
    }

    static constexpr int kNotRecording = 3;
    static constexpr int kLeaks = 4;
    /// In a process of its own: the use with the fault, and then whether the library records again, or, where
    /// that is asked, whether something of it is lost track of.
    [[nodiscard]] Ended endOf(std::int64_t number, bool forEver, bool lookForLeaks) {
        return inOwnProcess([&] {
            if (lookForLeaks)
                return leaks(number, forEver) ? kLeaks : 0;
            useWithFault(number, forEver);
            Telemetrix::startSession();
            Telemetrix::logEvent("after");
            settle();
            return hasEvent("after.") ? 0 : kNotRecording;
        });
    }
    void useWithFault(std::int64_t number, bool forEver) {
        {
            const AllocationFaults faults(number, forEver);
            useLibrary();
        }
        settle();
    }
    /// By how many blocks a use of the library in an empty home leaves the process larger once it has gone.
    [[nodiscard]] std::int64_t blocksLeftBy(std::int64_t number, bool forEver) {
        const std::int64_t before = AllocationFaults::liveBlocks();
        {
            analytics::FakeTransport ownTransport;  // what it notes of requests goes with it
            const std::filesystem::path own = home.path() / "leaks";
            std::filesystem::remove_all(own);
            installation = std::make_unique<analytics::Installation>(
                analytics::Wiring{queues, time, time, notifications, defaults, bundle, device, location,
                                  network, ownTransport, own, storeSettings});
            rememberLaunch();
            useWithFault(number, forEver);
            quit();
        }
        return AllocationFaults::liveBlocks() - before;
    }
    /// More than a use without a fault leaves, each time. What is made once and kept is not lost.
    [[nodiscard]] bool leaks(std::int64_t number, bool forEver) {
        foundation::log::setSink([](auto, auto) {});  // the test's own keeps every line
        quit();
        (void)blocksLeftBy(0, false);
        const std::int64_t usual = blocksLeftBy(0, false);
        constexpr int kTimes = 3;
        for (int i = 0; i < kTimes; ++i) {
            if (blocksLeftBy(number, forEver) <= usual)
                return false;
        }
        return true;
    }
    [[nodiscard]] static bool hasEvent(const std::string& name) {
        for (const auto& session : sessions()) {
            const auto all = names(session.name.value_or(""));
            if (std::find(all.begin(), all.end(), name) != all.end())
                return true;
        }
        return false;
    }

    const std::optional<std::string> button_ = "button";
    const analytics::Dictionary parameters_ = {{"name", "open"}, {"count", 1}};
};

TEST_F(AnalyticsMemory, ThatRunsOutCostsARecordAndNeverTheProgram) {
    std::int64_t total = 0;
    const Ended counted = inOwnProcess([&] {
        const AllocationFaults faults(0, false);
        useLibrary();
        std::FILE* const file = std::fopen((home.path() / "count").c_str(), "w");
        std::fprintf(file, "%lld", static_cast<long long>(AllocationFaults::count()));
        std::fclose(file);
        return 0;
    });
    ASSERT_EQ(counted.text(), "exit 0");
    std::FILE* const file = std::fopen((home.path() / "count").c_str(), "r");
    long long read = 0;
    ASSERT_EQ(std::fscanf(file, "%lld", &read), 1);
    std::fclose(file);
    total = read;
    constexpr int kBetweenLooks = 4;
    const int points = testing::byDepth(600, 3'000, 12'000);
    const std::int64_t stride = std::max<std::int64_t>(1, 2 * total / points);
    int tried = 0;
    int silent = 0;
    int looked = 0;
    for (const bool forEver : {false, true}) {
        for (std::int64_t number = 1; number <= total; number += stride) {
            const Ended ended = endOf(number, forEver, false);
            ++tried;
            if (tried % kBetweenLooks == 0) {
                ++looked;
                EXPECT_EQ(endOf(number, forEver, true).text(), "exit 0") << "leaks: allocation " << number;
            }
            silent += ended.exited && ended.status == kNotRecording ? 1 : 0;
            EXPECT_TRUE(ended.exited && (ended.status == 0 || ended.status == kNotRecording))
                << "allocation " << number << (forEver ? " and all after: " : ": ") << ended.text();
        }
    }
    std::printf("%lld allocations, %d points, %d without recording afterwards, %d looked at for leaks\n",
                static_cast<long long>(total), tried, silent, looked);
    EXPECT_LT(silent, tried / 10);
}

}  // namespace
}  // namespace trimora::reliability
