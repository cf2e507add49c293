#pragma once

#include <string>

#include "interfaces/IUnknown.h"

namespace kolvane {

// One entry of a compatible type list.
class KOLVANE_API ICompatibleSNVT : public virtual IUnknown {
 public:
  // The type's identifier (the text after "SNVT_").
  virtual std::string ICompatibleSNVT_ID() const = 0;
};

}  // namespace kolvane
