#pragma once

#include <string>
#include <vector>

#include "WindowProgram.h"

namespace trimora::reliability {

/// What is not as it must always be in a program that has come to rest: counters against the files of the
/// history, the mask against the picture, buttons and menus against both, sheets, title. Empty where all is
/// well.
[[nodiscard]] std::vector<std::string> disorderIn(WindowProgram& program);

/// The titles of the sheets that are on the screen, or their kinds where they have none.
[[nodiscard]] std::vector<std::string> sheetsShown();

}  // namespace trimora::reliability
