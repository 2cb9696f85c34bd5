#pragma once

#include <cstdint>
#include <span>
#include <utility>

#include "foundation/Result.h"

namespace trimora::files {

/// Owns an open file of the system and closes it when it goes. Movable; an empty one owns nothing.
class FileDescriptor {
 public:
    FileDescriptor() = default;
    /// Takes over `number`; a negative one means nothing.
    explicit FileDescriptor(int number) : number_(number) {}
    ~FileDescriptor() { reset(); }
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;

    [[nodiscard]] int number() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }

    /// Gives the open file away: the caller closes it.
    [[nodiscard]] int release() { return std::exchange(number_, -1); }

    /// Closes the file; errors of closing are not told (see close() where they matter).
    void reset();

    /// Closes the file and tells what the system says about it: a network file system may report only
    /// here that earlier writes failed. The descriptor is empty afterwards either way.
    [[nodiscard]] foundation::Result<void> close();

 private:
    int number_ = -1;
};

/// open(2) and openat(2), tried again when a signal interrupts them. Always close-on-exec; empty on
/// failure, with the reason in `errno`. `folder` may be AT_FDCWD.
[[nodiscard]] FileDescriptor openAt(int folder, const char* name, int flags, unsigned mode = 0);

/// Writes all bytes, however many calls that takes. On failure some may have been written.
[[nodiscard]] foundation::Result<void> writeAll(int file, std::span<const std::uint8_t> bytes);

}  // namespace trimora::files
