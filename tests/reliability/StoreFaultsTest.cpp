#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <array>
#include <atomic>
#include <map>
#include <string>
#include <vector>

#include "IoFaults.h"
#include "Processes.h"
#include "WholeStore.h"
#include "analytics/store/ManagedObjectContext.h"
#include "analytics/store/StoreCoordinator.h"
#include "foundation/VirtualTime.h"
#include "testing/CapturedLog.h"
#include "testing/TemporaryFolder.h"

// The event store with every call for a file failing in every way: what it said it has stored is there once,
// and when the fault is over it works as before.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using analytics::ManagedObjectContext;
using analytics::PropertyValues;
using analytics::StoreCoordinator;
using analytics::TXEvent;
using analytics::TXSSID;

constexpr int kKept = 24;    ///< events that the script stores and keeps
constexpr int kRemoved = 6;  ///< events of a session that it removes again
constexpr int kGroup = 8;    ///< events that it stores at a time, after the first few

/// What a script was told, kept where a killed process leaves it.
struct Told {
    std::array<std::atomic<bool>, kKept> stored;
    std::atomic<bool> removed;
};

class SharedTold {
 public:
    SharedTold()
        : told_(static_cast<Told*>(
              ::mmap(nullptr, sizeof(Told), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {}
    ~SharedTold() { ::munmap(told_, sizeof(Told)); }
    SharedTold(const SharedTold&) = delete;
    SharedTold& operator=(const SharedTold&) = delete;
    [[nodiscard]] Told& operator*() const { return *told_; }
    void forget() {
        for (auto& one : told_->stored)
            one = false;
        told_->removed = false;
    }

 private:
    Told* told_;
};

class StoreIoFaults : public ::testing::Test {
 protected:
    /// Opens a store, works in it and closes it.
    void runScript(Told& told) const {
        StoreCoordinator coordinator(file_, {}, clock_);
        ManagedObjectContext context(coordinator);
        TXSSID session;
        session.name = "A";
        (void)context.save(session);
        for (int i = 0; i < kKept;) {
            const int end = i < kGroup ? i + 1 : i + kGroup;
            const auto stored = context.performAndWait([&] {
                for (int n = i; n < end; ++n) {
                    TXEvent event{0, "A", std::to_string(n) + std::string(2'000, 'x')};
                    if (auto one = context.save(event); !one)
                        return one;
                }
                return foundation::Result<void>();
            });
            for (; i < end; ++i)
                told.stored[static_cast<std::size_t>(i)] = stored.ok();
        }
        for (int n = 0; n < kRemoved; ++n) {
            TXEvent event{0, "B", std::to_string(n)};
            (void)context.save(event);
        }
        told.removed = context.removeEventsOfSession("B").ok();
        session.status = 1;
        (void)context.save(session);
    }

    void check(const Told& told) const {
        StoreCoordinator coordinator(file_, {}, clock_);
        ManagedObjectContext context(coordinator);
        const auto events = context.eventsOfSession("A", PropertyValues::fetched);
        ASSERT_TRUE(events) << events.error().message;
        std::map<int, int> found;
        for (const TXEvent& event : *events)
            ++found[std::stoi(event.body.value_or("-1"))];
        for (int n = 0; n < kKept; ++n) {
            if (told.stored[static_cast<std::size_t>(n)])
                EXPECT_EQ(found[n], 1) << "event " << n;
            else
                EXPECT_LE(found[n], 1) << "event " << n;
        }
        const auto removed = context.eventsOfSession("B", PropertyValues::left);
        EXPECT_TRUE(removed && (!told.removed || removed->empty()));
        expectWholeStore(coordinator, file_);
    }

    testing::TemporaryFolder home_;
    fs::path file_ = home_.path() / "store" / "telemetrix.db";
    foundation::VirtualTime clock_;
    testing::CapturedLog log_;
};

TEST_F(StoreIoFaults, LoseNothingThatWasStored) {
    SharedTold told;
    std::vector<IoCall> calls;
    {
        const IoFaults watcher;
        runScript(*told);
        calls = watcher.calls();
    }
    check(*told);
    for (const auto& stored : (*told).stored)
        ASSERT_TRUE(stored);
    int points = 0;
    int lost = 0;
    for (const IoPlan& plan : plansFor(calls)) {
        fs::remove_all(file_.parent_path());
        told.forget();
        const auto run = [&] {
            const IoFaults faults(plan);
            runScript(*told);
            return 0;
        };
        if (plan.fault == IoFault::kill) {
            EXPECT_TRUE(inOwnProcess(run).wasKilled());
        } else {
            run();
        }
        SCOPED_TRACE(describe(plan, calls));
        check(*told);
        for (const auto& stored : (*told).stored)
            lost += stored ? 0 : 1;
        if (plan.fault == IoFault::partly || plan.fault == IoFault::interrupted) {
            EXPECT_TRUE((*told).stored.back() && (*told).removed);
        }
        ++points;
        if (HasFailure())
            return;
    }
    std::printf("%zu calls, %d points, %d events not stored and told so\n", calls.size(), points, lost);
}

}  // namespace
}  // namespace trimora::reliability
