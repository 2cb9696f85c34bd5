#pragma once

#include <functional>
#include <iosfwd>
#include <memory>

#include "foundation/Queues.h"

namespace trimora::batch {

/// What a command without a window works with; the program hands in its own, a test hands in strings.
///
/// All outlive the command. A command writes to a stream from one thread at a time.
struct Surroundings {
    std::istream& in;   ///< read where a file is named "-"
    std::ostream& out;  ///< results: pictures, JSON, pages of help
    std::ostream& err;  ///< what is told to a person: progress and trouble
    int cores;          ///< how many threads are worth running; 1 or more
    /// Makes workers of so many threads in all, the caller's included.
    std::function<std::unique_ptr<foundation::Workers>(int width)> makeWorkers;
};

/// What a command returns to the shell.
enum ExitStatus : int {
    kAllWell = 0,
    kSomeFailed = 1,
    kBadUsage = 2,  ///< what was asked makes no sense as a whole; nothing was begun
};

/// The name that stands for standard input and standard output.
inline constexpr const char* kStandardStream = "-";

}  // namespace trimora::batch
