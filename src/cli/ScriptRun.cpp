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

bool ScriptRun::read(std::istream& lines, std::string& text) {
    do {
        if (settings_.waitForLine)
            settings_.waitForLine();
        ++number_;
        if (!std::getline(lines, text))
            return false;
    } while (script::isBlank(text));
    return true;
}

ScriptRun::Outcome ScriptRun::run(std::istream& lines) {
    const Instant begin = now();
    report_ = {{"script", name_}, {"steps", Json::array()}, {"failures", Json::array()}};
    bool badLine = false;
    {
        Progress progress;
        LogRecord log;
        ScriptedProgram program(settings_.program, settings_.homes,
                                [&](const std::string& line) { fail(progress.lineOfTrouble(), line); });
        StepRunner runner(program, log, printLine);
        for (std::string text; !badLine && !program.hasQuit() && read(lines, text);) {
            const auto step = script::readStep(text);
            badLine = !step;
            if (badLine) {
                fail(number_, step.error().message);
                continue;
            }
            progress.begin(number_, *step);
            const Instant stepBegin = now();
            const double clockBegin = program.time().clock().seconds();
            if (const auto done = runner.run(*step); !done)
                fail(number_, done.error().message);
            report_["steps"].push_back({{"line", number_},
                                        {"do", script::nameOf(*step)},
                                        {"seconds", secondsSince(stepBegin)},
                                        {"clockSeconds", program.time().clock().seconds() - clockBegin}});
        }
    }
    report_["seconds"] = secondsSince(begin);
    if (badLine)
        return Outcome::badLine;
    return failures_ > 0 ? Outcome::someFailed : Outcome::done;
}

}  // namespace trimora
