#pragma once

#include <filesystem>
#include <functional>

#include "foundation/Clock.h"
#include "foundation/Queues.h"
#include "main/TelemetrixWiring.h"
#include "ports/Panels.h"
#include "ports/Settings.h"
#include "ports/UserNotifications.h"
#include "ports/Workspace.h"

namespace trimora {

/// The folders in which the program keeps what is the account's, each absolute or empty.
struct Homes {
    std::filesystem::path data;    ///< history and the record of use, in its folder "Trimora"
    std::filesystem::path config;  ///< settings and the answer to the consent question, likewise
    std::filesystem::path cache;   ///< files that are dragged in and out, likewise
};

/// What the program runs on: threads, time, and the desktop around it. The window of a person has one made
/// of the real things (DesktopHost), a scripted run one that it moves itself.
///
/// Everything referred to outlives the Wiring that is handed the host.
struct Host {
    foundation::QueueFactory& queues;
    foundation::Clock& clock;
    foundation::Scheduler& scheduler;
    foundation::Workers& codecWorkers;  ///< split what reading and writing of pictures can split
    ports::Panels& panels;
    ports::Settings& settings;
    ports::UserNotifications& userNotifications;
    ports::Workspace& workspace;
    Homes homes;
    TelemetrixWiring::Begin recording;  ///< afterFirstFrame needs queues on threads of their own
    TelemetrixWiring::EarlierYes earlierYes;
    /// See cutengine::Patience.
    std::function<int()> randomMicroseconds;
    /// Ends the program.
    std::function<void()> quit;
};

}  // namespace trimora
