#pragma once

#include <memory>

#include "interfaces/ITypeOverride.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// An item whose type may be overridden.
class KOLVANE_API IOverridableItem : public virtual IUnknown {
 public:
  // The override of the item's type, or nullptr.
  virtual std::shared_ptr<ITypeOverride> IOverridableItem_TypeOverride() const = 0;
  // Replaces the override; nullptr clears it.
  virtual void IOverridableItem_TypeOverride(std::shared_ptr<ITypeOverride> value) = 0;
};

}  // namespace kolvane
