#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

/// One log for the process: lines with a level, handed to one sink.
///
/// The sink is the program's (standard error) or a test's (a list). Any thread; the sink is called on
/// the thread that logs, one line at a time. Lines below the threshold cost one comparison.
namespace trimora::foundation::log {

enum class Level {
    debug,    ///< for whoever works on the code; off in a shipped program
    info,     ///< what the program did
    warning,  ///< something is not as it should be, and the program goes on
    error,    ///< something is wrong that should never be; fails a test in which it appears
};

using Sink = std::function<void(Level, std::string_view line)>;

/// printf-style: debug("newScale %f", scale).
[[gnu::format(printf, 1, 2)]] void debug(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void info(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void warning(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void error(const char* format, ...);

/// Replaces the sink and returns the one before; an empty sink means standard error.
Sink setSink(Sink sink);

/// Writes the line as a log without a sink does; for sinks that show some lines, or keep them too.
void writeToStandardError(Level level, std::string_view line);

/// Lines below this level are dropped; returns the threshold before. Starts at warning.
Level setThreshold(Level level);

[[nodiscard]] std::string_view name(Level level);

}  // namespace trimora::foundation::log
