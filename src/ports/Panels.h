#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace trimora::ports {

/// Asks the person which file to open or where to save.
///
/// Every call returns at once; the answer comes later, on the main thread, exactly once: the file that
/// was chosen, or nothing where the panel was cancelled. A panel never reads or writes the file itself.
/// `folder` is where the panel begins; an empty one leaves that to the panel. Main thread only.
class Panels {
 public:
    using Answer = std::function<void(std::optional<std::filesystem::path>)>;

    virtual ~Panels() = default;
    Panels(const Panels&) = delete;
    Panels& operator=(const Panels&) = delete;

    /// One existing picture file.
    virtual void chooseFileToOpen(const std::filesystem::path& folder, Answer answer) = 0;

    /// Where a new PNG file is to go. `name` is proposed; a name that is taken is confirmed by the panel.
    virtual void chooseFileToSave(const std::filesystem::path& folder, const std::string& name,
                                  Answer answer) = 0;

 protected:
    Panels() = default;
};

}  // namespace trimora::ports
