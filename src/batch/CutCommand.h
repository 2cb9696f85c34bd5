#pragma once

#include <span>

#include "batch/Surroundings.h"

namespace trimora::batch {

/// `trimora cut`: cuts pictures as CutOrder::helpPage() says, and returns an ExitStatus. `words` are those
/// after "cut". Pictures are worked on by threads of Surroundings::makeWorkers.
[[nodiscard]] int cut(std::span<const char* const> words, Surroundings& surroundings);

}  // namespace trimora::batch
