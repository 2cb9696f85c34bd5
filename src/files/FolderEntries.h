#pragma once

#include <string>
#include <vector>

#include "foundation/Result.h"

namespace trimora::files {

/// Every name in the open folder but "." and "..", sorted. On failure returns an error.
[[nodiscard]] foundation::Result<std::vector<std::string>> folderEntries(int folder);

}  // namespace trimora::files
