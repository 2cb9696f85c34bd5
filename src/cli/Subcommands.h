#pragma once

#include <span>
#include <string_view>

namespace trimora {

/// The words of a command line: borrowed, as main() was given them.
using Words = std::span<const char* const>;

/// One of the things that the program does by its first word, in place of opening the editor.
struct Subcommand {
    std::string_view name;
    int (*run)(Words words);  ///< handed the words after the name; returns the exit status
};

/// Every subcommand, in the order in which the help page lists them.
[[nodiscard]] std::span<const Subcommand> subcommands();

/// The subcommand that the first of the program's words names, or null: then the words are options and
/// files of the editor. A picture with the name of a subcommand is opened by its path: "./run".
[[nodiscard]] const Subcommand* subcommandOf(Words words);

}  // namespace trimora
