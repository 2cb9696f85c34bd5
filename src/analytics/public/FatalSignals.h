#pragma once

#include <string>

namespace trimora::analytics {

/// The handlers of fatal signals: they write what the dying process knows of itself (see CrashRecord)
/// to a file that is open already, and let the signal take its course. For CrashCapture alone.
class FatalSignals {
 public:
    /// Begins to handle; nothing is written before writeTo(). On the calling thread the handlers run on
    /// a stack of their own, so that an overflow of its stack is told too.
    static void handle();

    /// Where the record of a crash goes: an open descriptor that stays the caller's. Any thread.
    static void writeTo(int file);

    /// Gives every signal back to whoever had it.
    static void release();

    /// The session that goes into the record: at most 63 characters of it. Any thread.
    static void setSession(const std::string& session);
    [[nodiscard]] static std::string session();

    /// The process, which is coming to its end, aborts unless it ends by itself within that time. Nothing
    /// takes this back.
    static void endWithin(unsigned seconds);
};

}  // namespace trimora::analytics
