#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/Clock.h"

namespace trimora::analytics {

/// What the application says about itself: its information properties, where it lies and when it was
/// put there. The program that links the library provides one. Called from any thread.
class ApplicationBundle {
 public:
    virtual ~ApplicationBundle() = default;
    ApplicationBundle(const ApplicationBundle&) = delete;
    ApplicationBundle& operator=(const ApplicationBundle&) = delete;

    /// An information property. The library asks for "CFBundleDisplayName", "CFBundleName",
    /// "CFBundleIdentifier", "CFBundleVersion", "CFBundleShortVersionString" and "TelemetrixInnerId".
    [[nodiscard]] virtual std::optional<std::string> infoValue(std::string_view key) const = 0;

    /// The file or folder that is the installed application.
    [[nodiscard]] virtual std::filesystem::path path() const = 0;

    /// When it was installed and last changed; nothing where that cannot be told.
    [[nodiscard]] virtual std::optional<foundation::Clock::WallTime> creationDate() const = 0;
    [[nodiscard]] virtual std::optional<foundation::Clock::WallTime> modificationDate() const = 0;

    /// A file or folder among the application's resources.
    [[nodiscard]] virtual std::optional<std::filesystem::path> pathForResource(
        std::string_view name, std::string_view type) const = 0;

 protected:
    ApplicationBundle() = default;
};

/// The name that the application shows: its display name, else its bundle name, else nothing.
[[nodiscard]] inline std::string applicationName(const ApplicationBundle& bundle) {
    if (auto name = bundle.infoValue("CFBundleDisplayName"))
        return *name;
    return bundle.infoValue("CFBundleName").value_or("");
}

}  // namespace trimora::analytics
