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

    /// The value as it was set last, on the disk or not; nothing where there is none.
    [[nodiscard]] virtual std::optional<std::string> objectForKey(std::string_view key) const = 0;
    /// Sets or replaces the value, in memory: it is on the disk after synchronize().
    virtual void setObject(std::string_view key, std::string_view value) = 0;
    /// Removes the value, likewise; does nothing where there is none.
    virtual void removeObjectForKey(std::string_view key) = 0;

    /// Brings what was set and removed to the disk. A failure is the port's to log; what could not be
    /// written is kept and written with the next call. May block on the disk; the library calls it on its
    /// own queue, and from a process that is dying of an exception.
    virtual void synchronize() = 0;

 protected:
    UserDefaults() = default;
};

}  // namespace trimora::analytics
