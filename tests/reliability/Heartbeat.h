#pragma once

#include <chrono>
#include <map>
#include <string>

namespace trimora::reliability {

/// How long somebody was silent at most.
///
/// The time in which a thread of this process was ready to run and got no processor is not counted, the
/// longest such time of any one thread: the machine may be busy with other things, and what is asked for is
/// whether somebody keeps others waiting. Where the system does not tell that time, all of it counts.
class Heartbeat {
 public:
    Heartbeat() { beat(); }

    /// Costs some system calls for each thread.
    void beat();

    /// The longest silence between two beats since the last call.
    [[nodiscard]] std::chrono::milliseconds longestSilence();

 private:
    using Nanoseconds = std::chrono::nanoseconds;

    [[nodiscard]] Nanoseconds longestWaitForAProcessor();

    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
    Nanoseconds longest_{0};
    std::map<std::string, Nanoseconds> waited_;  // by thread, since it began
};

}  // namespace trimora::reliability
