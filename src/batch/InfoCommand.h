#pragma once

#include <span>

#include "batch/Surroundings.h"

namespace trimora::batch {

/// `trimora info`: tells what picture files are and how they would open, as its page of help says, and
/// returns an ExitStatus. `words` are those after "info".
///
/// Each file is decoded, since only that shows whether it opens.
[[nodiscard]] int info(std::span<const char* const> words, Surroundings& surroundings);

}  // namespace trimora::batch
