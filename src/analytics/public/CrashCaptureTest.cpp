#include "analytics/public/CrashCapture.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <barrier>
#include <csignal>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <thread>
#include <vector>

#include "analytics/TelemetrixForTests.h"
#include "analytics/public/CrashRecord.h"
#include "analytics/public/TXAnalyticsCollector.h"

#ifdef TRIMORA_COVERAGE
extern "C" void __gcov_dump();  // gcc's header of it is for C alone
#endif

namespace trimora::analytics {
namespace {

using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

/// User defaults that a child process leaves to its parent.
class FileUserDefaults final : public UserDefaults {
 public:
    explicit FileUserDefaults(std::filesystem::path file) : file_(std::move(file)) {}
    [[nodiscard]] std::optional<std::string> objectForKey(std::string_view key) const override {
        if (key != "kTLCrashLogKey" || !std::filesystem::exists(file_))
            return std::nullopt;
        std::ifstream stream(file_);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }
    void setObject(std::string_view key, std::string_view value) override {
        if (key == "kTLCrashLogKey")
            std::ofstream(file_) << value;
    }
    void removeObjectForKey(std::string_view /*key*/) override { std::filesystem::remove(file_); }
    void synchronize() override {}

 private:
    std::filesystem::path file_;
};

[[maybe_unused]] constexpr int kFatalSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS};

/// In a build that measures coverage: what the process ran is written down when the library is done with
/// the signal, and the process dies of it all the same.
void keepCounts() {
#ifdef TRIMORA_COVERAGE
    struct sigaction action = {};
    action.sa_flags = SA_ONSTACK | static_cast<int>(SA_RESETHAND);
    action.sa_handler = [](int number) {
        __gcov_dump();
        ::raise(number);
    };
    for (const int number : kFatalSignals)
        ::sigaction(number, &action, nullptr);
#endif
}

class CrashCaptureTest : public TelemetrixTest {
 protected:
    void SetUp() override {}
    void TearDown() override {
        if (installation)
            quit();
    }
    void installWith(UserDefaults& kept) {
        installation = std::make_unique<Installation>(Wiring{queues,
                                                             time,
                                                             time,
                                                             notifications,
                                                             kept,
                                                             bundle,
                                                             device,
                                                             location,
                                                             network,
                                                             transport,
                                                             home.path(),
                                                             {}});
    }
    /// A process that prepares itself, starts the library and then comes to grief; returns how it ended.
    int childStatus(const std::function<void()>& grief, const std::function<void()>& prepare = keepCounts) {
        const pid_t child = ::fork();
        if (child == 0) {
            const struct rlimit none = {0, 0};
            ::setrlimit(RLIMIT_CORE, &none);
            prepare();
            FileUserDefaults kept(keptFile);
            installWith(kept);
            Telemetrix::startSession();
            settle();
            std::ofstream(home.path() / "session") << manager().currentSession();
            grief();
            std::_Exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return status;
    }
    std::string childSession() {
        std::string session;
        std::ifstream(home.path() / "session") >> session;
        return session;
    }
    [[nodiscard]] int recordsLeft() const {
        const std::filesystem::directory_iterator entries(home.path() / "Trimora");
        return static_cast<int>(std::count_if(begin(entries), end(entries), [](const auto& entry) {
            return entry.path().extension() == ".crash";
        }));
    }
    /// The next start of the library; what it stored of the crash, in the session in which it happened.
    std::vector<std::string> stackTracesAfterRestart() {
        FileUserDefaults kept(keptFile);
        installWith(kept);
        Telemetrix::startSession();
        settle();
        std::vector<std::string> traces;
        for (const auto& body : bodies(childSession())) {
            if (body["event"] == "app_crash")
                traces.push_back(nlohmann::json::parse(body["data"].get<std::string>())["stacktrace"]);
        }
        EXPECT_THAT(CrashCapture::pendingCrashes(), IsEmpty());
        quit();
        return traces;
    }

    std::filesystem::path keptFile = home.path() / "defaults";
};

/// Deeper than any stack, in a way that no compiler turns into a loop.
[[maybe_unused]] int overflowStack(volatile int* depth) {
    volatile char room[4096];
    room[0] = static_cast<char>(*depth);
    *depth = *depth + 1;
    if (*depth < 0)
        return 0;
    return overflowStack(depth) + room[0];
}

/// Nothing thrown gets past this.
void withoutCatching(const std::function<void()>& grief) noexcept {
    grief();
}

TEST_F(CrashCaptureTest, UncaughtExceptionIsRecordedInItsSessionByTheNextStart) {
    const int status =
        childStatus([] { withoutCatching([] { throw std::runtime_error("the \xFF picture"); }); });
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGABRT);
    const auto traces = stackTracesAfterRestart();
    ASSERT_THAT(traces, SizeIs(1));
    EXPECT_THAT(traces[0], StartsWith("std::runtime_error: the \xEF\xBF\xBD picture\n0 "));
    EXPECT_THAT(traces[0], ContainsRegex("\n[0-9]+ trimora_analytics_test"));
    EXPECT_THAT(traces[0], Not(HasSubstr("/")));
    EXPECT_THAT(stackTracesAfterRestart(), SizeIs(1));  // not a second time
}

TEST_F(CrashCaptureTest, WhatAnExceptionSaysIsKeptWithoutPathsAndNames) {
    ::setenv("USER", "ann", 1);
    childStatus([] {
        withoutCatching([] {
            throw std::runtime_error(
                "cannot open [/people/ann/my cat.png] of ann\nann's plan: Pictures/cat.png, no");
        });
    });
    ::unsetenv("USER");
    EXPECT_THAT(stackTracesAfterRestart().at(0),
                StartsWith("std::runtime_error: cannot open [...\n...'s plan: ...\n0 "));
}

TEST_F(CrashCaptureTest, CrashThatIsInItsSessionIsNotRecordedAgain) {
    install();
    defaults.values["kTLCrashLogKey"] = R"({"A":"trace"})";
    start();
    defaults.values["kTLCrashLogKey"] = R"({"A":"trace"})";  // as where a process ended before it forgot
    TXAnalyticsCollector::subscribeToCrash();
    settle();
    EXPECT_THAT(bodies("A"), SizeIs(1));
}

TEST_F(CrashCaptureTest, ExceptionsOfAnyTypeAreNamed) {
    childStatus([] { withoutCatching([] { throw 42; }); });
    EXPECT_THAT(stackTracesAfterRestart().at(0), StartsWith("int\n0 "));
    childStatus([] { std::terminate(); });
    EXPECT_THAT(stackTracesAfterRestart().at(0), StartsWith("terminate called without an exception\n0 "));
}

TEST_F(CrashCaptureTest, TerminateHandlerFromBeforeHasTheLastWord) {
    const int status = childStatus([] { withoutCatching([] { throw 42; }); },
                                   [] { std::set_terminate([] { std::_Exit(77); }); });
    EXPECT_EQ(WEXITSTATUS(status), 77);
    EXPECT_THAT(stackTracesAfterRestart(), SizeIs(1));
}

// The sanitizers have handlers and stacks of their own.
#ifndef TRIMORA_SANITIZED

TEST_F(CrashCaptureTest, SignalHandlerFromBeforeHasTheLastWord) {
    const int status =
        childStatus([] { ::raise(SIGBUS); }, [] { std::signal(SIGBUS, [](int) { std::_Exit(78); }); });
    EXPECT_EQ(WEXITSTATUS(status), 78);
    EXPECT_THAT(stackTracesAfterRestart(), SizeIs(1));
}

TEST_F(CrashCaptureTest, IgnoredSignalOfABrokenProcessorStateStillKills) {
    const int status = childStatus([] { ::raise(SIGFPE); }, [] { std::signal(SIGFPE, SIG_IGN); });
    EXPECT_EQ(WTERMSIG(status), SIGFPE);
    EXPECT_THAT(stackTracesAfterRestart(), SizeIs(1));
}

TEST_F(CrashCaptureTest, FatalSignalsAreRecordedAndStillKill) {
    for (const int number : kFatalSignals) {
        const std::string name = std::string("SIG") + ::sigabbrev_np(number);
        const int status = childStatus([number] { ::raise(number); });
        EXPECT_TRUE(WIFSIGNALED(status)) << name;
        EXPECT_EQ(WTERMSIG(status), number);
        const auto traces = stackTracesAfterRestart();
        ASSERT_THAT(traces, SizeIs(1)) << name;
        EXPECT_THAT(traces[0], StartsWith(name + " (code 0, address 0x"));
        EXPECT_THAT(traces[0], ContainsRegex("\n0 [^ ]+ \\+ 0x[0-9a-f]+"));
        std::filesystem::remove(keptFile);
    }
}

TEST_F(CrashCaptureTest, FaultTellsItsAddressAndPlace) {
    const int status = childStatus([] {
        volatile std::uintptr_t nowhere = 0x18;
        *reinterpret_cast<volatile int*>(nowhere) = 1;
    });
    EXPECT_EQ(WTERMSIG(status), SIGSEGV);
    const auto traces = stackTracesAfterRestart();
    ASSERT_THAT(traces, SizeIs(1));
    EXPECT_THAT(traces[0], StartsWith("SIGSEGV (code 1, address 0x18)\n0 trimora_analytics_test + 0x"));
}

TEST_F(CrashCaptureTest, OverflowOfTheStackIsRecordedToo) {
    const int status = childStatus([] {
        volatile int depth = 0;
        depth = overflowStack(&depth);
    });
    EXPECT_EQ(WTERMSIG(status), SIGSEGV);
    EXPECT_THAT(stackTracesAfterRestart(), SizeIs(1));
}

/// User defaults that somebody holds for ever from a moment on.
class StuckUserDefaults final : public UserDefaults {
 public:
    [[nodiscard]] std::optional<std::string> objectForKey(std::string_view /*key*/) const override {
        while (isStuck)
            ::pause();
        return std::nullopt;
    }
    void setObject(std::string_view /*key*/, std::string_view /*value*/) override {}
    void removeObjectForKey(std::string_view /*key*/) override {}
    void synchronize() override {}
    bool isStuck = false;
};

TEST_F(CrashCaptureTest, ExceptionThatCannotBeStoredIsRecordedByTheAbortThatFollows) {
    StuckUserDefaults stuck;
    const int status = childStatus([&] {
        quit();
        installWith(stuck);
        Telemetrix::startSession();
        settle();
        std::ofstream(home.path() / "session") << manager().currentSession();
        stuck.isStuck = true;
        withoutCatching([] { throw 42; });
    });
    EXPECT_EQ(WTERMSIG(status), SIGABRT);
    EXPECT_THAT(stackTracesAfterRestart().at(0), StartsWith("SIGABRT (code 0,"));
}

TEST_F(CrashCaptureTest, CrashOfAnotherThreadIsRecorded) {
    const int status = childStatus([] { std::thread([] { std::abort(); }).join(); });
    EXPECT_EQ(WTERMSIG(status), SIGABRT);
    EXPECT_THAT(stackTracesAfterRestart().at(0), StartsWith("SIGABRT (code 0,"));
}

TEST_F(CrashCaptureTest, ThreadsThatCrashAtATimeLeaveOneWholeRecord) {
    const int status = childStatus([] {
        constexpr int kThreads = 8;
        std::barrier together(kThreads);
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([&together] {
                together.arrive_and_wait();
                *reinterpret_cast<volatile int*>(std::uintptr_t{0x18}) = 1;
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    });
    EXPECT_EQ(WTERMSIG(status), SIGSEGV);
    const auto traces = stackTracesAfterRestart();
    ASSERT_THAT(traces, SizeIs(1));
    EXPECT_THAT(traces[0], StartsWith("SIGSEGV (code 1, address 0x18)\n0 trimora_analytics_test + 0x"));
}

TEST_F(CrashCaptureTest, KilledProcessLeavesNoCrash) {
    const int status = childStatus([] { ::raise(SIGKILL); });
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    EXPECT_THAT(stackTracesAfterRestart(), IsEmpty());
    EXPECT_EQ(recordsLeft(), 0);
}

#endif

TEST_F(CrashCaptureTest, PendingCrashesOfSeveralSessionsAreEachRecordedInTheirs) {
    defaults.values["kTLCrashLogKey"] = R"({"A":"first","B":"second","C":7})";
    install();
    start();
    EXPECT_EQ(bodies("A").at(0)["data"], R"({"stacktrace":"first"})");
    EXPECT_EQ(bodies("B").at(0)["event"], "app_crash");
    EXPECT_THAT(bodies("C"), IsEmpty());
    EXPECT_EQ(defaults.values.count("kTLCrashLogKey"), 0U);
}

TEST_F(CrashCaptureTest, NoMoreThanThirtyTwoCrashesWait) {
    defaults.values["kTLCrashLogKey"] = R"({"first":"kept"})";
    install();
    std::filesystem::create_directories(home.path() / "Trimora");
    for (int k = 1; k <= 40; ++k) {
        const std::string name = std::to_string(k);
        std::ofstream(home.path() / "Trimora" / ("telemetrix-" + name + ".crash"))
            << "session later-" << name << "\nsignal 11\n";
    }
    CrashCapture::install();
    CrashCapture::prepareRecord(home.path() / "Trimora");
    const CrashCapture::Crashes waiting = CrashCapture::pendingCrashes();
    CrashCapture::uninstall();
    EXPECT_THAT(waiting, SizeIs(32));
    EXPECT_EQ(waiting.count("first"), 1U);
    EXPECT_EQ(recordsLeft(), 0);
}

TEST_F(CrashCaptureTest, CrashIsPostedWithTheSessionInWhichItHappened) {
    install();
    leaveSession("crashed", 0, 50);
    defaults.values["kTLCrashLogKey"] = R"({"crashed":"trace"})";
    transport.answer = 200;
    start();
    ASSERT_THAT(posted(), SizeIs(1));
    EXPECT_THAT(transport.requests()[0].body, HasSubstr(R"(\"stacktrace\":\"trace\")"));
}

TEST_F(CrashCaptureTest, NonsenseInTheUserDefaultsIsForgotten) {
    defaults.values["kTLCrashLogKey"] = "not json";
    install();
    start();
    EXPECT_EQ(defaults.values.count("kTLCrashLogKey"), 0U);
}

TEST_F(CrashCaptureTest, RunningProcessesFileIsLeftAlone) {
    install();
    start();
    const auto file = home.path() / "Trimora" / ("telemetrix-" + std::to_string(::getpid()) + ".crash");
    EXPECT_TRUE(std::filesystem::exists(file));
    std::ofstream(home.path() / "Trimora" / "telemetrix-1.crash") << "session A\nsignal 11\n";
    TXAnalyticsCollector::subscribeToCrash();
    settle();
    EXPECT_TRUE(std::filesystem::exists(file));
    EXPECT_FALSE(std::filesystem::exists(home.path() / "Trimora" / "telemetrix-1.crash"));
    EXPECT_EQ(bodies("A").at(0)["event"], "app_crash");
    quit();
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(CrashRecord, TurnsPlacesIntoFilesAndOffsets) {
    const auto record = CrashRecord::parse(
        "session ABC\nsignal 11\ncode 1\naddress 0x18\nframe 0x1234\nframe 0x9999\nframe 0x5010\nmaps\n"
        "1000-2000 r-xp 00000400 08:01 17     /opt/a program/trimora\n"
        "5000-6000 rw-p 00000000 00:00 0\n"
        "broken line\n");
    ASSERT_TRUE(record);
    EXPECT_EQ(record->session, "ABC");
    EXPECT_EQ(record->text, "SIGSEGV (code 1, address 0x18)\n0 trimora + 0x634\n1 0x9999\n2 0x5010");
}

TEST(CrashRecord, UnfinishedRecordTellsWhatItCan) {
    EXPECT_FALSE(CrashRecord::parse(""));
    EXPECT_FALSE(CrashRecord::parse("session "));
    EXPECT_FALSE(CrashRecord::parse("session A\nsignal"));
    EXPECT_EQ(CrashRecord::parse("session A\nsignal 6\ncode")->text, "SIGABRT (code , address )");
    EXPECT_EQ(CrashRecord::parse("session A\nsignal 500")->text.substr(0, 10), "signal 500");
}

}  // namespace
}  // namespace trimora::analytics
