#pragma once

#include <cstdint>
#include <string>

#include "interfaces/IUnknown.h"

namespace kolvane {

// One enumeration state: a name and its numeric value.
class KOLVANE_API iState : public virtual IUnknown {
 public:
  // The state's name.
  virtual std::string iState_Name() const = 0;
  // Sets the state's name.
  virtual void iState_Name(std::string value) = 0;
  // The state's numeric value.
  virtual int16_t iState_Value() const = 0;
  // Sets the state's numeric value.
  virtual void iState_Value(int16_t value) = 0;
  // "(" value "," name ")", e.g. "(1,ON)".
  virtual std::string iState_ToString() const = 0;
};

}  // namespace kolvane
