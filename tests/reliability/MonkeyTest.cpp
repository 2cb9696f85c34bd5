#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <chrono>
#include <cstdio>
#include <set>

#include "Heartbeat.h"
#include "Monkey.h"
#include "Processes.h"
#include "WindowOrder.h"
#include "testing/CapturedLog.h"
#include "testing/Depth.h"
#include "testing/Seed.h"
#include "testing/TemporaryFolder.h"

// Somebody who does anything at all: the window stays in order, and says nothing that it should not.
namespace trimora::reliability {
namespace {

using foundation::log::Level;
using std::chrono::milliseconds;
using ::testing::AllOf;
using ::testing::IsEmpty;
using ::testing::Le;
using ::testing::SizeIs;
using ::testing::Truly;

constexpr int kEventsBetweenLooks = 1000;
constexpr int kEventsBetweenGlances = 10;
constexpr milliseconds kLongestSilence{2'000};
constexpr int kMostSheets = 4;  // a command from outside may ask over what the person is asked already

/// But for the panels of Save: the answer to a question over one may call for another.
bool allDiffer(std::vector<std::string> titles) {
    std::erase(titles, "Save picture");
    return std::set(titles.begin(), titles.end()).size() == titles.size();
}

/// Without what Telemetrix tells its developers of every attempt to send.
std::vector<std::string> complaints(const testing::CapturedLog& log) {
    std::vector<std::string> lines = log.texts(Level::warning);
    std::erase_if(lines, [](const std::string& line) { return line.starts_with("Telemetrix"); });
    return lines;
}

TEST(Monkey, LeavesTheWindowInOrderWhateverItDoes) {
    const int events = testing::byDepth(50'000, 1'000'000, 1'000'000);
    const testing::TemporaryFolder folder;
    const testing::CapturedLog log;
    Monkey monkey(folder.path(), testing::announcedSeed());
    monkey.rest();
    Heartbeat heart;
    int pictures = 0;
    std::int64_t deepest = 0;
    milliseconds longestSilence{0};
    for (int done = 1; done <= events && !HasFailure(); ++done) {
        monkey.act();
        heart.beat();
        if (done % kEventsBetweenGlances == 0) {
            EXPECT_THAT(sheetsShown(), AllOf(SizeIs(Le(kMostSheets)), Truly(allDiffer)))
                << done << " events; last " << monkey.lastActs();
        }
        if (done % kEventsBetweenLooks != 0)
            continue;
        monkey.rest();
        EXPECT_THAT(disorderIn(monkey.program()), IsEmpty()) << done << " events; last " << monkey.lastActs();
        const milliseconds silence = heart.longestSilence();
        EXPECT_THAT(silence, Le(kLongestSilence)) << done << " events";
        longestSilence = std::max(longestSilence, silence);
        EXPECT_THAT(complaints(log), IsEmpty()) << done << " events";
        pictures += monkey.program().cutView().image() != nullptr ? 1 : 0;
        deepest = std::max(deepest, monkey.program().cutView().historyLength());
    }
    const Monkey::Counts& counts = monkey.counts();
    std::printf(
        "%d events: %d starts, %d drags over, %d offers, %d drags out; %d looks with a picture, %d states; "
        "silent for %d ms at most\n",
        events, counts.starts, counts.drops, counts.offers, counts.nestedLoops, pictures,
        static_cast<int>(deepest), static_cast<int>(longestSilence.count()));
    EXPECT_GT(pictures, events / kEventsBetweenLooks / 4) << "a dull run";
    EXPECT_GT(deepest, 2) << "a dull run";
}

}  // namespace
}  // namespace trimora::reliability
