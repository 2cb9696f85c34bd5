#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "analytics/info/UserDefaults.h"

namespace trimora::host {

/// User defaults in one INI file that a person can read: a line "key=value" for each, under the heading
/// [Telemetrix]. A backslash stands before what would break the line (\n, \r, \\).
///
/// The file is read when the object is made. synchronize() takes in what another process wrote
/// meanwhile, lays this process's changes over it and replaces the file in one step; a file that cannot
/// be written is logged and tried again with the next call. Any thread.
class IniUserDefaults final : public analytics::UserDefaults {
 public:
    explicit IniUserDefaults(std::filesystem::path file);

    [[nodiscard]] std::optional<std::string> objectForKey(std::string_view key) const override;
    void setObject(std::string_view key, std::string_view value) override;
    void removeObjectForKey(std::string_view key) override;
    void synchronize() override;

 private:
    using Values = std::map<std::string, std::string, std::less<>>;
    [[nodiscard]] Values read() const;
    [[nodiscard]] bool write(const Values& values) const;

    const std::filesystem::path file_;
    mutable std::mutex mutex_;
    Values values_;
    /// What was set, or removed (nothing), since the last synchronize().
    std::map<std::string, std::optional<std::string>, std::less<>> changes_;
};

}  // namespace trimora::host
