#pragma once

namespace trimora::testing {

/// How long tests that could go on for ever are to go on: 1 in every run, 2 in the long run, 3 before a
/// release. Read from TRIMORA_DEPTH; 1 where it is not set.
[[nodiscard]] int depth();

/// The one of these that belongs to depth(): how often something random is to be tried.
[[nodiscard]] int byDepth(int everyRun, int longRun, int beforeRelease);

}  // namespace trimora::testing
