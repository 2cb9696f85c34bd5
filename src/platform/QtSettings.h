#pragma once

#include <QSettings>
#include <filesystem>

#include "ports/Settings.h"

namespace trimora::platform {

/// Settings as an INI file that a person can read. It is read when this is made and written a moment
/// after a change, and at the end; a file that cannot be written is left as it is.
class QtSettings final : public ports::Settings {
 public:
    explicit QtSettings(const std::filesystem::path& file);

    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override;
    void setText(std::string_view key, const std::string& text) override;
    [[nodiscard]] std::vector<std::string> list(std::string_view key) const override;
    void setList(std::string_view key, const std::vector<std::string>& list) override;

 private:
    QSettings file_;
};

}  // namespace trimora::platform
