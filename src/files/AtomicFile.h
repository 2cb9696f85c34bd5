#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "files/FileDescriptor.h"
#include "files/TemporaryFile.h"
#include "foundation/Result.h"

namespace trimora::files {

/// A file of the person's, written whole or not at all.
///
/// Life cycle: create(), write() as often as needed, commit(). The bytes go to a temporary file in the
/// target's own folder; commit() brings them to the disk and only then lets them take the target's name,
/// so at every moment, a power cut included, the target is the old file or the new one. An object that
/// goes without commit() leaves everything as it was. What the temporary file of a killed process may leave
/// behind, the next object for that folder removes.
///
/// The target: a symbolic link is followed to the file that it stands for (dangling or not), which is
/// replaced while the link stays. A folder or a special file is refused, and so is a file that the person
/// made read-only. Where the file existed, the new one takes its permissions and, as far as the system
/// lets us, its owner and group; other hard links keep the old contents.
///
/// Errors carry one sentence that says why, and the system's error number as code. Not thread-safe; each
/// object on one thread at a time.
class AtomicFile {
 public:
    /// Begins a new version of `target`. On failure returns an error; nothing changed. With Existing::keep
    /// a target that exists is refused here, and by commit() where it has come into being since.
    [[nodiscard]] static foundation::Result<AtomicFile> create(const std::filesystem::path& target,
                                                               Existing existing = Existing::replace);

    AtomicFile(AtomicFile&&) noexcept = default;
    AtomicFile& operator=(AtomicFile&&) = delete;

    /// Appends the bytes. On failure returns an error; the target is untouched and commit() must not
    /// follow.
    [[nodiscard]] foundation::Result<void> write(std::span<const std::uint8_t> bytes) {
        return temporary_.write(bytes);
    }

    /// Makes what was written the target's contents, for good: success means that file and folder have
    /// reached the disk. On failure the target is the old file; only where the very last step fails,
    /// bringing the folder to the disk, it is the new one and the message says so.
    [[nodiscard]] foundation::Result<void> commit();

 private:
    struct Permissions {
        unsigned mode;
        unsigned owner;
        unsigned group;
    };
    AtomicFile(FileDescriptor folder, std::string name, std::optional<Permissions> kept, TemporaryFile file,
               Existing existing)
        : folder_(std::move(folder)),
          name_(std::move(name)),
          kept_(kept),
          temporary_(std::move(file)),
          existing_(existing) {}

    [[nodiscard]] static foundation::Result<std::optional<Permissions>> inspect(int folder, const char* name);
    void keepPermissions() const;

    FileDescriptor folder_;
    std::string name_;
    std::optional<Permissions> kept_;  // of the file that is replaced
    TemporaryFile temporary_;          // after folder_, which it needs until it is gone
    Existing existing_;
};

}  // namespace trimora::files
