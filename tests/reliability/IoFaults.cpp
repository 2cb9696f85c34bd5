#include "IoFaults.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <utility>

#include "testing/Depth.h"

namespace trimora::reliability {
namespace {

thread_local IoFaults* watching = nullptr;

bool isOneOf(const std::string& name, std::initializer_list<const char*> names) {
    return std::any_of(names.begin(), names.end(), [&](const char* one) { return name == one; });
}

/// A call that the watcher itself makes, or makes others make, is not watched.
class Unwatched {
 public:
    Unwatched() : before_(std::exchange(watching, nullptr)) {}
    ~Unwatched() { watching = before_; }
    Unwatched(const Unwatched&) = delete;
    Unwatched& operator=(const Unwatched&) = delete;

 private:
    IoFaults* before_;
};

int numberOf(IoFault fault) {
    switch (fault) {
        case IoFault::diskFull:
            return ENOSPC;
        case IoFault::interrupted:
            return EINTR;
        default:
            return EIO;
    }
}

/// Does the call, or lets it fail. `call(half)` does it, with half the bytes where that is said.
template <typename Do>
auto watched(const char* name, bool needsRoom, const Do& call) -> decltype(call(false)) {
    IoFaults* const watcher = watching;
    if (watcher == nullptr)
        return call(false);
    const bool strikes = [&] {
        const Unwatched guard;
        return watcher->strikes({name, needsRoom, false});
    }();
    const IoFault fault = watcher->plan().fault;
    if (strikes && fault != IoFault::partly) {
        if (std::string(name) == "close")
            (void)call(false);  // the number is free again whatever the answer is
        errno = numberOf(fault);
        return -1;
    }
    const auto answer = call(strikes);
    const int number = errno;
    watcher->ended(answer >= 0);
    errno = number;
    return answer;
}

/// The system's function that this program's of the same name hides.
template <typename Function>
Function* hidden(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

bool refusedAsUnnamed(int flags) {
    return (flags & O_TMPFILE) == O_TMPFILE && watching != nullptr && !watching->plan().hasUnnamedFiles;
}

std::size_t halfOf(std::size_t size) {
    return std::max<std::size_t>(1, size / 2);
}

template <typename Function, typename... Arguments>
int opened(const char* name, int flags, Arguments... arguments) {
    if (refusedAsUnnamed(flags)) {
        errno = EOPNOTSUPP;
        return -1;
    }
    const bool needsRoom = (flags & (O_CREAT | O_TMPFILE)) != 0 && (flags & O_ACCMODE) != O_RDONLY;
    return watched("open", needsRoom, [&](bool) { return hidden<Function>(name)(arguments...); });
}

}  // namespace

bool canMeet(const IoCall& call, IoFault fault) {
    switch (fault) {
        case IoFault::diskFull:
            return call.needsRoom;
        case IoFault::interrupted:
            return isOneOf(call.name, {"open", "read", "write", "fsync", "close", "ftruncate"});
        case IoFault::partly:
            return isOneOf(call.name, {"read", "write"});
        case IoFault::ioError:
        case IoFault::kill:
            return true;
    }
    return false;
}

IoFaults::IoFaults(IoPlan plan) : plan_(std::move(plan)) {
    calls_.reserve(256);
    watching = this;
}

IoFaults::~IoFaults() {
    watching = nullptr;
}

bool IoFaults::strikes(const IoCall& call) {
    calls_.push_back(call);
    const int number = static_cast<int>(calls_.size());
    if (plan_.before && number == plan_.call) {
        plan_.before();
        return false;
    }
    const bool due = plan_.call > 0 &&
                     (number == plan_.call || (plan_.lasting == Lasting::forEver && number > plan_.call));
    if (!due || plan_.before || !canMeet(call, plan_.fault))
        return false;
    if (plan_.fault == IoFault::kill)
        ::raise(SIGKILL);
    return true;
}

std::vector<IoPlan> plansFor(const std::vector<IoCall>& calls) {
    struct Way {
        IoFault fault;
        Lasting lasting;
    };
    constexpr Way kWays[] = {{IoFault::diskFull, Lasting::once},    {IoFault::diskFull, Lasting::forEver},
                             {IoFault::ioError, Lasting::once},     {IoFault::ioError, Lasting::forEver},
                             {IoFault::interrupted, Lasting::once}, {IoFault::partly, Lasting::once},
                             {IoFault::partly, Lasting::forEver},   {IoFault::kill, Lasting::once}};
    // A stride that meets every call and, in turn, every way.
    constexpr std::size_t kStride = testing::kSanitized ? 5 : 1;
    std::size_t met = 0;
    std::vector<IoPlan> plans;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        for (const Way& way : kWays) {
            if (canMeet(calls[i], way.fault) && met++ % kStride == 0)
                plans.push_back({static_cast<int>(i) + 1, way.fault, way.lasting, true, {}});
        }
    }
    return plans;
}

std::string describe(const IoPlan& plan, const std::vector<IoCall>& calls) {
    constexpr const char* kNames[] = {"full disk", "I/O error", "interruption", "half of it", "kill"};
    const auto index = static_cast<std::size_t>(plan.call) - 1;
    return std::string(kNames[static_cast<std::size_t>(plan.fault)]) +
           (plan.lasting == Lasting::forEver ? " for ever from call " : " once at call ") +
           std::to_string(plan.call) + (index < calls.size() ? " (" + calls[index].name + ")" : "");
}

}  // namespace trimora::reliability

// The names of the system's library, which the linker puts before that library's own. Its names for their
// parameters are reserved ones.
// NOLINTBEGIN(readability-identifier-naming, cert-dcl50-cpp, cppcoreguidelines-pro-type-vararg)
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
namespace {

using trimora::reliability::halfOf;
using trimora::reliability::hidden;
using trimora::reliability::opened;
using trimora::reliability::watched;
using Stat = struct stat;
using Stat64 = struct stat64;

bool isWatched() {
    return trimora::reliability::watching != nullptr;
}

mode_t modeFrom(va_list arguments, int flags) {
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFrom(arguments, flags);
    va_end(arguments);
    return opened<int(const char*, int, ...)>("open", flags, path, flags, mode);
}
int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFrom(arguments, flags);
    va_end(arguments);
    return opened<int(const char*, int, ...)>("open64", flags, path, flags, mode);
}
int openat(int folder, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFrom(arguments, flags);
    va_end(arguments);
    return opened<int(int, const char*, int, ...)>("openat", flags, folder, path, flags, mode);
}

int close(int file) {
    return watched("close", false, [&](bool) { return hidden<int(int)>("close")(file); });
}

ssize_t read(int file, void* to, size_t size) {
    return watched("read", false, [&](bool half) {
        return hidden<ssize_t(int, void*, size_t)>("read")(file, to, half ? halfOf(size) : size);
    });
}
ssize_t pread(int file, void* to, size_t size, off_t at) {
    return watched("read", false, [&](bool half) {
        return hidden<ssize_t(int, void*, size_t, off_t)>("pread")(file, to, half ? halfOf(size) : size, at);
    });
}
ssize_t pread64(int file, void* to, size_t size, off64_t at) {
    return watched("read", false, [&](bool half) {
        return hidden<ssize_t(int, void*, size_t, off64_t)>("pread64")(file, to, half ? halfOf(size) : size,
                                                                       at);
    });
}
ssize_t write(int file, const void* from, size_t size) {
    return watched("write", true, [&](bool half) {
        return hidden<ssize_t(int, const void*, size_t)>("write")(file, from, half ? halfOf(size) : size);
    });
}
ssize_t pwrite(int file, const void* from, size_t size, off_t at) {
    return watched("write", true, [&](bool half) {
        return hidden<ssize_t(int, const void*, size_t, off_t)>("pwrite")(file, from,
                                                                          half ? halfOf(size) : size, at);
    });
}
ssize_t pwrite64(int file, const void* from, size_t size, off64_t at) {
    return watched("write", true, [&](bool half) {
        return hidden<ssize_t(int, const void*, size_t, off64_t)>("pwrite64")(file, from,
                                                                              half ? halfOf(size) : size, at);
    });
}

// What is watched is only told that it has reached the disk: here nobody cuts the power.
int fsync(int file) {
    return watched("fsync", true, [&](bool) { return isWatched() ? 0 : hidden<int(int)>("fsync")(file); });
}
int fdatasync(int file) {
    return watched("fsync", true,
                   [&](bool) { return isWatched() ? 0 : hidden<int(int)>("fdatasync")(file); });
}
int flock(int file, int operation) noexcept {
    return watched("lock", false, [&](bool) { return hidden<int(int, int)>("flock")(file, operation); });
}
int ftruncate(int file, off_t size) noexcept {
    return watched("ftruncate", false,
                   [&](bool) { return hidden<int(int, off_t)>("ftruncate")(file, size); });
}
int ftruncate64(int file, off64_t size) noexcept {
    return watched("ftruncate", false,
                   [&](bool) { return hidden<int(int, off64_t)>("ftruncate64")(file, size); });
}

int fstat(int file, Stat* status) noexcept {
    return watched("stat", false, [&](bool) { return hidden<int(int, Stat*)>("fstat")(file, status); });
}
int fstat64(int file, Stat64* status) noexcept {
    return watched("stat", false, [&](bool) { return hidden<int(int, Stat64*)>("fstat64")(file, status); });
}
int stat64(const char* path, Stat64* status) noexcept {
    return watched("stat", false,
                   [&](bool) { return hidden<int(const char*, Stat64*)>("stat64")(path, status); });
}
int lstat64(const char* path, Stat64* status) noexcept {
    return watched("stat", false,
                   [&](bool) { return hidden<int(const char*, Stat64*)>("lstat64")(path, status); });
}
int fstatat(int folder, const char* path, Stat* status, int flags) noexcept {
    return watched("stat", false, [&](bool) {
        return hidden<int(int, const char*, Stat*, int)>("fstatat")(folder, path, status, flags);
    });
}
int access(const char* path, int mode) noexcept {
    return watched("access", false,
                   [&](bool) { return hidden<int(const char*, int)>("access")(path, mode); });
}
int faccessat(int folder, const char* path, int mode, int flags) noexcept {
    return watched("access", false, [&](bool) {
        return hidden<int(int, const char*, int, int)>("faccessat")(folder, path, mode, flags);
    });
}
ssize_t readlink(const char* path, char* to, size_t size) noexcept {
    return watched("readlink", false, [&](bool) {
        return hidden<ssize_t(const char*, char*, size_t)>("readlink")(path, to, size);
    });
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
    return watched("link", true, [&](bool) {
        return hidden<int(int, const char*, int, const char*, int)>("linkat")(fromFolder, from, toFolder, to,
                                                                              flags);
    });
}
int rename(const char* from, const char* to) noexcept {
    return watched("rename", true,
                   [&](bool) { return hidden<int(const char*, const char*)>("rename")(from, to); });
}
int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
    return watched("rename", true, [&](bool) {
        return hidden<int(int, const char*, int, const char*)>("renameat")(fromFolder, from, toFolder, to);
    });
}
int unlink(const char* path) noexcept {
    return watched("unlink", false, [&](bool) { return hidden<int(const char*)>("unlink")(path); });
}
int unlinkat(int folder, const char* path, int flags) noexcept {
    return watched("unlink", false,
                   [&](bool) { return hidden<int(int, const char*, int)>("unlinkat")(folder, path, flags); });
}
int mkdir(const char* path, mode_t mode) noexcept {
    return watched("mkdir", true,
                   [&](bool) { return hidden<int(const char*, mode_t)>("mkdir")(path, mode); });
}
int fchmod(int file, mode_t mode) noexcept {
    return watched("chmod", false, [&](bool) { return hidden<int(int, mode_t)>("fchmod")(file, mode); });
}
int fchown(int file, uid_t owner, gid_t group) noexcept {
    return watched("chown", false,
                   [&](bool) { return hidden<int(int, uid_t, gid_t)>("fchown")(file, owner, group); });
}

}  // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
// NOLINTEND(readability-identifier-naming, cert-dcl50-cpp, cppcoreguidelines-pro-type-vararg)
