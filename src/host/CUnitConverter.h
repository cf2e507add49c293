#pragma once

#include <string>

#include "host/DisplayUnits.h"
#include "interfaces/IUnitConverter.h"

namespace kolvane {

// The built-in "UnitManager.Converter". In SI (the default) every type shows in its catalogue
// unit: values pass unchanged to display and take "." as decimal point back from it; limits, unit
// text and default are the catalogue's MIN, MAX, UNIT and DEFAULT children (limits with the
// user's decimal separator). In US customary, a type the unit table names shows in its US unit:
// converted exactly in decimal, with as many decimals as keep one raw step of the type apart, and
// a value typed in it goes back to the nearest value the type can hold. Defaults stay in the
// catalogue's unit in both.
class CUnitConverter final : public IUnitConverter {
 public:
  std::string ToDisplayUnits(const std::string& type_id, const std::string& value) override;
  std::string FromDisplayUnits(const std::string& type_id, const std::string& value) override;
  std::string DisplayMinimum(const std::string& type_id) override;
  std::string DisplayMaximum(const std::string& type_id) override;
  std::string DisplayUnits(const std::string& type_id) override;
  std::string DefaultValue(const std::string& type_id) override;
  double TextToNumber(const std::string& text) override;
};

}  // namespace kolvane
