#pragma once

#include <string>

namespace trimora::analytics {

/// A new session id: a random UUID (version 4) in capital letters, from the system's own source of
/// randomness.
[[nodiscard]] std::string makeSessionIdentifier();

}  // namespace trimora::analytics
