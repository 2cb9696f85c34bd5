#pragma once

namespace trimora::testing {

/// How long tests that could go on for ever are to go on: 1 in every run, 2 in the long run, 3 before a
/// release. Read from TRIMORA_DEPTH; 1 where it is not set.
[[nodiscard]] int depth();

/// The one of these that belongs to depth(): how often something random is to be tried.
[[nodiscard]] int byDepth(int everyRun, int longRun, int beforeRelease);

/// Whether a sanitizer watches: most memory is then its own, all takes several times as long, copies of the
/// process above all. What was tried in full without one needs a part of the rounds.
#ifdef TRIMORA_SANITIZED
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

}  // namespace trimora::testing
