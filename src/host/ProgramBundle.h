#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include "analytics/info/ApplicationBundle.h"

namespace trimora::host {

/// An installed program as a bundle: what it says about itself is handed in, when it was installed and
/// changed is read from its executable. Its resources lie in "share/<bundle name>/" beside the folder of the
/// executable, as programs are installed, or beside the executable itself, as they are built.
///
/// Any thread; dates and resources are looked up at each call.
class ProgramBundle final : public analytics::ApplicationBundle {
 public:
    using Information = std::map<std::string, std::string, std::less<>>;

    explicit ProgramBundle(Information information, std::filesystem::path executable = thisExecutable());

    /// The file that this process runs.
    [[nodiscard]] static std::filesystem::path thisExecutable();

    [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override;
    [[nodiscard]] std::filesystem::path path() const override { return executable_; }
    /// When the file was made, where its file system keeps that; else when it last changed in any way.
    [[nodiscard]] std::optional<foundation::Clock::WallTime> creationDate() const override;
    [[nodiscard]] std::optional<foundation::Clock::WallTime> modificationDate() const override;
    [[nodiscard]] std::optional<std::filesystem::path> pathForResource(std::string_view name,
                                                                       std::string_view type) const override;

 private:
    const Information information_;
    const std::filesystem::path executable_;
};

}  // namespace trimora::host
