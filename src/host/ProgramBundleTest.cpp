#include "host/ProgramBundle.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "testing/TemporaryFolder.h"

namespace trimora::host {
namespace {

class ProgramBundleTest : public ::testing::Test {
 protected:
    ProgramBundleTest() {
        std::filesystem::create_directories(executable.parent_path());
        std::ofstream(executable) << "a program";
    }

    testing::TemporaryFolder home;
    std::filesystem::path executable = home.path() / "bin" / "trimora";
    ProgramBundle bundle{{{"CFBundleName", "trimora"}}, executable};
};

TEST_F(ProgramBundleTest, SaysWhatItWasGivenAndNothingElse) {
    EXPECT_EQ(bundle.infoValue("CFBundleName"), "trimora");
    EXPECT_EQ(bundle.infoValue("CFBundleVersion"), std::nullopt);
    EXPECT_EQ(bundle.path(), executable);
}

TEST_F(ProgramBundleTest, ChangingTheFileLeavesItsCreationAlone) {
    const auto created = bundle.creationDate();
    ASSERT_TRUE(created);
    const struct timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000, 500'000'000}};
    ASSERT_EQ(::utimensat(AT_FDCWD, executable.c_str(), times, 0), 0);
    EXPECT_EQ(bundle.modificationDate(),
              foundation::Clock::WallTime(std::chrono::milliseconds(1'000'000'000'500)));
    // File systems that keep no creation date answer with the change that was just made.
    EXPECT_GE(*bundle.creationDate(), *created);
    EXPECT_GT(*bundle.creationDate(), *bundle.modificationDate());
}

TEST_F(ProgramBundleTest, ProgramThatIsGoneHasNoDates) {
    std::filesystem::remove(executable);
    EXPECT_EQ(bundle.creationDate(), std::nullopt);
    EXPECT_EQ(bundle.modificationDate(), std::nullopt);
}

TEST_F(ProgramBundleTest, ResourcesLieWhereTheyAreInstalledElseWhereTheyAreBuilt) {
    EXPECT_EQ(bundle.pathForResource("TelemetrixModel", "momd"), std::nullopt);
    for (const auto& base : {executable.parent_path(), home.path()}) {
        const auto file = base / "share" / "trimora" / "TelemetrixModel.momd";
        std::filesystem::create_directories(file.parent_path());
        const std::ofstream made(file);
        EXPECT_EQ(bundle.pathForResource("TelemetrixModel", "momd"), file);
    }
}

TEST_F(ProgramBundleTest, ProgramIsTheOneThatRunsUnlessAnotherIsNamed) {
    const ProgramBundle own({});
    EXPECT_EQ(own.path(), ProgramBundle::thisExecutable());
    EXPECT_TRUE(std::filesystem::equivalent(own.path(), "/proc/self/exe"));
}

}  // namespace
}  // namespace trimora::host
