#pragma once

#include <QSettings>
#include <QTimer>
#include <chrono>
#include <filesystem>

#include "ports/Settings.h"

namespace trimora::platform {

/// Settings as an INI file that a person can read. It is read when this is made and written a moment
/// after a change, and at the end; a file that cannot be written is left as it is.
///
/// The moment is there because writing waits for the disk, as long as a frame or two: what a change comes
/// with, a picture that was opened, is to be on the screen first. One thread.
class QtSettings final : public ports::Settings {
 public:
    static constexpr std::chrono::milliseconds kMoment{300};

    explicit QtSettings(const std::filesystem::path& file, std::chrono::milliseconds moment = kMoment);

    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override;
    void setText(std::string_view key, const std::string& text) override;
    [[nodiscard]] std::vector<std::string> list(std::string_view key) const override;
    void setList(std::string_view key, const std::vector<std::string>& list) override;

 private:
    /// The toolkit's settings, which would write as soon as the event loop is reached.
    class File final : public QSettings {
     public:
        File(const QString& name, std::chrono::milliseconds moment);

     protected:
        bool event(QEvent* event) override;

     private:
        QTimer moment_;
    };

    File file_;
};

}  // namespace trimora::platform
