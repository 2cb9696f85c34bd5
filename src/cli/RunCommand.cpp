#include "cli/RunCommand.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>

#include "cli/ScriptRun.h"
#include "cli/Toolkit.h"
#include "files/UserFolders.h"

namespace trimora {

using foundation::Error;
using foundation::Result;

namespace {

constexpr int kBadLine = static_cast<int>(ScriptRun::Outcome::badLine);

constexpr const char* kHelp =
    "Drives the editor from edit scripts, without a person and without a display.\n"
    "\n"
    "  trimora run [OPTION...] SCRIPT...   runs each script in turn, afresh; - is standard input\n"
    "\n"
    "  --show          in a window that can be seen\n"
    "  --real-time     at the machine's own pace; otherwise no time is waited for\n"
    "  --report FILE   leaves what was done and how long it took, as JSON\n"
    "  --home FOLDER   keeps history, settings and the record of use below FOLDER\n"
    "  --help\n"
    "\n"
    "A script holds one JSON object a line. What its steps print goes to standard output, one value a line.\n"
    "Exit status: 0 all was done; 1 a step could not be done; 2 a line is no step, or the command line\n"
    "makes no sense.\n";

Homes homesOf(const RunLine& line) {
    if (!line.home)
        return {files::dataHome(), files::configHome(), files::cacheHome()};
    const std::filesystem::path home = std::filesystem::absolute(*line.home);
    return {home / "data", home / "config", home / "cache"};
}

bool writeReport(const std::filesystem::path& file, const Json& report) {
    std::ofstream stream(file);
    stream << report.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
    stream.close();
    if (stream.fail())
        std::fprintf(stderr, "trimora: the report %s cannot be written\n", file.c_str());
    return !stream.fail();
}

/// Until standard input has something to read, or has ended, the window goes on.
void waitForInput() {
    constexpr int kFrame = 16;  // milliseconds
    pollfd input{STDIN_FILENO, POLLIN, 0};
    while (std::cin.rdbuf()->in_avail() == 0 && poll(&input, 1, kFrame) == 0)
        QCoreApplication::processEvents();
}

/// The exit status of one script, whose report is added.
int runOne(const std::string& script, const RunLine& line, Json& reports) {
    std::ifstream file;
    if (script != "-") {
        file.open(script);
        file.peek();  // a folder opens and cannot be read
        if (!file.is_open() || file.bad()) {
            std::fprintf(stderr, "trimora: the script %s cannot be read\n", script.c_str());
            return kBadLine;
        }
    }
    const bool isTyped = script == "-";
    ScriptRun run(script, {{line.isRealTime ? RunTime::Pace::really : RunTime::Pace::virtually, line.isShown},
                           homesOf(line),
                           isTyped && line.isShown ? waitForInput : std::function<void()>()});
    const auto outcome = static_cast<int>(run.run(isTyped ? std::cin : file));
    reports.push_back(run.report());
    reports.back()["exitStatus"] = outcome;
    return outcome;
}

}  // namespace

Result<RunLine> RunLine::parse(Words words) {
    RunLine line;
    bool options = true;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        const bool hasNext = i + 1 < words.size();
        if (!options || !word.starts_with("-") || word == "-")
            line.scripts.emplace_back(word);
        else if (word == "--")
            options = false;
        else if (word == "--help" || word == "-h")
            line.isHelp = true;
        else if (word == "--show")
            line.isShown = true;
        else if (word == "--real-time")
            line.isRealTime = true;
        else if (word == "--report" && hasNext)
            line.report = words[++i];
        else if (word == "--home" && hasNext)
            line.home = words[++i];
        else
            return Error{"the option " + std::string(word) + " is not known or lacks a word"};
    }
    if (line.scripts.empty() && !line.isHelp)
        return Error{"no script is named"};
    return line;
}

int runScripts(Words words) {
    const auto line = RunLine::parse(words);
    if (!line) {
        std::fprintf(stderr, "trimora: %s; run --help tells more\n", line.error().message.c_str());
        return kBadLine;
    }
    if (line->isHelp) {
        std::fputs(kHelp, stdout);
        return 0;
    }
    std::ios::sync_with_stdio(false);  // so that lines that came together are known to be there
    const Toolkit toolkit(line->isShown ? Toolkit::Screen::desktop : Toolkit::Screen::offscreen);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    Json reports = Json::array();
    int status = 0;
    for (const std::string& script : line->scripts) {
        status = std::max(status, runOne(script, *line, reports));
        if (status == kBadLine)
            break;
    }
    if (line->report && !writeReport(*line->report, {{"scripts", reports}, {"exitStatus", status}}))
        status = std::max(status, 1);
    return status;
}

}  // namespace trimora
