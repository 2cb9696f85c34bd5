#include "foundation/NotificationCenter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace trimora::foundation {
namespace {

using ::testing::ElementsAre;

TEST(NotificationCenter, CallsTheObserversOfTheNameInOrder) {
    NotificationCenter centre;
    std::vector<int> calls;
    const auto first = centre.observe("a", [&](const Notification&) { calls.push_back(1); });
    const auto second = centre.observe("a", [&](const Notification&) { calls.push_back(2); });
    const auto other = centre.observe("b", [&](const Notification&) { calls.push_back(3); });
    centre.post("a");
    EXPECT_THAT(calls, ElementsAre(1, 2));
}

TEST(NotificationCenter, ObserverOfOneSenderHearsNoOther) {
    NotificationCenter centre;
    const int sender = 0;
    int heard = 0;
    const auto observation = centre.observe(
        "a", [&](const Notification&) { ++heard; }, &sender);
    centre.post("a");
    centre.post("a", &sender);
    EXPECT_EQ(heard, 1);
}

TEST(NotificationCenter, EndedObservationHearsNothingEvenWithinAPost) {
    NotificationCenter centre;
    int heard = 0;
    NotificationCenter::Observation second;
    const auto first = centre.observe("a", [&](const Notification&) { second.end(); });
    second = centre.observe("a", [&](const Notification&) { ++heard; });
    centre.post("a");
    EXPECT_EQ(heard, 0);
}

TEST(NotificationCenter, ObserverAddedDuringAPostHearsTheNextOne) {
    NotificationCenter centre;
    int heard = 0;
    NotificationCenter::Observation late;
    const auto first = centre.observe(
        "a", [&](const Notification&) { late = centre.observe("a", [&](const Notification&) { ++heard; }); });
    centre.post("a");
    EXPECT_EQ(heard, 0);
}

TEST(NotificationCenter, ObservationMayOutliveTheCentre) {
    NotificationCenter::Observation observation;
    {
        NotificationCenter centre;
        observation = centre.observe("a", [](const Notification&) {});
    }
    observation.end();
}

TEST(NotificationCenter, UserInfoArrives) {
    NotificationCenter centre;
    std::string got;
    const auto observation =
        centre.observe("a", [&](const Notification& n) { got = std::any_cast<std::string>(n.userInfo); });
    centre.post("a", nullptr, std::string("hello"));
    EXPECT_EQ(got, "hello");
}

TEST(NotificationCenter, PostThatNobodyObservesDoesNothing) {
    NotificationCenter centre;
    centre.post("a");
}

TEST(NotificationCenter, NewObservationInTheSamePlaceEndsTheOneBefore) {
    NotificationCenter centre;
    int first = 0;
    int second = 0;
    auto observation = centre.observe("a", [&](const Notification&) { ++first; });
    observation = centre.observe("a", [&](const Notification&) { ++second; });
    centre.post("a");
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST(NotificationCenter, MovedObservationGoesOn) {
    NotificationCenter centre;
    int heard = 0;
    auto observation = centre.observe("a", [&](const Notification&) { ++heard; });
    const NotificationCenter::Observation moved = std::move(observation);
    centre.post("a");
    EXPECT_EQ(heard, 1);
}

TEST(NotificationCenter, HandlerMayEndItsOwnObservation) {
    NotificationCenter centre;
    int heard = 0;
    NotificationCenter::Observation observation;
    observation = centre.observe("a", [&](const Notification&) {
        observation.end();
        ++heard;
    });
    centre.post("a");
    centre.post("a");
    EXPECT_EQ(heard, 1);
}

TEST(NotificationCenter, ThreadsMayPostAndObserveAtTheSameTime) {
    NotificationCenter centre;
    std::atomic<int> heard = 0;
    const auto constant = centre.observe("a", [&](const Notification&) { ++heard; });
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 3; ++i) {
            threads.emplace_back([&] {
                for (int round = 0; round < 200; ++round) {
                    const auto brief = centre.observe("a", [](const Notification&) {});
                    centre.post("a");
                }
            });
        }
    }
    EXPECT_EQ(heard, 600);
}

}  // namespace
}  // namespace trimora::foundation
