#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "interfaces/IUnknown.h"
#include "interfaces/iState.h"

namespace kolvane {

// A set of enumeration states keyed by their value.
class KOLVANE_API IStates : public virtual IUnknown {
 public:
  // The state whose value is value (a key, not a position), or nullptr.
  virtual std::shared_ptr<iState> IStates_Item(int16_t value) const = 0;
  // Number of states.
  virtual int16_t IStates_Count() const = 0;
  // The states in insertion order.
  virtual std::vector<std::shared_ptr<iState>> IStates_NewEnum() const = 0;
  // Adds state under its value; a second state with the same value is not added.
  virtual void IStates_Add(std::shared_ptr<iState>& state) = 0;
  // Removes the state stored under the value of state; an absent value is ignored.
  virtual void IStates_Remove(const std::shared_ptr<iState>& state) = 0;
  // The states' texts joined by ";", e.g. "(0,OFF);(1,ON)"; error 5 for an empty set.
  virtual std::string IStates_ToString() const = 0;
};

}  // namespace kolvane
