#include "main/TerminalLog.h"

#include <cstdlib>
#include <string_view>

#include "foundation/Log.h"

namespace trimora {

namespace log = foundation::log;

namespace {

void writeAllButTelemetrix(log::Level level, std::string_view line) {
    if (!line.starts_with("Telemetrix"))
        log::writeToStandardError(level, line);
}

}  // namespace

void logToTerminal() {
    const char* const wanted = std::getenv("TRIMORA_LOG");
    if (wanted == nullptr) {
        log::setSink(writeAllButTelemetrix);
        return;
    }
    for (const auto level : {log::Level::debug, log::Level::info, log::Level::warning, log::Level::error}) {
        if (log::name(level) == wanted)
            log::setThreshold(level);
    }
}

}  // namespace trimora
