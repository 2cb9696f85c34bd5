#pragma once

#include <chrono>
#include <map>
#include <string>

namespace trimora::reliability {

/// How long a thread was silent at most.
///
/// The machine may be busy with other things, and what is asked for is whether the program keeps somebody
/// waiting. So the times in which a thread of this process was ready to run and got no processor are not
/// counted, as far as the system tells them; what the silent thread spent on a processor always is, but for
/// what it did there for other threads (QueuesBeside).
class Heartbeat {
 public:
    Heartbeat() { beat(); }

    /// Costs some system calls for each thread. Always from one and the same thread.
    void beat();

    /// The longest silence between two beats since the last call.
    [[nodiscard]] std::chrono::milliseconds longestSilence();

 private:
    using Nanoseconds = std::chrono::nanoseconds;

    [[nodiscard]] Nanoseconds waitsForAProcessor();

    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
    Nanoseconds worked_{0};  // by this thread on a processor, since it began
    Nanoseconds longest_{0};
    std::map<std::string, Nanoseconds> waited_;  // by thread, since it began
};

}  // namespace trimora::reliability
