#pragma once

#include <filesystem>
#include <functional>

#include "analytics/store/StoreSettings.h"
#include "foundation/Clock.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Queues.h"

namespace trimora::analytics {

class ApplicationBundle;
class DeviceSource;
class HttpTransport;
class LocationSource;
class ReachabilitySource;
class UserDefaults;

/// Everything that the library is given by the program that links it. All references must live longer
/// than the Installation that they are handed to.
struct Wiring {
    foundation::QueueFactory& queues;
    foundation::Clock& clock;
    foundation::Scheduler& scheduler;
    foundation::NotificationCenter& notifications;
    UserDefaults& userDefaults;
    ApplicationBundle& bundle;
    DeviceSource& device;
    LocationSource& location;
    ReachabilitySource& reachability;
    HttpTransport& transport;
    /// The folder in which applications keep what they need; the library makes its own folder, named
    /// after the application, in it.
    std::filesystem::path applicationSupportDirectory;
    StoreSettings store = {};
};

/// Puts the library to work in a process, and takes it out again.
///
/// Life cycle:
/// 1. The program makes one Installation before it calls anything else of the library. Nothing is
///    opened, started or written yet; the library only begins to wait for the first
///    `Telemetrix::startSession()`.
/// 2. The library's shared objects come to life on first use and stay.
/// 3. The destructor stops hearing notifications, finishes all queued work, calls off every post in
///    flight (its session waits in the store) and releases the shared objects. It must run on the main
///    thread, outside the library's queue, before what the Wiring names is destroyed.
///
/// One at a time: a second Installation may be made only when the first is gone.
class Installation {
 public:
    explicit Installation(const Wiring& wiring);
    ~Installation();
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;
};

/// Whether an Installation exists.
[[nodiscard]] bool isInstalled();

/// What the current Installation was given. Only while isInstalled().
[[nodiscard]] const Wiring& wiring();

/// The task, dropped unless the Installation of this moment is still there when it is to run. The
/// destructor of the Installation waits for such a task that is running. For everything that arrives
/// by way of timers, other queues and networks.
[[nodiscard]] foundation::Task whileInstalled(foundation::Task task);

/// Calls `release` when the Installation goes; what was registered last is called first.
void atUninstallation(std::function<void()> release);

}  // namespace trimora::analytics
