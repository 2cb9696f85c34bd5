#include "files/PrivateFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <utility>

#include "files/FolderEntries.h"
#include "files/SystemError.h"
#include "files/TemporaryFile.h"

namespace trimora::files {
namespace {

using foundation::Error;
using foundation::Result;

constexpr mode_t kFolderMode = 0700;
constexpr unsigned kFileMode = 0600;

Result<void> checkName(std::string_view name) {
    const bool single = !name.empty() && name != "." && name != ".." &&
                        name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
    if (!single)
        return Error{"not the name of a file in its folder", EINVAL};
    return {};
}

bool makeWithParents(const std::filesystem::path& path) {
    if (::mkdir(path.c_str(), kFolderMode) == 0 || errno == EEXIST)
        return true;
    if (errno != ENOENT || !path.has_relative_path() || path.parent_path() == path)
        return false;
    return makeWithParents(path.parent_path()) &&
           (::mkdir(path.c_str(), kFolderMode) == 0 || errno == EEXIST);
}

Result<void> makeOurs(int folder) {
    struct stat status {};
    if (::fstat(folder, &status) != 0)
        return systemError("the folder cannot be opened", errno);
    if (status.st_uid != ::geteuid())
        return Error{"the folder belongs to another account", EPERM};
    if ((status.st_mode & 07777) != kFolderMode && ::fchmod(folder, kFolderMode) != 0)
        return systemError("the folder cannot be made private", errno);
    return {};
}

std::optional<mode_t> typeOf(int folder, const char* name) {
    struct stat status {};
    if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return status.st_mode & S_IFMT;
}

bool isFileOrLink(mode_t type) {
    return S_ISREG(type) || S_ISLNK(type);
}

}  // namespace

Result<void> makeFolder(const std::filesystem::path& path) {
    if (!makeWithParents(path))
        return systemError("the folder cannot be made", errno);
    return {};
}

Result<PrivateFolder> PrivateFolder::create(const std::filesystem::path& path) {
    // "a/b/" means the folder b; what stands after the last '/' would be an empty name.
    const std::filesystem::path trimmed = path.has_filename() ? path : path.parent_path();
    if (Result<void> made = makeFolder(trimmed); !made)
        return made.error();
    FileDescriptor folder = openAt(AT_FDCWD, trimmed.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!folder)
        return systemError("the folder cannot be opened", errno);
    if (Result<void> ours = makeOurs(folder.number()); !ours)
        return ours.error();
    return PrivateFolder(trimmed, std::move(folder));
}

Result<std::vector<std::string>> PrivateFolder::list() const {
    Result<std::vector<std::string>> names = folderEntries(folder_.number());
    if (names) {
        std::erase_if(*names, [this](const std::string& name) {
            return name.starts_with('.') || typeOf(folder_.number(), name.c_str()) != S_IFREG;
        });
    }
    return names;
}

Result<FileBytes> PrivateFolder::read(std::string_view name, std::size_t limit) const {
    if (Result<void> checked = checkName(name); !checked)
        return checked.error();
    const Result<FileDescriptor> file =
        openRegularFileAt(folder_.number(), std::string(name).c_str(), Links::refuse);
    if (!file)
        return file.error();
    return readAll(*file, limit);
}

Result<void> PrivateFolder::write(std::string_view name, std::span<const std::uint8_t> bytes) const {
    if (Result<void> checked = checkName(name); !checked)
        return checked;
    Result<TemporaryFile> file = TemporaryFile::create(folder_.number(), kFileMode);
    if (!file)
        return file.error();
    if (Result<void> written = file->write(bytes); !written)
        return written;
    return file->publish(std::string(name).c_str());
}

Result<void> PrivateFolder::remove(std::string_view name) const {
    if (Result<void> checked = checkName(name); !checked)
        return checked;
    const std::string text(name);
    const std::optional<mode_t> type = typeOf(folder_.number(), text.c_str());
    if (!type)
        return {};
    if (!isFileOrLink(*type))
        return Error{"it is not a plain file", EINVAL};
    if (::unlinkat(folder_.number(), text.c_str(), 0) != 0 && errno != ENOENT)
        return systemError("the file cannot be removed", errno);
    return {};
}

Result<void> PrivateFolder::removeAllFiles() const {
    const Result<std::vector<std::string>> names = folderEntries(folder_.number());
    if (!names)
        return names.error();
    Result<void> outcome;
    for (const std::string& name : *names) {
        const std::optional<mode_t> type = typeOf(folder_.number(), name.c_str());
        if (!type || !isFileOrLink(*type))
            continue;
        if (Result<void> removed = remove(name); !removed && outcome)
            outcome = removed;
    }
    return outcome;
}

}  // namespace trimora::files
