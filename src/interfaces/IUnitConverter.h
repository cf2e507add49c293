#pragma once

#include <string>

#include "interfaces/IUnknown.h"

namespace kolvane {

// The units converter, created by ProgID "UnitManager.Converter": shows values of a type in the
// user's display units. Every operation is keyed by the type's identifier (the text after
// "SNVT_"). Number texts use the user's decimal separator on the display side; a host replaces
// the built-in converter by registering another class under the same ProgID.
class KOLVANE_API IUnitConverter : public virtual IUnknown {
 public:
  // value, in the type's own unit, in display units.
  virtual std::string ToDisplayUnits(const std::string& type_id, const std::string& value) = 0;
  // value, in display units, in the type's own unit.
  virtual std::string FromDisplayUnits(const std::string& type_id, const std::string& value) = 0;
  // The type's minimum in display units; empty when the type has none.
  virtual std::string DisplayMinimum(const std::string& type_id) = 0;
  // The type's maximum in display units; empty when the type has none.
  virtual std::string DisplayMaximum(const std::string& type_id) = 0;
  // The display unit text of the type.
  virtual std::string DisplayUnits(const std::string& type_id) = 0;
  // The type's default value text; empty when the type has none.
  virtual std::string DefaultValue(const std::string& type_id) = 0;
  // A number typed by the user (either decimal separator); error 13 when it is not one.
  virtual double TextToNumber(const std::string& text) = 0;
};

}  // namespace kolvane
