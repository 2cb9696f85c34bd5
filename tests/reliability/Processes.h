#pragma once

#include <sys/resource.h>

#include <functional>
#include <string>

#include "testing/Depth.h"

/// Work in a process of its own, for what may end a process or must be measured alone.
namespace trimora::reliability {

using testing::kSanitized;

/// How a process ended, and what it took.
struct Ended {
    bool exited = false;  ///< by itself
    int status = 0;       ///< of the exit, or the signal's number
    double cpuSeconds = 0;
    long grownKibibytes = 0;  ///< of memory, above what it had when it began

    [[nodiscard]] bool wasKilled() const;
    [[nodiscard]] std::string text() const;  ///< "exit 1", "signal 11 (Segmentation fault)"
};

/// Does the work in a copy of this process, which ends with what `work` returns as its status, or with 250
/// where an exception leaves it. More than `cpuSeconds` of the processor end it by a signal.
[[nodiscard]] Ended inOwnProcess(const std::function<int()>& work, int cpuSeconds = 60);

/// Most memory that this process has had since the last forgetPeak().
[[nodiscard]] long peakKibibytes();
void forgetPeak();

/// How many files this process has open.
[[nodiscard]] int openFiles();

}  // namespace trimora::reliability
