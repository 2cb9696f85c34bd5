#pragma once

#include <filesystem>
#include <string>

namespace trimora::ports {

/// What other programs of the desktop do for us. Calls return at once; a failure is a warning line in
/// the log. Main thread only.
class Workspace {
 public:
    virtual ~Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// Shows this file, selected, in the file manager; where none can, its folder.
    virtual void revealFile(const std::filesystem::path& file) = 0;

    /// Opens an address in the person's browser.
    virtual void openUrl(const std::string& url) = 0;

 protected:
    Workspace() = default;
};

}  // namespace trimora::ports
