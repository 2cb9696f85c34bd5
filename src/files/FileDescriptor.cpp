#include "files/FileDescriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "files/SystemError.h"

namespace trimora::files {

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
        reset();
        number_ = std::exchange(other.number_, -1);
    }
    return *this;
}

void FileDescriptor::reset() {
    if (number_ >= 0)
        ::close(std::exchange(number_, -1));
}

foundation::Result<void> FileDescriptor::close() {
    // Linux releases the number even when it answers EINTR, so the call is never made twice.
    if (number_ >= 0 && ::close(std::exchange(number_, -1)) != 0 && errno != EINTR)
        return systemError("the file cannot be written", errno);
    return {};
}

FileDescriptor openAt(int folder, const char* name, int flags, unsigned mode) {
    for (;;) {
        const int number = ::openat(folder, name, flags | O_CLOEXEC, mode);
        if (number >= 0 || errno != EINTR)
            return FileDescriptor(number);
    }
}

foundation::Result<void> writeAll(int file, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return systemError("the file cannot be written", errno);
        if (written == 0)
            return systemError("the file cannot be written", ENOSPC);
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return {};
}

}  // namespace trimora::files
