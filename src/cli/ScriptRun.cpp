#include "cli/ScriptRun.h"

#include <chrono>
#include <cstdio>
#include <istream>
#include <optional>

#include "cli/StepRunner.h"
#include "script/Names.h"
#include "script/Reader.h"

namespace trimora {
namespace {

using Instant = std::chrono::steady_clock::time_point;

Instant now() {
    return std::chrono::steady_clock::now();
}

double secondsSince(Instant begin) {
    return std::chrono::duration<double>(now() - begin).count();
}

void printLine(const Json& value) {
    const std::string line = jsonLine(value) + "\n";
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fflush(stdout);
}

/// Whether a step begins something that may come to nothing later: the file that is read or written.
bool beginsFileFlow(const script::Step& step) {
    if (std::holds_alternative<script::OpenStep>(step) || std::holds_alternative<script::DropStep>(step))
        return true;
    const auto* const perform = std::get_if<script::PerformStep>(&step);
    if (perform == nullptr)
        return false;
    for (const std::string_view selector :
         {"openPicture:", "open_pressed:", "openPictureNew:", "save_pressed:", "savePictureNew", "askForSave",
          "new_pressed:", "copy:", "paste:", "terminate:", "close_pressed"}) {
        if (perform->selector == selector)
            return true;
    }
    return false;
}

}  // namespace

/// Which line is to blame.
class ScriptRun::Progress {
 public:
    void begin(int line, const script::Step& step) {
        line_ = line;
        if (beginsFileFlow(step))
            flow_ = line;
    }
    /// Of something that was told to the person.
    [[nodiscard]] int lineOfTrouble() const { return flow_.value_or(line_); }

 private:
    int line_ = 0;
    std::optional<int> flow_;
};

void ScriptRun::fail(int line, const std::string& reason) {
    ++failures_;
    std::fprintf(stderr, "trimora: %s: line %d: %s\n", name_.c_str(), line, reason.c_str());
    report_["failures"].push_back({{"line", line}, {"reason", reason}});
}

ScriptRun::Outcome ScriptRun::run(std::istream& lines, const ScriptedProgram::Options& options,
                                  const Homes& homes) {
    const Instant begin = now();
    report_ = {{"script", name_}, {"steps", Json::array()}, {"failures", Json::array()}};
    Outcome outcome = Outcome::done;
    {
        Progress progress;
        LogRecord log;
        ScriptedProgram program(options, homes,
                                [&](const std::string& line) { fail(progress.lineOfTrouble(), line); });
        StepRunner runner(program, log, printLine);
        std::string text;
        for (int number = 1; !program.hasQuit() && std::getline(lines, text); ++number) {
            if (script::isBlank(text))
                continue;
            const auto step = script::readStep(text);
            if (!step) {
                fail(number, step.error().message);
                outcome = Outcome::badLine;
                break;
            }
            progress.begin(number, *step);
            const Instant stepBegin = now();
            const double clockBegin = program.time().clock().seconds();
            if (const auto done = runner.run(*step); !done)
                fail(number, done.error().message);
            report_["steps"].push_back({{"line", number},
                                        {"do", script::nameOf(*step)},
                                        {"seconds", secondsSince(stepBegin)},
                                        {"clockSeconds", program.time().clock().seconds() - clockBegin}});
        }
    }
    report_["seconds"] = secondsSince(begin);
    return outcome == Outcome::done && failures_ > 0 ? Outcome::someFailed : outcome;
}

}  // namespace trimora
