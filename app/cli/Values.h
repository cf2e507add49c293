#pragma once

#include <string>

#include "Export.h"
#include "Items.h"

namespace kolvane::cli {

// A value typed for an item, checked as its edit dialog checks it and put in the item's own
// unit: a number in the chosen display units (with that unit or none) within the item's own
// minimum and maximum (a property's bounds included), an enumeration state (by name, number or
// as "(1,ON)"), a text that fits the type. On refusal returns false with error naming the item, the value and the
// limit in display units.
bool ParseTypedValue(const ItemRef& item, const std::string& typed, std::string& value,
                     std::string& error);

using app::ExportedValueOf;

}  // namespace kolvane::cli
