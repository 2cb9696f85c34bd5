#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace trimora::ports {

/// A question with a few buttons, the first of which is what Return means.
struct Alert {
    /// What the first button answers; each further one answers one more.
    static constexpr int kFirstButton = 1000;

    std::string message;
    std::vector<std::string> buttons;  ///< at least one, in the order in which they are read
    int cancelAnswer = kFirstButton;   ///< the answer of Escape and of closing the alert
};

/// Asks the person which file to open, where to save, or which of a few ways to go.
///
/// Every call returns at once; the answer comes later, on the main thread, exactly once: what was chosen, or
/// nothing where the panel was cancelled. A panel never reads or writes the file itself.
/// `folder` is where the panel begins; an empty one leaves that to the panel. Texts are UTF-8. Main thread
/// only.
class Panels {
 public:
    using Answer = std::function<void(std::optional<std::filesystem::path>)>;
    /// Most panels let one file be chosen; of more, in their order, the first that is readable counts.
    using FilesAnswer = std::function<void(std::vector<std::filesystem::path>)>;
    using AlertAnswer = std::function<void(int)>;

    virtual ~Panels() = default;
    Panels(const Panels&) = delete;
    Panels& operator=(const Panels&) = delete;

    /// An existing picture file.
    virtual void chooseFileToOpen(const std::filesystem::path& folder, FilesAnswer answer) = 0;

    /// Where a new PNG file is to go. `name` is proposed; a name that is taken is confirmed by the panel.
    virtual void chooseFileToSave(const std::filesystem::path& folder, const std::string& name,
                                  Answer answer) = 0;

    /// Which button of the alert.
    virtual void runAlert(const Alert& alert, AlertAnswer answer) = 0;

 protected:
    Panels() = default;
};

}  // namespace trimora::ports
