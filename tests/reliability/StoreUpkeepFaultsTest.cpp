#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "IoFaults.h"
#include "Processes.h"
#include "WholeStore.h"
#include "analytics/session/ReportedStoreForTests.h"
#include "analytics/session/StoreReport.h"
#include "files/FilesForTests.h"

// A store that has to make room, one that is found damaged, and one that is only looked at, with every call
// for a file failing in every way.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using analytics::ManagedObjectContext;
using analytics::PropertyValues;
using analytics::StoreCoordinator;
using analytics::StoreSettings;
using analytics::TXEvent;
using analytics::TXSSID;
using ::testing::AnyOf;

class FullStoreIoFaults : public ::testing::Test {
 protected:
    static constexpr int kEvents = 8;  ///< of each session
    /// With the one more that another program leaves.
    static constexpr const char* kFound = "oldest 8, older 8, old 8, now 8, none 9";

    /// Three finished sessions, one that goes on, and events of none.
    void SetUp() override {
        StoreCoordinator coordinator(file_, {}, clock_);
        ManagedObjectContext context(coordinator);
        double changed = 1'000;
        for (const char* name : {"oldest", "older", "old", "now"}) {
            TXSSID session{0, name, std::string(name) == "now" ? 0 : 1, changed++, 0};
            ASSERT_TRUE(context.save(session));
        }
        for (const char* name : {"oldest", "older", "old", "now", "nobody"}) {
            for (int i = 0; i < kEvents; ++i)
                ASSERT_TRUE(saveEvent(context, name));
        }
    }
    static bool saveEvent(ManagedObjectContext context, const char* session) {
        TXEvent event{0, session, std::string(2'000, 'x')};
        return context.save(event).ok();
    }
    /// As kFound; the events of no session last.
    static std::string contentsOf(ManagedObjectContext& context) {
        std::string text;
        const auto sessions = context.allSessions(PropertyValues::fetched);
        for (const TXSSID& session : sessions.value()) {
            const auto events = context.eventsOfSession(session.name.value_or(""), PropertyValues::left);
            text += session.name.value_or("") + " " + std::to_string(events.value().size()) + ", ";
        }
        return text + "none " + std::to_string(context.eventsOfNoSession().value().size());
    }

    /// Opens the store with limits that leave room for the session alone that goes on, and saves one event
    /// more. Another program has written meanwhile, so that nothing is known without looking at the disk.
    std::vector<IoCall> saveOneMore(const IoPlan& plan, bool& saved) {
        StoreSettings limits;
        limits.maxEvents = kEvents + 2;
        StoreCoordinator coordinator(file_, limits, clock_);
        ManagedObjectContext context(coordinator);
        EXPECT_TRUE(context.sessionsWithStatus(0, PropertyValues::left));
        StoreCoordinator another(file_, {}, clock_);
        EXPECT_TRUE(saveEvent(ManagedObjectContext(another), "nobody"));
        std::vector<IoCall> calls;
        {
            const IoFaults faults(plan);
            saved = saveEvent(context, "now");
            calls = faults.calls();
        }
        EXPECT_TRUE(saveEvent(context, "now")) << "the fault is over";
        return calls;
    }
    /// All room is made or none, and never at the cost of what goes on.
    void check(bool wasKilled, bool saved) {
        StoreCoordinator coordinator(file_, {}, clock_);
        ManagedObjectContext context(coordinator);
        const std::string now = contentsOf(context);
        if (wasKilled)
            EXPECT_THAT(now, AnyOf(kFound, "now 9, none 0"));
        else if (saved)
            EXPECT_EQ(now, "now 10, none 0");
        else
            EXPECT_THAT(now, AnyOf("now 9, none 0", "now 10, none 0"));
        expectWholeStore(coordinator, file_);
    }

    testing::TemporaryFolder home_;
    fs::path file_ = home_.path() / "store" / "telemetrix.db";
    foundation::VirtualTime clock_;
    testing::CapturedLog log_;
};

TEST_F(FullStoreIoFaults, RoomIsMadeWhollyOrNotAtAll) {
    const std::string before = files::contents(file_);
    bool saved = false;
    const std::vector<IoCall> calls = saveOneMore({}, saved);
    ASSERT_TRUE(saved);
    check(false, saved);
    int points = 0;
    int refused = 0;
    for (const IoPlan& plan : plansFor(calls)) {
        SCOPED_TRACE(describe(plan, calls));
        fs::remove_all(file_.parent_path());
        fs::create_directory(file_.parent_path());
        files::put(file_, before);
        const bool kills = plan.fault == IoFault::kill;
        if (kills) {
            EXPECT_TRUE(inOwnProcess([&] { return (void)saveOneMore(plan, saved), 0; }).wasKilled());
        } else {
            (void)saveOneMore(plan, saved);
            refused += saved ? 0 : 1;
        }
        check(kills, saved);
        ++points;
        if (HasFailure())
            return;
    }
    std::printf("%zu calls, %d points, %d events not stored and told so\n", calls.size(), points, refused);
}

TEST(DamagedStoreIoFaults, WhatIsThereIsKeptAsideAndANewOneBegunThenOrLater) {
    const testing::TemporaryFolder home;
    const fs::path file = home.path() / "store" / "telemetrix.db";
    const std::string damaged(5'000, 'z');
    const foundation::VirtualTime clock;
    const testing::CapturedLog log;
    const auto open = [&](const IoPlan& plan) {
        fs::remove_all(file.parent_path());
        fs::create_directory(file.parent_path());
        files::put(file, damaged);
        const IoFaults faults(plan);
        StoreCoordinator coordinator(file, {}, clock);
        TXEvent event{0, "A", "stored or not"};
        (void)ManagedObjectContext(coordinator).save(event);
        return faults.calls();
    };
    const std::vector<IoCall> calls = open({});
    int points = 0;
    for (const IoPlan& plan : plansFor(calls)) {
        SCOPED_TRACE(describe(plan, calls));
        if (plan.fault == IoFault::kill)
            EXPECT_TRUE(inOwnProcess([&] { return (void)open(plan), 0; }).wasKilled());
        else
            (void)open(plan);
        StoreCoordinator coordinator(file, {}, clock);
        TXEvent event{0, "A", "stored"};
        EXPECT_TRUE(ManagedObjectContext(coordinator).save(event));
        EXPECT_EQ(analytics::integrityOf(coordinator), "ok");
        int kept = 0;
        for (const fs::path& aside : analytics::movedAsideFrom(file))
            kept += files::contents(aside) == damaged ? 1 : 0;
        EXPECT_EQ(kept, 1);
        ++points;
        if (::testing::Test::HasFailure())
            return;
    }
    std::printf("%zu calls, %d points\n", calls.size(), points);
}

class ReportIoFaults : public analytics::ReportedStoreTest {
 protected:
    foundation::Result<void> report(std::string& text) const {
        StoreCoordinator coordinator(file, {.access = StoreSettings::Access::readOnly}, clock);
        ManagedObjectContext store(coordinator);
        std::ostringstream out;
        const auto done = printStore(store, analytics::EventForm::readable, out);
        text = out.str();
        return done;
    }
};

TEST_F(ReportIoFaults, ReportIsWholeOrSaysWhyNotAndTouchesNothing) {
    const std::string before = files::contents(file);
    std::string whole;
    std::vector<IoCall> calls;
    {
        const IoFaults watcher;
        ASSERT_TRUE(report(whole));
        calls = watcher.calls();
    }
    int points = 0;
    int failed = 0;
    for (const IoPlan& plan : plansFor(calls)) {
        if (plan.fault == IoFault::kill)
            continue;
        SCOPED_TRACE(describe(plan, calls));
        std::string text;
        foundation::Result<void> done;
        {
            const IoFaults faults(plan);
            done = report(text);
        }
        if (done)
            EXPECT_EQ(text, whole);
        else
            EXPECT_FALSE(done.error().message.empty());
        EXPECT_EQ(files::contents(file), before);
        ++points;
        failed += done ? 0 : 1;
    }
    std::printf("%zu calls, %d points, %d reports that said why not\n", calls.size(), points, failed);
}

}  // namespace
}  // namespace trimora::reliability
