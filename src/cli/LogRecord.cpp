#include "cli/LogRecord.h"

#include <utility>

namespace trimora {

namespace log = foundation::log;

LogRecord::LogRecord() : shownFrom_(log::setThreshold(log::Level::debug)) {
    shown_ = log::setSink([this](log::Level level, std::string_view line) { hear(level, line); });
}

LogRecord::~LogRecord() {
    log::setSink(shown_);
    log::setThreshold(shownFrom_);
}

std::vector<std::string> LogRecord::take() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(lines_, {});
}

void LogRecord::hear(log::Level level, std::string_view line) {
    {
        const std::scoped_lock lock(mutex_);
        lines_.emplace_back(line);
    }
    if (level < shownFrom_)
        return;
    if (shown_)
        shown_(level, line);
    else
        log::writeToStandardError(level, line);
}

}  // namespace trimora
