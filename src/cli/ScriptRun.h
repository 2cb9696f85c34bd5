#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "cli/JsonValues.h"
#include "cli/ScriptedProgram.h"

namespace trimora {

/// One script, run from its first line to its last on a program of its own.
///
/// Values go to standard output, one a line, each as soon as it is there; what went wrong to standard error,
/// with the line. A line that is no step ends the run; a step that cannot be done does not. Main thread only.
class ScriptRun {
 public:
    enum class Outcome : std::uint8_t {
        done = 0,        ///< every step was done
        someFailed = 1,  ///< every line was a step, and not every one could be done
        badLine = 2,     ///< the run ended at a line that is no step
    };
    /// `name` is what messages call the script.
    explicit ScriptRun(std::string name) : name_(std::move(name)) {}

    /// `homes` are the folders that the program works in.
    [[nodiscard]] Outcome run(std::istream& lines, const ScriptedProgram::Options& options,
                              const Homes& homes);

    /// What was done and how long it took, for --report.
    [[nodiscard]] const Json& report() const { return report_; }

 private:
    class Progress;

    void fail(int line, const std::string& reason);

    const std::string name_;
    Json report_ = Json::object();
    int failures_ = 0;
};

}  // namespace trimora
