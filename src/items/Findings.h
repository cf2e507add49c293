#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/Export.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// Something an item holds that the tools would refuse or a device could not hold.
struct Finding {
  std::string code;   // stable, for scripts: "type-unknown", "value-above-maximum", ...
  bool error = true;  // false for a warning
  std::string path;   // the item's name, a field's below it: "nciRoom.fan.value"
  std::string text;
};

// What a network variable, configuration property or field named path, and each field below
// it, holds amiss: a type the catalogue lacks or cannot build, a value that is no state or
// number of its type, outside its limits or without raw bytes, limits that contradict each other
// or the type, a default the document did not give. Numbers are said in the display units.
KOLVANE_API std::vector<Finding> CheckItem(const std::shared_ptr<IUnknown>& item,
                                           const std::string& path);

}  // namespace kolvane
