#pragma once

#include <string_view>

#include "cutengine/RKImageCutView.h"
#include "script/Steps.h"

/// The cut view as a script speaks to it: by the names of its properties and operations.
namespace trimora::batch {

/// Sets a property through its setter; false where there is none of that name. The value is of the property's
/// kind: the script's reader saw to that.
bool setProperty(cutengine::RKImageCutView& view, const script::SetStep& step);

/// Performs an operation that takes no argument; false where there is none of that name.
bool performOperation(cutengine::RKImageCutView& view, std::string_view selector);

}  // namespace trimora::batch
