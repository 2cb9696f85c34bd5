#pragma once

#include "analytics/Diagnostics.h"
#include "foundation/Result.h"

/// What becomes of failures of the store: a line in the log, and the operation is dropped.
namespace trimora::analytics {

/// Logs "Telemetrix: <reason>" where there is a reason to; returns whether all went well.
inline bool logFailure(const foundation::Result<void>& done) {
    if (!done)
        logLine(done.error().message);
    return done.ok();
}

/// The value, or an empty one and a line in the log.
template <typename T>
[[nodiscard]] T valueOrLogged(foundation::Result<T> result) {
    if (result)
        return std::move(result).value();
    logLine(result.error().message);
    return {};
}

}  // namespace trimora::analytics
