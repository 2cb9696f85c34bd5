#pragma once

#include <filesystem>

/// Where the account keeps its files, read from the environment at each call. The results are absolute,
/// or empty where the account has no home folder at all; nothing is made on disk.
namespace trimora::files {

/// What the program keeps for the person: $XDG_DATA_HOME, or ~/.local/share where that is not set or not
/// absolute.
[[nodiscard]] std::filesystem::path dataHome();

/// What the person configured: $XDG_CONFIG_HOME, or ~/.config.
[[nodiscard]] std::filesystem::path configHome();

/// What can be made again: $XDG_CACHE_HOME, or ~/.cache.
[[nodiscard]] std::filesystem::path cacheHome();

}  // namespace trimora::files
