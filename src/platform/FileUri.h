#pragma once

#include <QString>
#include <filesystem>
#include <optional>

namespace trimora::platform {

/// The address of a local file. Every byte of the name survives the way there and back, also where the
/// name is no UTF-8. `file` is absolute.
[[nodiscard]] QString fileUri(const std::filesystem::path& file);

/// The local file that an address stands for; nothing where it is elsewhere or no file at all.
[[nodiscard]] std::optional<std::filesystem::path> fileOfUri(const QString& uri);

}  // namespace trimora::platform
