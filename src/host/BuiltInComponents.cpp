#include "host/BuiltInComponents.h"

#include <memory>

#include "host/CUnitConverter.h"
#include "host/CUtility.h"

namespace kolvane::internal {

std::vector<std::pair<std::string, ClassFactory>> BuiltInComponents() {
  return {
      {"UnitManager.Converter", [] { return std::make_shared<CUnitConverter>(); }},
      {"Moraface.Utility", [] { return std::make_shared<CUtility>(); }},
  };
}

}  // namespace kolvane::internal
