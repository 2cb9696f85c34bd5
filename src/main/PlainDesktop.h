#pragma once

#include "editor/Messages.h"
#include "ports/UserNotifications.h"
#include "ports/Workspace.h"

namespace trimora {

/// The person's other programs, as the toolkit reaches them. Main thread only.
class ToolkitWorkspace final : public ports::Workspace {
 public:
    /// Opens the file's folder.
    void revealFile(const std::filesystem::path& file) override;
    void openUrl(const std::string& url) override;
};

/// Notifications as lines in the window; nobody can answer them. Main thread only.
class WindowNotifications final : public ports::UserNotifications {
 public:
    /// `messages` lives longer.
    explicit WindowNotifications(editor::Messages& messages) : messages_(messages) {}

    void post(const ports::UserNotification& notification) override;
    void onActivation(Activated /*activated*/) override {}

 private:
    editor::Messages& messages_;
};

}  // namespace trimora
