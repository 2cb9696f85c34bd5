#include "cli/CommandLine.h"

#include <string>
#include <string_view>

namespace trimora {

using foundation::Error;
using foundation::Result;

Result<CommandLine> CommandLine::parse(std::span<const char* const> words) {
    CommandLine line;
    bool options = true;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        if (!options || !word.starts_with("-") || word == "-") {
            line.files.emplace_back(word);
        } else if (word == "--") {
            options = false;
        } else if (word == "--help" || word == "-h") {
            line.mode = Mode::help;
            return line;
        } else if (word == "--version") {
            line.mode = Mode::version;
            return line;
        } else if (word == "--new") {
            line.isNew = true;
        } else if (word == "--record" && i + 1 < words.size()) {
            line.record = words[++i];
        } else if (word == "--gallery") {
            line.mode = Mode::gallery;
        } else if (word == "--demo" && i + 1 < words.size()) {
            line.mode = Mode::demo;
            line.demoFolder = words[++i];
        } else {
            return Error{"the option " + std::string(word) + " is not known or lacks a word"};
        }
    }
    if (line.mode == Mode::demo && line.files.size() != 1)
        return Error{"a demo takes a folder and one picture"};
    if (line.mode != Mode::edit && !line.record.empty())
        return Error{"only what a person does in the editor is recorded"};
    return line;
}

const char* CommandLine::help() {
    return "Cuts a subject out of a picture.\n"
           "\n"
           "  trimora [FILE...]               opens the first of the files that is a picture\n"
           "  trimora --new                   begins with an empty editor\n"
           "  trimora --record SCRIPT [FILE...]   writes what is done in the window to an edit script\n"
           "  trimora run SCRIPT...           does it again without a person; run --help tells more\n"
           "  trimora --demo FOLDER PICTURE   cuts the picture by itself, without a display, and leaves\n"
           "                                  FOLDER/cut.png and FOLDER/screenshot.png\n"
           "  trimora --gallery               shows every control in every state, and prints what they "
           "report\n"
           "  trimora cut --help              tells how to cut pictures without a window\n"
           "  trimora info --help             tells how to look at picture files\n"
           "  trimora --help\n"
           "  trimora --version\n";
}

}  // namespace trimora
