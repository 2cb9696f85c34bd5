#pragma once

#include <nlohmann/json_fwd.hpp>

namespace trimora::analytics {

/// The data of an event: a JSON object whose values are strings, numbers, booleans, arrays, objects and
/// null. The JSON null (`nullptr`) stands for no data at all.
using Dictionary = nlohmann::json;

}  // namespace trimora::analytics
