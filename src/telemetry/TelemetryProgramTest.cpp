#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <string>
#include <utility>

#include "analytics/Diagnostics.h"
#include "analytics/session/ReportedStoreForTests.h"

namespace trimora::telemetry {
namespace {

using ::testing::HasSubstr;

class TelemetryProgramTest : public analytics::ReportedStoreTest {
 protected:
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
