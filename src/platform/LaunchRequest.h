#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace trimora::platform {

/// What somebody who starts the program wants of it. With neither files nor an action: that its window
/// comes to the front.
struct LaunchRequest {
    std::vector<std::filesystem::path> files{};  ///< to open, as if they were dropped on the window
    std::string action{};  ///< one of the launcher's menu, by the name in the .desktop file; empty for none
    std::string activationToken{};  ///< for bringing the window to the front (ActivationToken.h); or empty
};

}  // namespace trimora::platform
