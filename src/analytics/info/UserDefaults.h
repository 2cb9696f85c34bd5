#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trimora::analytics {

/// Small values that the application keeps for the person between runs. The library keeps only its own
/// book-keeping there: "create_hash_date", "last_hash_date", "last_version" and "kTLCrashLogKey".
/// Values are UTF-8 text; line breaks are allowed. Called from any thread.
class UserDefaults {
 public:
    virtual ~UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;

    [[nodiscard]] virtual std::optional<std::string> objectForKey(std::string_view key) const = 0;
    virtual void setObject(std::string_view key, std::string_view value) = 0;
    virtual void removeObjectForKey(std::string_view key) = 0;

    /// Brings what was set to the disk.
    virtual void synchronize() = 0;

 protected:
    UserDefaults() = default;
};

}  // namespace trimora::analytics
