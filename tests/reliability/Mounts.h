#pragma once

#include <filesystem>
#include <functional>
#include <string>

/// Surroundings that only root can make. Where they cannot be made, a line says so and the test is skipped.
namespace trimora::reliability {

/// Runs the test on a thread that alone sees what it mounts; all of it goes with the thread. False where that
/// is not permitted.
[[nodiscard]] bool onOwnMounts(const std::function<void()>& test);

/// Runs the test on a thread that sees a file system of `size` ("512k") in the folder; false where that is
/// not permitted.
[[nodiscard]] bool onSmallFileSystem(const std::filesystem::path& folder, const std::string& size,
                                     const std::function<void()>& test);

/// Lets a process of its own do the work as an account that may write nothing but what is everybody's; what
/// `work` returns comes back, or -1 where there is no changing of accounts and this one may do everything.
[[nodiscard]] int asPlainAccount(const std::function<int()>& work);

}  // namespace trimora::reliability

/// Ends the test as one that this host cannot do.
#define TRIMORA_SKIP(reason)                    \
    do {                                        \
        std::printf("skipped: %s\n", (reason)); \
        GTEST_SKIP() << (reason);               \
    } while (false)
