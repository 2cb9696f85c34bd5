#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "analytics/store/StoreFaultsForTests.h"
#include "testing/Depth.h"
#include "testing/Seed.h"

// What is left of the store when its process is killed.
namespace trimora::analytics {
namespace {

using ::testing::AnyOf;
using ::testing::IsEmpty;

class StoreKillsTest : public StoreFaultsTest {};

/// How many events the writer of a round saves at a time.
int eventsTogether(int round) {
    return round % 2 == 0 ? 1 : 7;
}

/// A child process that stores numbered events of one round and tells after each save how many are stored.
class Writer {
 public:
    Writer(const std::filesystem::path& file, int round, volatile int* acknowledged) {
        child_ = ::fork();
        if (child_ == 0)
            write(file, round, acknowledged);
    }
    void kill() const {
        ::kill(child_, SIGKILL);
        ::waitpid(child_, nullptr, 0);
    }

 private:
    [[noreturn]] static void write(const std::filesystem::path& file, int round, volatile int* acknowledged) {
        const foundation::VirtualTime clock;
        StoreCoordinator coordinator(file, {}, clock);
        ManagedObjectContext context(coordinator);
        TXAnalyticsEventDataAccessDefault events;
        for (int number = 0;;) {
            std::vector<TXEvent> group;
            for (int end = number + eventsTogether(round); number < end; ++number)
                group.push_back({0, "round " + std::to_string(round), std::to_string(number)});
            events.saveEvents(group, context);
            if (group.back().row == 0)
                std::_Exit(1);
            *acknowledged = number;
        }
    }
    pid_t child_;
};

TEST_F(StoreKillsTest, NoAcknowledgedEventIsLostInThousandsOfKills) {
    const int rounds = testing::byDepth(1'000, 10'000, 50'000) / (testing::kSanitized ? 10 : 1);
    void* const shared =
        ::mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto* const acknowledged = static_cast<volatile int*>(shared);
    std::mt19937_64 random = testing::seededGenerator();
    std::uniform_int_distribution<int> microseconds(0, 4'000);
    std::filesystem::create_directories(file().parent_path());
    std::size_t total = 0;
    for (int round = 0; round < rounds; ++round) {
        *acknowledged = 0;
        const Writer writer(file(), round, acknowledged);
        // Every fifth dies while it opens the store, the others while they write.
        while (round % 5 != 0 && *acknowledged == 0)
            ::usleep(50);
        ::usleep(static_cast<useconds_t>(microseconds(random)));
        writer.kill();
        const int promised = *acknowledged;
        const auto found =
            context().eventsOfSession("round " + std::to_string(round), PropertyValues::fetched);
        ASSERT_TRUE(found) << found.error().message;
        // One save more than promised may be there: done, and killed before it could tell. Events that
        // are saved together are there together.
        const int stored = static_cast<int>(found->size());
        ASSERT_THAT(stored, AnyOf(promised, promised + eventsTogether(round))) << "round " << round;
        for (std::size_t i = 0; i < found->size(); ++i)
            ASSERT_EQ((*found)[i].body, std::to_string(i)) << "round " << round;
        total += found->size();
        // A full store would give up what belongs to no session.
        constexpr int kRoundsKept = 50;
        if (round >= kRoundsKept) {
            ASSERT_TRUE(context().removeEventsOfSession("round " + std::to_string(round - kRoundsKept)));
        }
        if (round % 50 == 0) {
            ASSERT_EQ(integrity(), "ok");
        }
    }
    EXPECT_EQ(integrity(), "ok");
    EXPECT_GT(total, 0U);
    std::printf("%d kills, %zu events stored\n", rounds, total);
    ::munmap(shared, sizeof(int));
    EXPECT_THAT(movedAside(), IsEmpty());
}

}  // namespace
}  // namespace trimora::analytics
