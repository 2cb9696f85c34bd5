#include "foundation/NotificationCenter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
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

}  // namespace
}  // namespace trimora::foundation
