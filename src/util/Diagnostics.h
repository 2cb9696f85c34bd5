#pragma once

#include "foundation/Geometry.h"

/// Lines for whoever hunts a bug, at debug level.
namespace trimora::util {

/// "x = 1.000000, y = 2.000000"
void logPoint(foundation::Point point);

/// A cat, to find a place in a long log at a glance.
void logCat();

}  // namespace trimora::util
