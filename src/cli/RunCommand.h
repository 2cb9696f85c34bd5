#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/Subcommands.h"
#include "foundation/Result.h"

namespace trimora {

/// What `trimora run` was asked for.
struct RunLine {
    std::vector<std::string> scripts;  ///< paths; "-" is standard input
    bool isShown = false;
    bool isRealTime = false;
    bool isHelp = false;
    std::optional<std::filesystem::path> report;
    std::optional<std::filesystem::path> home;

    /// Reads the words after "run". Words that it does not know, and missing ones, are an error that names
    /// them.
    [[nodiscard]] static foundation::Result<RunLine> parse(Words words);
};

/// `trimora run SCRIPT...`: runs each script in turn, afresh. The exit status is the worst of theirs: 0 all
/// done, 1 some steps could not be done, 2 a line that is no step, which ends it all.
[[nodiscard]] int runScripts(Words words);

}  // namespace trimora
