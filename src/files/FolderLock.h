#pragma once

#include <filesystem>
#include <string_view>

#include "files/FileDescriptor.h"
#include "files/PrivateFolder.h"
#include "foundation/Result.h"

namespace trimora::files {

/// Says that something belongs to this owner and to no other for as long as the object lives.
///
/// The claim rests on a lock file and is kept by the system, which lets go of it when the process ends
/// in whatever way: there are no stale locks. It is held against everyone else, other owners in the same
/// process included. The lock file itself stays behind, empty. Movable; any thread.
class FolderLock {
 public:
    /// The error code that says that another owner has the lock.
    static constexpr int kTaken = 11;

    /// Takes the lock on the file at `lockFile`, which is made where it is not there, or returns an error
    /// at once: with the code kTaken where another has it.
    [[nodiscard]] static foundation::Result<FolderLock> tryAcquire(const std::filesystem::path& lockFile);

 private:
    explicit FolderLock(FileDescriptor file) : file_(std::move(file)) {}

    FileDescriptor file_;
};

/// A private folder and the claim to it.
struct OwnedFolder {
    FolderLock lock;
    PrivateFolder folder;
};

/// A folder in `base` that only the caller uses while it holds the result.
///
/// The first owner gets `base/name`, with all that an earlier one left in it. Whoever comes while that
/// is taken gets an empty folder of its own beside it, `base/name-<process id>-<number>`. Such folders
/// whose owner is gone are emptied and removed by the next call, their plain files and links only:
/// nothing else is ever deleted. Lock files stand beside the folders, `<folder's name>.lock`.
///
/// `base` is made where it is not there. On failure returns an error.
[[nodiscard]] foundation::Result<OwnedFolder> ownedFolder(const std::filesystem::path& base,
                                                          std::string_view name);

}  // namespace trimora::files
