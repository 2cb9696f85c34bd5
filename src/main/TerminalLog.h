#pragma once

namespace trimora {

/// From here on the log goes to standard error as a person at a terminal wants it: warnings and errors,
/// without what Telemetrix tells its developers of every attempt.
///
/// Where TRIMORA_LOG is set to debug, info, warning or error, every line from that level on is written.
/// Main thread, once, before anything logs.
void logToTerminal();

}  // namespace trimora
