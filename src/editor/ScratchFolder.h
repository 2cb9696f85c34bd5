#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "foundation/Result.h"

namespace trimora::editor {

/// Where the program keeps what it can make again: the account's caches folder. Empty where the account
/// has no home folder at all.
[[nodiscard]] std::filesystem::path cachesFolder();

/// A folder of one's own inside the caches folder, for files that pass between this program and another.
///
/// Its name is random, so no file of an earlier run is ever met in it. It is made with the first file that
/// is written, private to the account, and is gone with all its files when the object goes. Files may be
/// written on any thread while the object lives.
class ScratchFolder {
 public:
    /// Inside `parent`. Without one no file can be written.
    explicit ScratchFolder(const std::filesystem::path& parent);
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    /// Where the file of this name is, or will be.
    [[nodiscard]] std::filesystem::path file(const std::string& name) const { return folder_ / name; }

    /// Writes a file, which comes to be whole or not at all. Returns an error; nothing changed.
    [[nodiscard]] foundation::Result<void> write(const std::string& name,
                                                 std::span<const std::uint8_t> bytes) const;

 private:
    std::filesystem::path folder_;
};

}  // namespace trimora::editor
