#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trimora::ports {

/// Small things that the program remembers from one run to the next: the folders used last, recent
/// files. Nothing here is needed to work; what cannot be kept is forgotten without a word.
///
/// Keys are words without blanks. Texts are UTF-8. Main thread only.
class Settings {
 public:
    virtual ~Settings() = default;
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    /// The text kept under the key; nothing where there is none.
    [[nodiscard]] virtual std::optional<std::string> text(std::string_view key) const = 0;
    virtual void setText(std::string_view key, const std::string& text) = 0;

    /// The list kept under the key, in its order; empty where there is none.
    [[nodiscard]] virtual std::vector<std::string> list(std::string_view key) const = 0;
    virtual void setList(std::string_view key, const std::vector<std::string>& list) = 0;

 protected:
    Settings() = default;
};

}  // namespace trimora::ports
