#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "analytics/store/ManagedObjectContext.h"
#include "foundation/VirtualTime.h"
#include "testing/CapturedLog.h"
#include "testing/TemporaryFolder.h"

namespace trimora::analytics {

/// A store with a session of every status (S0 to S3, the last of a status that does not exist), and three
/// events in S1, of which the third is damaged.
class ReportedStoreTest : public ::testing::Test {
 protected:
    void SetUp() override {
        StoreCoordinator coordinator(file, {}, clock);
        ManagedObjectContext store(coordinator);
        for (int status = 0; status < 4; ++status) {
            TXSSID session{0, "S" + std::to_string(status), status, 1767268800.5, 0};
            ASSERT_TRUE(store.save(session));
        }
        for (const char* body : {kFirst, kSecond, "not an event"}) {
            TXEvent event{0, "S1", body};
            ASSERT_TRUE(store.save(event));
        }
    }

    static constexpr const char* kFirst =
        R"({"app_id":"a","data":"{\"k\":1}","end_timed_event":false,"event":"cut.","timestamp":1767268800123})";
    static constexpr const char* kSecond =
        R"({"app_id":"a","data":"{}","end_timed_event":true,"event":"cut.","timestamp":1767268801000})";

    testing::TemporaryFolder home;
    std::filesystem::path file = home.path() / "telemetrix.db";
    foundation::VirtualTime clock;
    testing::CapturedLog log;
};

}  // namespace trimora::analytics
