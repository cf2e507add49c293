#pragma once

#include <memory>
#include <string>

#include "interfaces/IStates.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// A type that replaces an item's own type, with its own enumeration states.
class KOLVANE_API ITypeOverride : public virtual IUnknown {
 public:
  // Identifier of the overriding type.
  virtual std::string ITypeOverride_OverridingType() const = 0;
  // Sets the identifier of the overriding type.
  virtual void ITypeOverride_OverridingType(std::string value) = 0;
  // The overriding type's states, or nullptr.
  virtual std::shared_ptr<IStates> ITypeOverride_States() const = 0;
  // Sets the overriding type's states.
  virtual void ITypeOverride_States(std::shared_ptr<IStates> value) = 0;
};

}  // namespace kolvane
