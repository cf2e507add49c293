#pragma once

#include <memory>

#include "interfaces/IUnitConverter.h"

namespace kolvane::internal {

// What a field needs of its owner beyond the host interfaces. Network variables, configuration
// properties and structure fields implement it.
class FieldOwner {
 public:
  virtual ~FieldOwner() = default;
  // The units converter of the network variable or configuration property at the top.
  virtual std::shared_ptr<IUnitConverter> UnitsManager() const = 0;
  // For a network variable: the flag that fills in missing field defaults and makes its fields
  // item type 5 rather than 4. Not asked of other owners.
  virtual bool FieldDefaultsFlag() const { return false; }
};

}  // namespace kolvane::internal
