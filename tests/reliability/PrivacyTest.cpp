#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include "BadNetwork.h"
#include "analytics/TelemetrixForTests.h"
#include "files/FilesForTests.h"
#include "host/MachineDevice.h"
#include "host/ProgramBundle.h"
#include "testing/Depth.h"

// What leaves the machine, and what is kept on it, says nothing of who the person is.
namespace trimora::reliability {
namespace {

using analytics::Telemetrix;
using analytics::TelemetrixTest;

constexpr const char* kCanary = "CANARY";

/// The library on the adapters of the real machine, under a name, a home and a host that nobody has.
class Privacy : public TelemetrixTest {
 protected:
    Privacy() {
        service_.setClock(time);
        for (const char* name : {"USER", "LOGNAME", "HOME", "HOSTNAME", "PWD", "MAIL", "SUDO_USER"}) {
            if (const char* const value = std::getenv(name))
                before_[name] = value;
            ::setenv(name, "/people/CANARY-ann", 1);
        }
    }
    ~Privacy() override {
        for (const char* name : {"USER", "LOGNAME", "HOME", "HOSTNAME", "PWD", "MAIL", "SUDO_USER"}) {
            const auto value = before_.find(name);
            if (value != before_.end())
                ::setenv(name, value->second.c_str(), 1);
            else
                ::unsetenv(name);
        }
    }
    void SetUp() override {}

    void installOnMachine() {
        installation = std::make_unique<analytics::Installation>(
            analytics::Wiring{queues, time, time, notifications, defaults, machineBundle_, machine_, location,
                              network, service_, home.path(), storeSettings});
    }
    void sendSessions(int count) {
        installOnMachine();
        start();
        for (int i = 0; i < count; ++i) {
            Telemetrix::logEvent("button open pressed.");
            settle();
            post(analytics::kNSWindowDidResignKeyNotification);
            post(analytics::kNSWindowDidBecomeKeyNotification);
            advance(5);
        }
    }
    [[nodiscard]] std::string storedBytes() const {
        std::string bytes;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path())) {
            if (entry.is_regular_file())
                bytes += files::contents(entry.path());
        }
        return bytes;
    }

    BadNetwork service_{time, queues.mainQueue()};
    host::MachineDevice machine_{"org.trimora.Trimora", "Trimora/0.1.0"};
    host::ProgramBundle machineBundle_{{{"CFBundleDisplayName", "Trimora"},
                                        {"CFBundleIdentifier", "org.trimora.Trimora"},
                                        {"CFBundleShortVersionString", "0.1.0"},
                                        {"TelemetrixInnerId", "app-id"}}};
    std::map<std::string, std::string> before_;
};

TEST_F(Privacy, NothingSentStoredOrLoggedNamesThePerson) {
    const int count = testing::byDepth(100, 500, 5'000);
    // A host's name of this thread's own, where that is permitted.
    bool named = false;
    std::thread([&] {
        named = ::unshare(CLONE_NEWUTS) == 0 && ::sethostname("CANARY-host", 11) == 0;
        sendSessions(count);
        quit();
    }).join();
    if (!named)
        std::printf("skipped: the host's name cannot be changed here\n");
    EXPECT_GE(service_.accepted().size(), static_cast<std::size_t>(count) - 1);
    EXPECT_NE(service_.wire().find("device_info"), std::string::npos);
    EXPECT_EQ(service_.wire().find(kCanary), std::string::npos);
    EXPECT_EQ(storedBytes().find(kCanary), std::string::npos);
    EXPECT_FALSE(log.contains(kCanary));
    std::printf("%zu sessions, %zu bytes on the wire\n", service_.accepted().size(), service_.wire().size());
}

}  // namespace
}  // namespace trimora::reliability
