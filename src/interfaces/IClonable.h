#pragma once

#include <memory>

#include "interfaces/IUnknown.h"

namespace kolvane {

// An object that copies itself.
class KOLVANE_API IClonable : public virtual IUnknown {
 public:
  // A new object holding the same content.
  virtual std::shared_ptr<IUnknown> IClonable_Clone() const = 0;
};

}  // namespace kolvane
