#pragma once

#include <string>
#include <utility>
#include <vector>

#include "foundation/HostServices.h"

namespace kolvane::internal {

// The outside components the library provides itself, by ProgID: "UnitManager.Converter" and
// "Moraface.Utility". They are registered before any other class.
std::vector<std::pair<std::string, ClassFactory>> BuiltInComponents();

}  // namespace kolvane::internal
