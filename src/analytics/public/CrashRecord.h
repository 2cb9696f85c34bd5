#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trimora::analytics {

/// A crash by a signal, read from what the dying process wrote: lines of a word and a value ("session",
/// "signal", "code", "address", then one "frame" for each place on the call stack, innermost first),
/// the line "maps", and the process's memory map, by which places become files and offsets in them.
struct CrashRecord {
    std::string session;
    std::string text;  ///< the signal, followed directly by the call stack

    /// Nothing where the process did not get far enough to say anything.
    [[nodiscard]] static std::optional<CrashRecord> parse(std::string_view written);
};

}  // namespace trimora::analytics
