#pragma once

#include <string>

/// How the library says that something is amiss. It reports no failure to the application: every
/// message is a line in the log (foundation/Log.h), at warning level.
namespace trimora::analytics {

/// printf into a string.
[[nodiscard, gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...);

/// Logs a warning for whoever programs against the library, in its one fixed form:
/// "Telemetrix Debug: WARNINGS: '<function>' '<source path>':'<line>', <message>". The source path
/// begins at the library's own folder and has no ending, such as "session/TXSessionManager".
/// The last three arguments are the caller's place and never given by hand.
void debugWarning(const std::string& message, const char* function = __builtin_FUNCTION(),
                  const char* file = __builtin_FILE(), int line = __builtin_LINE());

/// Logs "Telemetrix: <message>".
void logLine(const std::string& message);

}  // namespace trimora::analytics
