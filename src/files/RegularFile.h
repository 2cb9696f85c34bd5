#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

#include "files/FileDescriptor.h"
#include "foundation/PixelBuffer.h"
#include "foundation/Result.h"

/// Reading files that may come from anywhere. Only regular files are read: a pipe, device, socket or
/// folder is refused at once and never blocks the caller. Any thread.
namespace trimora::files {

/// The bytes of a file as they were read: a copy in memory, so that a file that shrinks or goes away
/// afterwards cannot take the ground away (a mapped file would). Large blocks are recycled.
class FileBytes {
 public:
    FileBytes() = default;
    FileBytes(foundation::PixelBuffer memory, std::size_t size) : memory_(std::move(memory)), size_(size) {}

    [[nodiscard]] std::span<const std::uint8_t> view() const { return {memory_.data(), size_}; }
    [[nodiscard]] std::size_t size() const { return size_; }

 private:
    foundation::PixelBuffer memory_;
    std::size_t size_ = 0;
};

/// What to do where the last part of a name is a symbolic link.
enum class Links : std::uint8_t {
    follow,  ///< for files that the person chose
    refuse,  ///< for files of our own, which are never links
};

/// Opens a regular file for reading. `name` is relative to the open folder `folder` (or AT_FDCWD).
/// Anything else than a regular file returns an error.
[[nodiscard]] foundation::Result<FileDescriptor> openRegularFileAt(int folder, const char* name, Links links);

/// Everything in an open regular file, from its start. A file of more than `limit` bytes returns an
/// error before anything is read. One that shrinks meanwhile gives what was there, one that grows gives
/// what it held at the beginning.
[[nodiscard]] foundation::Result<FileBytes> readAll(const FileDescriptor& file, std::size_t limit);

/// The first bytes of an open regular file: `size` of them, or fewer where it holds fewer.
[[nodiscard]] foundation::Result<FileBytes> readStart(const FileDescriptor& file, std::size_t size);

/// openRegularFileAt() and readAll() of a path; links are followed.
[[nodiscard]] foundation::Result<FileBytes> readRegularFile(const std::filesystem::path& path,
                                                            std::size_t limit);

}  // namespace trimora::files
