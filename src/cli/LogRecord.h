#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "foundation/Log.h"

namespace trimora {

/// Keeps every line that is logged while it lives, debug lines too, and passes on what the terminal would
/// have shown without it. One at a time; lines come from any thread.
class LogRecord {
 public:
    LogRecord();
    ~LogRecord();
    LogRecord(const LogRecord&) = delete;
    LogRecord& operator=(const LogRecord&) = delete;

    /// The lines since the last call.
    [[nodiscard]] std::vector<std::string> take();

 private:
    void hear(foundation::log::Level level, std::string_view line);

    foundation::log::Level shownFrom_;
    foundation::log::Sink shown_;
    std::mutex mutex_;
    std::vector<std::string> lines_;
};

}  // namespace trimora
