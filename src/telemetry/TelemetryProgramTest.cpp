#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <string>
#include <utility>

#include "analytics/Diagnostics.h"
#include "analytics/store/ManagedObjectContext.h"
#include "foundation/VirtualTime.h"
#include "testing/CapturedLog.h"
#include "testing/TemporaryFolder.h"

namespace trimora::telemetry {
namespace {

using ::testing::HasSubstr;

class TelemetryProgramTest : public ::testing::Test {
 protected:
    void SetUp() override {
        analytics::StoreCoordinator coordinator(file, {}, clock);
        analytics::ManagedObjectContext store(coordinator);
        for (int status = 0; status < 4; ++status) {
            analytics::TXSSID session{0, "S" + std::to_string(status), status, 1767268800.5, 0};
            ASSERT_TRUE(store.save(session));
        }
        for (const char* body : {kFirst, kSecond, "not an event"}) {
            analytics::TXEvent event{0, "S1", body};
            ASSERT_TRUE(store.save(event));
        }
    }
    /// Output and exit status of the program.
    static std::pair<std::string, int> program(const std::string& arguments) {
        const std::string command = TRIMORA_TELEMETRY " " + arguments + " 2>&1";
        std::FILE* const pipe = ::popen(command.c_str(), "r");
        std::string output;
        char part[512];
        while (std::fgets(part, sizeof part, pipe) != nullptr)
            output += part;
        const int status = ::pclose(pipe);
        return {output, WEXITSTATUS(status)};
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

TEST_F(TelemetryProgramTest, ShowsTheStoreItIsGivenAndChangesNothing) {
    const std::string store = "--store '" + file.string() + "' ";
    EXPECT_THAT(program(store).first, HasSubstr("S1  done"));
    EXPECT_EQ(program(store + "sessions").second, 0);
    EXPECT_THAT(program(store + "events S1").first, HasSubstr("cut.  {\"k\":1}"));
    EXPECT_EQ(program(store + "request S1").first,
              analytics::formatted("[%s,%s,not an event]", kFirst, kSecond));
    EXPECT_EQ(program(store + "request S9").second, 1);
    EXPECT_EQ(program("--store /no/such/file").second, 1);
    EXPECT_EQ(program("nonsense").second, 2);
    EXPECT_THAT(program("--help").first, HasSubstr("trimora-telemetry [--store FILE]"));
}

}  // namespace
}  // namespace trimora::telemetry
