#include <set>
#include <thread>

#include "analytics/TelemetrixForTests.h"
#include "analytics/public/TXAnalyticsCollector.h"
#include "foundation/RealTime.h"
#include "foundation/ThreadQueues.h"

// The library on real threads and a real clock; ThreadSanitizer looks on.
namespace trimora::analytics {
namespace {

using ::testing::SizeIs;

/// Answers everything 200 on a thread of its own.
class ThreadedTransport final : public HttpTransport {
 public:
    void send(HttpRequest request, Completion completion) override {
        {
            const std::scoped_lock lock(mutex_);
            bodies_.push_back(std::move(request.body));
        }
        thread_.async([completion = std::move(completion)] { completion(200); });
    }
    void cancelAll() override {
        thread_.sync([] {});
    }
    [[nodiscard]] std::vector<std::string> bodies() const {
        const std::scoped_lock lock(mutex_);
        return bodies_;
    }

 private:
    mutable std::mutex mutex_;
    std::vector<std::string> bodies_;
    foundation::ThreadQueue thread_{"transport"};
};

class ThreadsTest : public TelemetrixTest {
 protected:
    void SetUp() override {
        installation = std::make_unique<Installation>(Wiring{threads,
                                                             clock,
                                                             scheduler,
                                                             notifications,
                                                             defaults,
                                                             bundle,
                                                             device,
                                                             location,
                                                             network,
                                                             threadedTransport,
                                                             home.path(),
                                                             {}});
        rememberLaunch();
        Telemetrix::startSession();
    }
    void TearDown() override {
        quit();
        mainQueue.runAll();
    }

    foundation::ManualQueue mainQueue{"main"};
    foundation::ThreadQueueFactory threads{mainQueue};
    foundation::RealClock clock;
    foundation::RealScheduler scheduler;
    ThreadedTransport threadedTransport;
};

/// Runs the task on this many threads at once and waits for all.
void onThreads(int count, const std::function<void(int)>& task) {
    std::vector<std::thread> running;
    for (int i = 0; i < count; ++i)
        running.emplace_back([&task, i] { task(i); });
    for (std::thread& thread : running)
        thread.join();
}

TEST_F(ThreadsTest, EventsOfManyThreadsAreAllStoredEachThreadsInOrder) {
    constexpr int kThreads = 4;
    constexpr int kEach = 100;
    onThreads(kThreads, [&](int thread) {
        for (int i = 0; i < kEach; ++i) {
            Telemetrix::logEvent("thread " + std::to_string(thread), {{"i", i}});
            if (i % 20 == 0)
                TXAnalyticsCollector::sessionEnd();
        }
    });
    TXAnalyticsQueue::drain();
    std::map<std::string, int> next;
    int ends = 0;
    for (const auto& body : bodies(manager().currentSession())) {
        const std::string name = body["event"];
        ends += name == "session_end" ? 1 : 0;
        if (name.starts_with("thread")) {
            EXPECT_EQ(body["data"], "{\"i\":" + std::to_string(next[name]++) + "}");
        }
    }
    EXPECT_THAT(next, SizeIs(kThreads));
    for (const auto& [name, count] : next)
        EXPECT_EQ(count, kEach) << name;
    EXPECT_EQ(ends, 1);
}

TEST_F(ThreadsTest, SessionsThatChangeUnderLoadArriveWholeOrStayInTheStore) {
    constexpr int kEvents = 300;
    std::thread logging([] {
        for (int i = 0; i < kEvents; ++i)
            TXAnalyticsCollector::logEvent("event", {{"i", i}});
    });
    for (int i = 0; i < 10; ++i) {
        notifications.post(kNSWindowDidResignKeyNotification);
        notifications.post(kNSWindowDidBecomeKeyNotification);
        network.change(i % 2 == 0 ? 0U : reachability::kReachable);
        mainQueue.runAll();
    }
    logging.join();
    notifications.post(kNSApplicationWillTerminateNotification);
    quit();
    TelemetrixTest::SetUp();
    std::set<std::string> seen;
    const auto note = [&](const nlohmann::json& body) {
        if (body["event"] == "event.") {
            EXPECT_TRUE(seen.insert(body["data"]).second) << "twice: " << body;
        }
    };
    for (const std::string& text : threadedTransport.bodies()) {
        const auto sent = nlohmann::json::parse(text);
        std::for_each(sent.begin(), sent.end(), note);
    }
    for (const TXSSID& session : sessions()) {
        const auto kept = bodies(*session.name);
        std::for_each(kept.begin(), kept.end(), note);
    }
    // Those logged while the application was in the background were dropped, as they should be.
    EXPECT_FALSE(seen.empty());
    EXPECT_LE(seen.size(), static_cast<std::size_t>(kEvents));
}

TEST_F(ThreadsTest, UninstallationWaitsForWhatRuns) {
    for (int i = 0; i < 50; ++i)
        Telemetrix::logEvent("last");
    notifications.post(kNSWindowDidResignKeyNotification);
    quit();
    EXPECT_FALSE(isInstalled());
    ASSERT_FALSE(threadedTransport.bodies().empty());
    EXPECT_THAT(threadedTransport.bodies()[0], ::testing::HasSubstr("last."));
}

}  // namespace
}  // namespace trimora::analytics
