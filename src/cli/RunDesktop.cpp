#include "cli/RunDesktop.h"

#include <utility>

#include "foundation/Log.h"

namespace trimora {

std::optional<std::string> RunSettings::text(std::string_view key) const {
    const auto found = lists_.find(key);
    return found != lists_.end() && !found->second.empty() ? std::optional(found->second.front())
                                                           : std::nullopt;
}

void RunSettings::setText(std::string_view key, const std::string& text) {
    lists_[std::string(key)] = {text};
}

std::vector<std::string> RunSettings::list(std::string_view key) const {
    const auto found = lists_.find(key);
    return found != lists_.end() ? found->second : std::vector<std::string>();
}

void RunSettings::setList(std::string_view key, const std::vector<std::string>& list) {
    lists_[std::string(key)] = list;
}

void RunWorkspace::revealFile(const std::filesystem::path& file) {
    foundation::log::info("would show the file %s", file.c_str());
}

void RunWorkspace::openUrl(const std::string& url) {
    foundation::log::info("would open %s", url.c_str());
}

Host RunDesktop::host(Homes homes, ports::Panels& panels) {
    return {.queues = time_.queues(),
            .clock = time_.clock(),
            .scheduler = time_.clock(),
            .codecWorkers = codecWorkers_,
            .panels = panels,
            .settings = settings_,
            .userNotifications = notifications_,
            .workspace = workspace_,
            .homes = std::move(homes),
            .recording = TelemetrixWiring::Begin::atOnce,
            .earlierYes = TelemetrixWiring::EarlierYes::recordsOnly,
            .randomMicroseconds = [] { return 0; },
            .quit = [this] { hasQuit_ = true; }};
}

}  // namespace trimora
