#include "files/TemporaryFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <string_view>
#include <vector>

#include "files/FolderEntries.h"
#include "files/SystemError.h"

namespace trimora::files {
namespace {

using foundation::Result;

constexpr const char* kUnwritable = "the file cannot be written";
constexpr int kNameTries = 16;
constexpr std::string_view kPrefix = ".trimora-";
constexpr std::string_view kSuffix = ".part";
constexpr std::size_t kDigits = 16;

std::string randomName() {
    std::uint64_t number = 0;
    if (::getrandom(&number, sizeof number, 0) != static_cast<ssize_t>(sizeof number))
        number = static_cast<std::uint64_t>(::getpid());
    std::array<char, kDigits + 1> digits{};
    std::snprintf(digits.data(), digits.size(), "%016" PRIx64, number);
    return std::string(kPrefix) + digits.data() + std::string(kSuffix);
}

bool isRandomName(std::string_view name) {
    return name.size() == kPrefix.size() + kDigits + kSuffix.size() && name.starts_with(kPrefix) &&
           name.ends_with(kSuffix);
}

/// Says to removeAbandoned() that the file has a writer. False where that came too late, the file being
/// removed already; a file system without locks has no say.
bool claim(int file) {
    const bool taken = ::flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    struct stat status {};
    return !taken && (::fstat(file, &status) != 0 || status.st_nlink > 0);
}

bool isAbandoned(int file) {
    struct stat status {};
    return ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == ::geteuid() &&
           ::flock(file, LOCK_EX | LOCK_NB) == 0;
}

/// A file without a name is given one through this folder; without it (a bare sandbox) it never could.
bool canNameLater() {
    return ::access("/proc/self/fd", X_OK) == 0;
}

/// Tries random names until `attempt(name)` stops answering that the name is taken.
template <typename Attempt>
std::string nameByTrying(const Attempt& attempt) {
    for (int i = 0; i < kNameTries; ++i) {
        std::string name = randomName();
        if (attempt(name.c_str()))
            return name;
        if (errno != EEXIST)
            break;
    }
    return {};
}

}  // namespace

TemporaryFile::TemporaryFile(TemporaryFile&& other) noexcept
    : folder_(other.folder_), file_(std::move(other.file_)), name_(std::exchange(other.name_, {})) {}

Result<TemporaryFile> TemporaryFile::create(int folder, unsigned mode, Name wanted) {
    FileDescriptor file;
    if (wanted == Name::whenWhole && canNameLater())
        file = openAt(folder, ".", O_TMPFILE | O_WRONLY, mode);
    if (file) {
        (void)::flock(file.number(), LOCK_EX | LOCK_NB);
        return TemporaryFile(folder, std::move(file), {});
    }
    // Not every file system has files without a name; they answer with several different numbers.
    std::string name = nameByTrying([&](const char* candidate) {
        file = openAt(folder, candidate, O_CREAT | O_EXCL | O_NOFOLLOW | O_WRONLY, mode);
        if (!file || claim(file.number()))
            return static_cast<bool>(file);
        file.reset();
        errno = EEXIST;
        return false;
    });
    if (!file)
        return systemError(kUnwritable, errno);
    return TemporaryFile(folder, std::move(file), std::move(name));
}

foundation::Error nameTaken() {
    return {"a file of that name exists", EEXIST};
}

Result<void> TemporaryFile::giveName() {
    const std::string self = "/proc/self/fd/" + std::to_string(file_.number());
    name_ = nameByTrying([&](const char* candidate) {
        return ::linkat(AT_FDCWD, self.c_str(), folder_, candidate, AT_SYMLINK_FOLLOW) == 0;
    });
    if (name_.empty())
        return systemError(kUnwritable, errno);
    return {};
}

/// In one step for everybody who looks. False with the reason in `errno`.
bool TemporaryFile::rename(const char* name, Existing existing) const {
    if (existing == Existing::replace)
        return ::renameat(folder_, name_.c_str(), folder_, name) == 0;
    if (::renameat2(folder_, name_.c_str(), folder_, name, RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // Some network file systems know no such renaming; a second name is never given over another file. The
    // first name may stay where it cannot be taken away: the file stands, and a later write removes it.
    if (::linkat(folder_, name_.c_str(), folder_, name, 0) != 0)
        return false;
    (void)::unlinkat(folder_, name_.c_str(), 0);
    return true;
}

Result<void> TemporaryFile::publish(const char* name, Existing existing) {
    if (name_.empty()) {
        // A name may be given only once the file is whole: a kill between here and the renaming is the
        // one moment that can leave a (complete) file of ours behind.
        if (Result<void> named = giveName(); !named)
            return named;
    }
    // Closing may tell of failed writes, and would let go of the lock.
    const FileDescriptor lock(::fcntl(file_.number(), F_DUPFD_CLOEXEC, 0));
    if (Result<void> closed = file_.close(); !closed)
        return closed;
    if (!rename(name, existing))
        return errno == EEXIST ? nameTaken() : systemError(kUnwritable, errno);
    name_.clear();
    return {};
}

void TemporaryFile::removeAbandoned(int folder) {
    const Result<std::vector<std::string>> names = folderEntries(folder);
    if (!names)
        return;
    for (const std::string& name : *names) {
        if (!isRandomName(name))
            continue;
        const FileDescriptor file = openAt(folder, name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK);
        if (file && isAbandoned(file.number()))
            (void)::unlinkat(folder, name.c_str(), 0);
    }
}

void TemporaryFile::discard() {
    file_.reset();
    if (!name_.empty())
        ::unlinkat(folder_, std::exchange(name_, {}).c_str(), 0);
}

}  // namespace trimora::files
