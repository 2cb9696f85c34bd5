#include <cstdio>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "analytics/session/StoreReport.h"
#include "analytics/store/ManagedObjectContext.h"
#include "analytics/store/StoreCoordinator.h"
#include "files/UserFolders.h"
#include "foundation/RealTime.h"

// trimora-telemetry: lets a person read exactly what the program has recorded and would send.
namespace {

constexpr const char* kUsage =
    "Shows what is in the event store. Nothing is changed.\n"
    "\n"
    "  trimora-telemetry [--store FILE] [sessions]         sessions, their status and number of events\n"
    "  trimora-telemetry [--store FILE] events SESSION     the events of a session\n"
    "  trimora-telemetry [--store FILE] request SESSION    what is posted for a session, byte for byte\n"
    "  trimora-telemetry --help\n"
    "\n"
    "FILE is telemetrix.db in the program's data folder unless it is given.\n";

constexpr int kFailed = 1;
constexpr int kBadUsage = 2;

struct Command {
    std::filesystem::path store = trimora::files::dataHome() / "Trimora" / "telemetrix.db";
    std::string verb = "sessions";
    std::string session;
};

/// Nothing where the words make no sense.
std::optional<Command> parse(std::vector<std::string> words) {
    Command command;
    if (words.size() >= 2 && words[0] == "--store") {
        command.store = words[1];
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words.empty() || (words.size() == 1 && words[0] == "sessions"))
        return command;
    if (words.size() != 2 || (words[0] != "events" && words[0] != "request"))
        return std::nullopt;
    command.verb = words[0];
    command.session = words[1];
    return command;
}

trimora::foundation::Result<void> run(const Command& command) {
    using namespace trimora;
    if (!std::filesystem::exists(command.store))
        return foundation::Error{"there is no event store at " + command.store.string()};
    const foundation::RealClock clock;
    analytics::StoreSettings settings;
    settings.access = analytics::StoreSettings::Access::readOnly;
    analytics::StoreCoordinator coordinator(command.store, settings, clock);
    analytics::ManagedObjectContext store(coordinator);
    if (command.verb == "events")
        return analytics::printEvents(store, command.session, std::cout);
    if (command.verb == "request")
        return analytics::printRequest(store, command.session, std::cout);
    return analytics::printSessions(store, std::cout);
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words == std::vector<std::string>{"--help"}) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    const auto command = parse(words);
    if (!command) {
        std::fputs(kUsage, stderr);
        return kBadUsage;
    }
    const auto done = run(*command);
    if (!done) {
        std::fprintf(stderr, "trimora-telemetry: %s\n", done.error().message.c_str());
        return kFailed;
    }
    return 0;
}
