#pragma once

#include <filesystem>
#include <span>
#include <vector>

#include "foundation/Result.h"

namespace trimora {

/// What the program was asked for when it was started.
struct CommandLine {
    enum class Mode { edit, demo, gallery, help, version };

    Mode mode = Mode::edit;
    std::vector<std::filesystem::path> files;  ///< to open; the first readable one is
    bool isNew = false;                        ///< to begin empty, in an editor that runs already too
    std::filesystem::path record;      ///< where what the person does is written down; empty for not at all
    std::filesystem::path demoFolder;  ///< where a demo leaves its pictures

    /// Reads the words after the program's name. Words that it does not know, and missing ones, are an
    /// error that names them.
    [[nodiscard]] static foundation::Result<CommandLine> parse(std::span<const char* const> words);

    /// The page that --help prints.
    [[nodiscard]] static const char* help();
};

}  // namespace trimora
