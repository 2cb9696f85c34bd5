#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace trimora::analytics {

/// One recorded fact, as it lies in the store: the session it belongs to and its JSON text.
///
/// An object that was inserted but never saved has the row 0 and is known to nobody but its holder.
/// An object fetched without its property values has its row alone.
struct TXEvent {
    std::int64_t row = 0;             ///< place in the store; rows grow in order of insertion
    std::optional<std::string> ssid;  ///< the session id
    std::optional<std::string> body;  ///< the JSON text, sent as it is; absent where it could not be written
};

}  // namespace trimora::analytics
