#include "testing/CapturedLog.h"

#include <algorithm>
#include <utility>

namespace trimora::testing {

namespace log = foundation::log;

CapturedLog::CapturedLog() : outerThreshold_(log::setThreshold(log::Level::debug)) {
    outer_ = log::setSink({});  // first, so that outer_ is known before any thread's line comes to hear()
    log::setSink([this](log::Level level, std::string_view text) { hear(level, text); });
}

void CapturedLog::hear(log::Level level, std::string_view text) {
    {
        const std::scoped_lock lock(mutex_);
        lines_.push_back({level, std::string(text)});
    }
    if (outer_)
        outer_(level, text);
}

CapturedLog::~CapturedLog() {
    log::setSink(outer_);
    log::setThreshold(outerThreshold_);
}

std::vector<CapturedLog::Line> CapturedLog::lines() const {
    const std::scoped_lock lock(mutex_);
    return lines_;
}

std::vector<std::string> CapturedLog::texts() const {
    std::vector<std::string> found;
    for (const Line& line : lines())
        found.push_back(line.text);
    return found;
}

std::vector<std::string> CapturedLog::texts(log::Level level) const {
    std::vector<std::string> found;
    for (const Line& line : lines()) {
        if (line.level == level)
            found.push_back(line.text);
    }
    return found;
}

bool CapturedLog::contains(std::string_view text) const {
    const std::vector<Line> held = lines();
    return std::any_of(held.begin(), held.end(),
                       [&](const Line& line) { return line.text.find(text) != std::string::npos; });
}

void CapturedLog::clear() {
    const std::scoped_lock lock(mutex_);
    lines_.clear();
}

}  // namespace trimora::testing
