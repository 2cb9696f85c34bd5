#pragma once

#include <string_view>

#include "foundation/Result.h"

namespace trimora::files {

/// What a failed system call left in `errno`, as an Error: "<what>: <the system's reason>", with the
/// number as its code. `what` is a clause for the person, such as "the file cannot be read".
[[nodiscard]] foundation::Error systemError(std::string_view what, int number);

}  // namespace trimora::files
