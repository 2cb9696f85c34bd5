#pragma once

#include <functional>
#include <iosfwd>
#include <string>

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
    struct Settings {
        ScriptedProgram::Options program;
        Homes homes;  ///< the folders that the program works in
        /// Called before each line is read; returns when there is one, or the end. May be empty.
        std::function<void()> waitForLine;
    };
    /// `name` is what messages call the script.
    ScriptRun(std::string name, Settings settings) : name_(std::move(name)), settings_(std::move(settings)) {}

    /// Once.
    [[nodiscard]] Outcome run(std::istream& lines);

    /// What was done and how long it took, for --report.
    [[nodiscard]] const Json& report() const { return report_; }

 private:
    class Progress;

    void fail(int line, const std::string& reason);

    /// The next line that says something; false at the end.
    [[nodiscard]] bool read(std::istream& lines, std::string& text);

    const std::string name_;
    const Settings settings_;
    int number_ = 0;  // of the line that was read last
    Json report_ = Json::object();
    int failures_ = 0;
};

}  // namespace trimora
