#include "files/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "files/SystemError.h"

namespace trimora::files {
namespace {

using foundation::Error;
using foundation::Result;

constexpr const char* kUnwritable = "the file cannot be written";
constexpr int kMostLinks = 40;  // as many as the system itself follows

/// The path that `target` stands for once every link in its last part is followed.
Result<std::filesystem::path> behindLinks(std::filesystem::path target) {
    for (int hops = 0; hops < kMostLinks; ++hops) {
        std::error_code failure;
        const std::filesystem::path next = std::filesystem::read_symlink(target, failure);
        if (failure)
            return target;  // no link, or nothing there yet
        target = target.parent_path() / next;
    }
    return systemError(kUnwritable, ELOOP);
}

Result<void> toDisk(int file) {
    while (::fsync(file) != 0) {
        if (errno != EINTR)
            return systemError(kUnwritable, errno);
    }
    return {};
}

Result<void> folderToDisk(int folder) {
    while (::fsync(folder) != 0) {
        if (errno == EINVAL)  // this file system has no such thing for folders
            return {};
        if (errno != EINTR)
            return systemError("the file is written, but may not survive a power cut", errno);
    }
    return {};
}

}  // namespace

Result<std::optional<AtomicFile::Permissions>> AtomicFile::inspect(int folder, const char* name) {
    struct stat status {};
    if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno == ENOENT)
            return std::optional<Permissions>();
        return systemError(kUnwritable, errno);
    }
    if (S_ISDIR(status.st_mode))
        return Error{"a folder of that name exists", EISDIR};
    if (!S_ISREG(status.st_mode))
        return Error{"what bears that name is not a regular file", EINVAL};
    if (::faccessat(folder, name, W_OK, AT_EACCESS) != 0)
        return Error{"the file is write-protected", errno};
    return std::optional<Permissions>({status.st_mode & 0777U, status.st_uid, status.st_gid});
}

Result<AtomicFile> AtomicFile::create(const std::filesystem::path& target, Existing existing) {
    const Result<std::filesystem::path> real = behindLinks(target);
    if (!real)
        return real.error();
    const std::string name = real->filename().string();
    if (name.empty() || name == "." || name == "..")
        return Error{"a folder of that name exists", EISDIR};
    const std::filesystem::path parent = real->has_parent_path() ? real->parent_path() : ".";
    FileDescriptor folder = openAt(AT_FDCWD, parent.c_str(), O_RDONLY | O_DIRECTORY);
    if (!folder)
        return systemError("the folder cannot be opened", errno);
    const Result<std::optional<Permissions>> kept = inspect(folder.number(), name.c_str());
    if (!kept)
        return kept.error();
    if (kept->has_value() && existing == Existing::keep)
        return nameTaken();
    TemporaryFile::removeAbandoned(folder.number());
    // A file that replaces another may be read by nobody else until it has that one's permissions.
    Result<TemporaryFile> temporary = TemporaryFile::create(folder.number(), kept->has_value() ? 0600 : 0666);
    if (!temporary)
        return temporary.error();
    return AtomicFile(std::move(folder), name, *kept, std::move(*temporary), existing);
}

void AtomicFile::keepPermissions() const {
    // Failing here is no reason to lose the person's work; but a group that is not the old one is not
    // given the old one's rights.
    const int file = temporary_.descriptor();
    const bool ownersKept = ::fchown(file, kept_->owner, kept_->group) == 0;
    (void)::fchmod(file, ownersKept ? kept_->mode : kept_->mode & ~0070U);
}

Result<void> AtomicFile::commit() {
    if (kept_)
        keepPermissions();
    if (Result<void> synced = toDisk(temporary_.descriptor()); !synced)
        return synced;
    if (Result<void> published = temporary_.publish(name_.c_str(), existing_); !published)
        return published;
    return folderToDisk(folder_.number());
}

}  // namespace trimora::files
