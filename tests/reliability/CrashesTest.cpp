#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "AllocationFaults.h"
#include "EngineUse.h"
#include "Processes.h"
#include "analytics/TelemetrixForTests.h"
#include "files/FilesForTests.h"
#include "foundation/RealTime.h"
#include "foundation/ThreadQueues.h"
#include "host/IniUserDefaults.h"

// A program that comes to grief in any way at any place: it is gone at once, and its next start records the
// crash once, in the session in which it happened, in words that name nobody.
namespace trimora::reliability {
namespace {

using analytics::Telemetrix;
using analytics::TelemetrixTest;

// ── Ways ────────────────────────────────────────────────────────────────────────────────────────

void complain() {
    throw std::runtime_error("cannot open /people/CANARY-ann/my CANARY picture.png\nCANARY-ann was here");
}

void throwPastAll() noexcept {
    complain();
}

void segfault() {
    volatile std::uintptr_t nowhere = 0x18;
    *reinterpret_cast<volatile int*>(nowhere) = 1;
}

/// Deeper than any stack, in a way that no compiler turns into a loop.
int overflowStack(volatile int* depth) {
    volatile char room[4096];
    room[0] = static_cast<char>(*depth);
    *depth = *depth + 1;
    return *depth < 0 ? 0 : overflowStack(depth) + room[0];
}

/// What lies before a block of the heap is what the heap knows it by.
void corruptHeap() {
    auto* const block = static_cast<char*>(std::malloc(2'000));
    volatile char* const before = block - 16;
    for (int i = 0; i < 16; ++i)
        before[i] = 'x';
    std::free(block);
}

struct Way {
    const char* name;
    void (*strike)();
};
constexpr Way kWays[] = {{"throw", [] { throwPastAll(); }},
                         {"abort", [] { std::abort(); }},
                         {"bad address", segfault},
                         {"stack overflow",
                          [] {
                              volatile int depth = 0;
                              depth = overflowStack(&depth);
                          }},
                         {"heap corruption", corruptHeap}};

// ── Places ──────────────────────────────────────────────────────────────────────────────────────

/// What a child tells its parent however it ends.
struct Told {
    std::atomic<double> struck = 0;
    char session[64] = {};
};

double now() {
    return foundation::RealClock().seconds();
}

class Crashes : public TelemetrixTest {
 protected:
    Crashes()
        : told_(static_cast<Told*>(
              ::mmap(nullptr, sizeof(Told), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {
        shared = told_;
        ::setenv("USER", "CANARY-ann", 1);
    }
    ~Crashes() override {
        ::munmap(told_, sizeof(Told));
        ::unsetenv("USER");
    }
    void SetUp() override {}

    void installWith(analytics::UserDefaults& kept) {
        installation = std::make_unique<analytics::Installation>(
            analytics::Wiring{queues, time, time, notifications, kept, bundle, device, location, network,
                              transport, home.path(), storeSettings});
    }
    /// A program that starts, and then works until it is struck.
    template <typename Work>
    void crash(const Way& way, const Work& work) {
        strike = way.strike;
        told_->struck = 0;
        const Ended ended = inOwnProcess([&] {
            std::freopen("/dev/null", "w", stderr);  // its last words are expected
            host::IniUserDefaults kept(home.path() / "usage.ini");
            installWith(kept);
            rememberLaunch();
            Telemetrix::startSession();
            settle();
            std::strncpy(told_->session, manager().currentSession().c_str(), sizeof told_->session - 1);
            work();
            return 0;
        });
        const double gone = now();
        EXPECT_FALSE(ended.exited) << ended.text();
        ASSERT_GT(told_->struck, 0) << "never got there";
        EXPECT_LT(gone - told_->struck, 2.0);
        slowest_ = std::max(slowest_, gone - told_->struck);
    }
    /// The next start: how often each session of the store has a crash.
    void expectOneRecord() {
        for (const auto& entry : std::filesystem::directory_iterator(home.path() / "Trimora")) {
            if (entry.path().extension() == ".crash") {
                EXPECT_EQ(files::contents(entry.path()).find('/'), std::string::npos);
            }
        }
        host::IniUserDefaults kept(home.path() / "usage.ini");
        installWith(kept);
        Telemetrix::startSession();
        settle();
        int inIts = 0;
        int elsewhere = 0;
        for (const auto& session : sessions()) {
            for (const auto& body : bodies(session.name.value_or(""))) {
                if (body["event"] != "app_crash")
                    continue;
                ++(session.name == told_->session ? inIts : elsewhere);
                EXPECT_EQ(body.dump().find("CANARY"), std::string::npos) << body;
                EXPECT_EQ(body["data"].get<std::string>().find('/'), std::string::npos) << body;
            }
        }
        EXPECT_EQ(inIts, 1);
        EXPECT_EQ(elsewhere, 0);
        (void)context().removeAllEvents();
        (void)context().removeAllSessions();
        quit();
    }
    /// Every way at one place.
    template <typename Work>
    void expectRecordOfEachWay(const std::string& place, const Work& work) {
        for (const Way& way : kWays) {
            SCOPED_TRACE(std::string(way.name) + " " + place);
            crash(way, work);
            if (HasFatalFailure())
                return;
            expectOneRecord();
            ++crashes_;
        }
        ++places_;
    }
    /// Comes to grief.
    static void struck() {
        shared->struck = now();
        strike();
    }
    /// How often the work asks for memory.
    template <typename Work>
    static std::int64_t allocationsOf(const Work& work) {
        const AllocationFaults counted(0, false);
        work();
        return AllocationFaults::count();
    }
    /// In each way before `count` of the work's allocations.
    template <typename Work>
    void expectRecordsWithin(const char* what, int count, const Work& work) {
        std::int64_t total = 0;
        const std::filesystem::path note = home.path() / "allocations";
        ASSERT_EQ(inOwnProcess([&] {
                      host::IniUserDefaults kept(home.path() / "usage.ini");
                      installWith(kept);
                      rememberLaunch();
                      Telemetrix::startSession();
                      settle();
                      files::put(note, std::to_string(allocationsOf(work)));
                      return 0;
                  }).text(),
                  "exit 0");
        total = std::stoll(files::contents(note));
        std::filesystem::remove_all(home.path() / "Trimora");
        for (int i = 0; i < count && !HasFatalFailure(); ++i) {
            const std::int64_t number = 1 + total * i / count;
            expectRecordOfEachWay(what + std::string(", allocation ") + std::to_string(number), [&] {
                const AllocationFaults faults(number, struck);
                work();
            });
        }
    }
    void TearDown() override {
        std::printf("%d places, %d crashes, gone after at most %.3f s\n", places_, crashes_, slowest_);
    }

    static inline void (*strike)() = nullptr;
    static inline Told* shared = nullptr;
    Told* const told_;
    double slowest_ = 0;
    int places_ = 0;
    int crashes_ = 0;
};

TEST_F(Crashes, OfTheEngineAndTheCodecsAreRecordedOnce) {
    EngineUse engine(home.path());
    expectRecordsWithin("engine", 24, [&] { engine.work(); });
}

TEST_F(Crashes, OfTheAnalyticsAreRecordedOnce) {
    expectRecordsWithin("analytics", 24, [&] {
        Telemetrix::logEvent("button", {{"name", "open"}, {"count", 1}});
        Telemetrix::logTimedEvent("button");
        settle();
        analytics::wiring().userDefaults.setObject("key", "value");
        advance(6);
    });
}

class DyingWorkers final : public foundation::Workers {
 public:
    explicit DyingWorkers(void (*die)()) : die_(die) {}
    [[nodiscard]] int width() const override { return 2; }
    void run(int /*count*/, const std::function<void(int)>& /*part*/) override { die_(); }

 private:
    void (*die_)();
};

TEST_F(Crashes, OfCallbacksAndThreadsAreRecordedOnce) {
    const foundation::Bitmap picture = bandedPicture(300, 200);
    expectRecordOfEachWay("a serial queue's thread",
                          [] { foundation::ThreadQueue("serial que").sync(struck); });
    expectRecordOfEachWay("behind other tasks", [] {
        foundation::ThreadQueue queue("com.telemetrix.queue");
        for (int i = 0; i < 100; ++i)
            queue.async([] {});
        queue.sync(struck);
    });
    expectRecordOfEachWay("a pool's thread",
                          [] { foundation::ThreadPoolQueue("background", 2).async(struck); });
    expectRecordOfEachWay("a worker's part", [] {
        foundation::ThreadWorkers(2).run(4, [](int part) {
            if (part == 3)
                struck();
        });
    });
    expectRecordOfEachWay("a timer", [] {
        foundation::ThreadQueue queue("timed");
        foundation::RealScheduler scheduler;
        const auto timer = scheduler.after(0.001, queue, struck);
        ::sleep(5);
    });
    expectRecordOfEachWay("two threads at a time", [] {
        foundation::ThreadQueue one("one");
        foundation::ThreadQueue other("other");
        one.async(struck);
        other.sync(struck);
    });
    expectRecordOfEachWay("a codec's sink", [&] {
        foundation::InlineWorkers workers;
        (void)codecs::PngEncoder(workers).encodePng(picture.view(), [](auto) {
            struck();
            return foundation::Result<void>();
        });
    });
    expectRecordOfEachWay("a codec's workers", [&] {
        DyingWorkers workers(struck);
        (void)codecs::PngEncoder(workers).encodePng(picture.view(),
                                                    [](auto) { return foundation::Result<void>(); });
    });
    expectRecordOfEachWay("a notification's observer", [this] {
        const auto observation = notifications.observe("grief", [](const auto&) { struck(); });
        notifications.post("grief");
    });
    expectRecordOfEachWay("the log's sink", [] {
        foundation::log::setSink([](auto, auto) { struck(); });
        foundation::log::warning("grief");
    });
    expectRecordOfEachWay("the library's queue", [this] {
        analytics::TXAnalyticsQueue::addTask([] { struck(); });
        settle();
    });
    expectRecordOfEachWay("a transaction of the store", [] {
        (void)context().performAndWait([] {
            struck();
            return foundation::Result<void>();
        });
    });
}

}  // namespace
}  // namespace trimora::reliability
