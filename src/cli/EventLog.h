#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "cli/JsonValues.h"

namespace trimora {

/// What was stored in the record of use since one looked last. Main thread only.
class EventLog {
 public:
    /// The bodies of the events that are new in the store or were written anew, in the order of the store.
    /// What waits in a queue is not stored yet. None where nothing is recorded.
    [[nodiscard]] Json news();

 private:
    std::map<std::int64_t, std::string> known_;  // bodies by their rows
};

}  // namespace trimora
