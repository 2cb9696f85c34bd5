#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/RunTime.h"
#include "foundation/ThreadQueues.h"
#include "main/Host.h"
#include "ports/Settings.h"
#include "ports/UserNotifications.h"
#include "ports/Workspace.h"

/// The desktop of a scripted run: nothing of the account's is read or changed, and nobody is disturbed.
namespace trimora {

/// Forgets with the run, so that each begins as the first did.
class RunSettings final : public ports::Settings {
 public:
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override;
    void setText(std::string_view key, const std::string& text) override;
    [[nodiscard]] std::vector<std::string> list(std::string_view key) const override;
    void setList(std::string_view key, const std::vector<std::string>& list) override;

 private:
    std::map<std::string, std::vector<std::string>, std::less<>> lists_;  // a text is a list of one
};

/// Keeps what is posted; nobody answers.
class RunNotifications final : public ports::UserNotifications {
 public:
    void post(const ports::UserNotification& notification) override { posted_.push_back(notification); }
    void onActivation(Activated /*activated*/) override {}

    [[nodiscard]] const std::vector<ports::UserNotification>& posted() const { return posted_; }

 private:
    std::vector<ports::UserNotification> posted_;
};

/// Logs what would be opened.
class RunWorkspace final : public ports::Workspace {
 public:
    void revealFile(const std::filesystem::path& file) override;
    void openUrl(const std::string& url) override;
};

/// All that a program of its own time and queues runs on. Outlives the Wiring that has its host. Main thread
/// only.
class RunDesktop {
 public:
    explicit RunDesktop(RunTime::Pace pace) : time_(pace) {}

    /// What the program records stays here, and it begins with that at once.
    [[nodiscard]] Host host(Homes homes, ports::Panels& panels);

    [[nodiscard]] RunTime& time() { return time_; }
    [[nodiscard]] const RunNotifications& notifications() const { return notifications_; }
    /// Whether the program was told to end.
    [[nodiscard]] bool hasQuit() const { return hasQuit_; }

 private:
    bool hasQuit_ = false;
    RunSettings settings_;
    RunNotifications notifications_;
    RunWorkspace workspace_;
    foundation::ThreadWorkers codecWorkers_;
    RunTime time_;
};

}  // namespace trimora
