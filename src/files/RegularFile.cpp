#include "files/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "files/SystemError.h"

namespace trimora::files {
namespace {

using foundation::Error;
using foundation::Result;

constexpr const char* kUnreadable = "the file cannot be read";

Error notRegular(mode_t mode) {
    if (S_ISDIR(mode))
        return {"it is a folder", EISDIR};
    return {"it is not a regular file", EINVAL};
}

Result<FileBytes> readUpTo(int file, std::size_t size) {
    foundation::PixelBuffer memory = foundation::PixelBuffer::allocate(size);
    if (!memory)
        return Error{"not enough memory to read the file", ENOMEM};
    std::size_t filled = 0;
    while (filled < size) {
        const ssize_t count =
            ::pread(file, memory.data() + filled, size - filled, static_cast<off_t>(filled));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return systemError(kUnreadable, errno);
        if (count == 0)
            break;
        filled += static_cast<std::size_t>(count);
    }
    return FileBytes(std::move(memory), filled);
}

}  // namespace

Result<FileDescriptor> openRegularFileAt(int folder, const char* name, Links links) {
    // O_NONBLOCK: opening a pipe that nobody writes to would otherwise wait for ever.
    const int flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | (links == Links::refuse ? O_NOFOLLOW : 0);
    FileDescriptor file = openAt(folder, name, flags);
    if (!file)
        return systemError(kUnreadable, errno);
    struct stat status {};
    if (::fstat(file.number(), &status) != 0)
        return systemError(kUnreadable, errno);
    if (!S_ISREG(status.st_mode))
        return notRegular(status.st_mode);
    return file;
}

Result<FileBytes> readAll(const FileDescriptor& file, std::size_t limit) {
    struct stat status {};
    if (::fstat(file.number(), &status) != 0)
        return systemError(kUnreadable, errno);
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (size > limit)
        return Error{"the file is larger than " + std::to_string(limit) + " bytes", EFBIG};
    return readUpTo(file.number(), static_cast<std::size_t>(size));
}

Result<FileBytes> readStart(const FileDescriptor& file, std::size_t size) {
    return readUpTo(file.number(), size);
}

Result<FileBytes> readRegularFile(const std::filesystem::path& path, std::size_t limit) {
    const Result<FileDescriptor> file = openRegularFileAt(AT_FDCWD, path.c_str(), Links::follow);
    if (!file)
        return file.error();
    return readAll(*file, limit);
}

}  // namespace trimora::files
