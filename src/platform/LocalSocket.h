#pragma once

#include <filesystem>

#include "files/FileDescriptor.h"
#include "foundation/Result.h"

namespace trimora::platform {

// Sockets in the file system, without the toolkit's own: its network library, and the ten that it stands on,
// would be loaded at every start for a message of a few bytes. None of these wait; what is read and written
// at the sockets does not either, and tells EAGAIN in place of that.

/// Listens at `file`, which only the account itself can reach from the first moment on, in place of whatever
/// lies there.
[[nodiscard]] foundation::Result<files::FileDescriptor> listenAt(const std::filesystem::path& file);

/// Connects to whoever listens at `file`.
[[nodiscard]] foundation::Result<files::FileDescriptor> connectTo(const std::filesystem::path& file);

/// The next connection that has come; empty where none has.
[[nodiscard]] files::FileDescriptor acceptAt(const files::FileDescriptor& listener);

}  // namespace trimora::platform
