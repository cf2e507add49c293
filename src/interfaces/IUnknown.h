#pragma once

#include "foundation/Export.h"

namespace kolvane {

// Root of every interface. Lifetime is shared_ptr's; asking for another interface of an object
// is std::dynamic_pointer_cast.
class KOLVANE_API IUnknown {
 public:
  virtual ~IUnknown() = default;

 protected:
  IUnknown() = default;
  IUnknown(const IUnknown&) = default;
  IUnknown& operator=(const IUnknown&) = default;
};

}  // namespace kolvane
