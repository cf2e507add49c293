#pragma once

#include <string>

#include "interfaces/IUnitConverter.h"

namespace kolvane {

// The built-in "UnitManager.Converter": shows every type in its catalogue unit. Values pass
// unchanged to display; back from display they take "." as decimal point. Limits, unit text and
// default are the catalogue's MIN, MAX, UNIT and DEFAULT children (limits with the user's
// decimal separator); an unknown type has none of them.
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
