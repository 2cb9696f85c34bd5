#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cutengine/Colour.h"
#include "foundation/Result.h"

namespace trimora::batch {

/// What is to show where a picture is cut away.
struct BackgroundChoice {
    enum class Kind { none, blur, colour };
    Kind kind = Kind::none;
    cutengine::Colour colour;  ///< of Kind::colour

    /// "none", "blur" or a colour as "#RRGGBB"; anything else is an error that quotes it.
    [[nodiscard]] static foundation::Result<BackgroundChoice> parse(const std::string& word);
};

/// What `trimora cut` was asked to do.
struct CutOrder {
    std::vector<std::string> inputs;    ///< files, or "-"; never empty unless help is asked for
    std::optional<std::string> output;  ///< a file or "-"; this or outFolder is set
    std::optional<std::filesystem::path> outFolder;
    std::optional<std::string> mask;     ///< a file or "-"
    std::optional<std::string> strokes;  ///< a file or "-"
    std::optional<BackgroundChoice> background;
    bool crop = false;
    bool writeMask = false;
    bool json = false;
    bool force = false;
    int jobs = 0;  ///< 0: one a core
    bool help = false;

    static constexpr int kMostJobs = 256;

    /// Reads the words after "cut". Unknown words, missing ones and those that contradict each other are an
    /// error that names them.
    [[nodiscard]] static foundation::Result<CutOrder> parse(std::span<const char* const> words);

    /// The page that --help prints.
    [[nodiscard]] static const char* helpPage();
};

}  // namespace trimora::batch
