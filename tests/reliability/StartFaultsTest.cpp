#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "IoFaults.h"
#include "analytics/TelemetrixForTests.h"
#include "files/FilesForTests.h"
#include "testing/Depth.h"

// A start of the usage analytics, with what earlier runs left, and every call for a file failing in every
// way: nothing of theirs is lost, and none of it goes out in part.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using analytics::TelemetrixTest;
using ::testing::Contains;
using ::testing::SizeIs;

class StartIoFaults : public TelemetrixTest {
 protected:
    /// Every start from now on finds the home as it is.
    void keepAsItIs() {
        quit();
        fs::copy(folder(), kept_, fs::copy_options::recursive);
    }
    /// Starts once with each fault, and a minute later with none; `check` looks at the second.
    void startWithEveryFault(const std::function<void()>& check) {
        std::vector<IoCall> calls;
        startAfresh({}, &calls);
        std::vector<IoPlan> plans = plansFor(calls);
        // A kill here is as one by the clock, of which there is a test.
        std::erase_if(plans, [](const IoPlan& plan) { return plan.fault == IoFault::kill; });
        const auto stride = static_cast<std::size_t>(testing::byDepth(3, 1, 1));
        int points = 0;
        for (std::size_t i = 0; i < plans.size(); i += stride) {
            const IoPlan& plan = plans[i];
            SCOPED_TRACE(describe(plan, calls));
            startAfresh(plan, nullptr);
            time.advance(60, [] {});
            install();
            start();
            check();
            ++points;
            if (HasFailure())
                return;
        }
        std::printf("%zu calls, %d points\n", calls.size(), points);
    }
    [[nodiscard]] fs::path folder() const { return home.path() / "Trimora"; }

 private:
    void startAfresh(const IoPlan& plan, std::vector<IoCall>* calls) {
        quit();
        fs::remove_all(folder());
        fs::copy(kept_, folder(), fs::copy_options::recursive);
        defaults.values.clear();
        {
            const IoFaults faults(plan);
            install();
            start();
            if (calls != nullptr)
                *calls = faults.calls();
        }
        quit();
    }

    testing::TemporaryFolder elsewhere_;
    fs::path kept_ = elsewhere_.path() / "kept";
};

TEST_F(StartIoFaults, FinishedSessionIsSentWholeThenOrLater) {
    leaveSession("finished", 1, 50);
    const std::string more = R"({"event":")" + std::string(3'000, 'x') + R"("})";
    analytics::TXEvent event{0, "finished", more};
    ASSERT_TRUE(context().save(event));
    keepAsItIs();
    transport.answer = 200;
    std::size_t before = 0;
    startWithEveryFault([&] {
        advance(200);
        const auto requests = transport.requests();
        const auto sessions = posted();
        int sent = 0;
        for (std::size_t i = before; i < requests.size(); ++i) {
            if (sessions[i] != "finished")
                continue;
            EXPECT_EQ(requests[i].body, R"([{"event":"of finished"},)" + more + "]");
            ++sent;
        }
        EXPECT_GT(sent, 0) << "never sent";
        EXPECT_EQ(statusOf("finished"), -1) << "not forgotten";
        before = requests.size();
    });
}

TEST_F(StartIoFaults, CrashThatAnotherStartLeftIsRecordedOnce) {
    leaveSession("crashed", 0, 50);
    files::put(folder() / "telemetrix-1.crash", "session crashed\nsignal 11\n");
    keepAsItIs();
    startWithEveryFault([&] {
        EXPECT_THAT(names("crashed"), SizeIs(2)) << "the event that was there, and the crash";
        EXPECT_THAT(names("crashed"), Contains("app_crash"));
        EXPECT_FALSE(fs::exists(folder() / "telemetrix-1.crash"));
    });
}

}  // namespace
}  // namespace trimora::reliability
