#pragma once

#include <memory>
#include <string>

#include "foundation/Export.h"
#include "interfaces/ISNVType.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// The bytes a device holds for an item's value, or why it holds none.
struct RawBytes {
  std::string raw;      // upper-case hexadecimal, most significant first; empty without a value
  std::string problem;  // why the value has no raw form of its type's length; empty when it has
};

// The raw bytes of a network variable's, configuration property's or field's value (a
// structure's from its fields) with nothing clamped, cut or read as 0, where RawValue keeps the
// conversion's deliberate edges.
KOLVANE_API RawBytes CheckedRawBytes(const std::shared_ptr<IUnknown>& item);

// The raw bytes of value, a text of type in the type's own unit ("21.5", "Invalid", a state).
KOLVANE_API RawBytes CheckedRawBytes(const std::string& value, const ISNVType& type);

}  // namespace kolvane
