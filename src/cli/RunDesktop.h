#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

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

}  // namespace trimora
