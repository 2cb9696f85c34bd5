#pragma once

#include <nlohmann/json.hpp>
#include <ostream>

namespace trimora::batch {

/// Writes the value as one line and hands it on at once, so that a reader at the other end of a pipe need
/// not wait. File names are bytes: what is no UTF-8 in them becomes the replacement character.
inline void writeJsonLine(std::ostream& out, const nlohmann::ordered_json& value) {
    out << value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << std::endl;
}

}  // namespace trimora::batch
