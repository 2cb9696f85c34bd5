#include "files/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <set>
#include <string>
#include <system_error>
#include <utility>

#include "files/FileDescriptor.h"
#include "files/FolderEntries.h"
#include "files/SystemError.h"

namespace trimora::files {
namespace {

namespace fs = std::filesystem;
using foundation::Error;
using foundation::Result;

constexpr std::string_view kLockSuffix = ".lock";
constexpr int kMostFoldersOfOneProcess = 1000;

static_assert(FolderLock::kTaken == EWOULDBLOCK);

/// Whether the open file is still the one at that path: a sweep may remove it between open and lock.
bool isStillAt(const FileDescriptor& file, const fs::path& path) {
    struct stat held {};
    struct stat named {};
    return ::fstat(file.number(), &held) == 0 && ::lstat(path.c_str(), &named) == 0 &&
           held.st_ino == named.st_ino && held.st_dev == named.st_dev;
}

fs::path lockFileOf(const fs::path& folder) {
    return folder.string() + std::string(kLockSuffix);
}

/// Whether `entry` is "<name>-<digits>-<digits>".
bool isSideFolderOf(std::string_view name, std::string_view entry) {
    const auto skipNumber = [](std::string_view& rest) {
        if (!rest.starts_with('-'))
            return false;
        rest.remove_prefix(1);
        const auto end = std::min(rest.find_first_not_of("0123456789"), rest.size());
        rest.remove_prefix(end);
        return end > 0;
    };
    if (!entry.starts_with(name))
        return false;
    entry.remove_prefix(name.size());
    const bool hasOne = skipNumber(entry);
    return hasOne && skipNumber(entry) && entry.empty();
}

/// The side folders in `base`, whether the folder itself, its lock file or both are there.
std::set<std::string> sideFolders(const fs::path& base, std::string_view name) {
    std::set<std::string> found;
    // Not by the standard library's iterators, which end the program where there is no memory.
    const FileDescriptor folder = openAt(AT_FDCWD, base.c_str(), O_RDONLY | O_DIRECTORY);
    const auto entries = folderEntries(folder.number());
    if (!entries)
        return found;
    for (std::string entry : *entries) {
        if (entry.ends_with(kLockSuffix))
            entry.resize(entry.size() - kLockSuffix.size());
        if (isSideFolderOf(name, entry))
            found.insert(std::move(entry));
    }
    return found;
}

/// Removes the side folders that nobody owns any more. What cannot be removed stays for the next time.
void sweep(const fs::path& base, std::string_view name) {
    for (const std::string& entry : sideFolders(base, name)) {
        const fs::path path = base / entry;
        const Result<FolderLock> lock = FolderLock::tryAcquire(lockFileOf(path));
        if (!lock)
            continue;
        std::error_code ignored;
        if (fs::is_directory(fs::symlink_status(path, ignored))) {
            const Result<PrivateFolder> folder = PrivateFolder::create(path);
            if (!folder || !folder->removeAllFiles())
                continue;
            if (::rmdir(path.c_str()) != 0)
                continue;
        }
        ::unlink(lockFileOf(path).c_str());
    }
}

Result<OwnedFolder> owned(const fs::path& path) {
    Result<FolderLock> lock = FolderLock::tryAcquire(lockFileOf(path));
    if (!lock)
        return lock.error();
    Result<PrivateFolder> folder = PrivateFolder::create(path);
    if (!folder)
        return folder.error();
    return OwnedFolder{std::move(*lock), std::move(*folder)};
}

Result<OwnedFolder> ownSideFolder(const fs::path& base, std::string_view name) {
    const std::string start = std::string(name) + '-' + std::to_string(::getpid()) + '-';
    for (int number = 0; number < kMostFoldersOfOneProcess; ++number) {
        Result<OwnedFolder> side = owned(base / (start + std::to_string(number)));
        if (side || side.error().code != FolderLock::kTaken)
            return side;
    }
    return Error{"every folder of this process is taken", FolderLock::kTaken};
}

}  // namespace

Result<FolderLock> FolderLock::tryAcquire(const fs::path& lockFile) {
    for (;;) {
        FileDescriptor file = openAt(AT_FDCWD, lockFile.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
        if (!file)
            return systemError("the lock file cannot be opened", errno);
        while (::flock(file.number(), LOCK_EX | LOCK_NB) != 0) {
            if (errno == EWOULDBLOCK)
                return Error{"it belongs to another running process", kTaken};
            if (errno != EINTR)
                return systemError("the lock file cannot be locked", errno);
        }
        if (isStillAt(file, lockFile))
            return FolderLock(std::move(file));
    }
}

Result<OwnedFolder> ownedFolder(const fs::path& base, std::string_view name) {
    if (const Result<void> made = makeFolder(base); !made)
        return made.error();
    sweep(base, name);
    Result<OwnedFolder> first = owned(base / name);
    if (first || first.error().code != FolderLock::kTaken)
        return first;
    return ownSideFolder(base, name);
}

}  // namespace trimora::files
