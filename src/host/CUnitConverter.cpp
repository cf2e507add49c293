#include "host/CUnitConverter.h"

#include "conversion/SNVTDataConversion.h"
#include "foundation/Globals.h"
#include "foundation/Numbers.h"
#include "types/SnvtCatalogue.h"

namespace kolvane {

std::string CUnitConverter::ToDisplayUnits(const std::string& /*type_id*/,
                                           const std::string& value) {
  return value;
}

std::string CUnitConverter::FromDisplayUnits(const std::string& /*type_id*/,
                                             const std::string& value) {
  std::string text = value;
  if (const size_t point = text.find(Globals::DecimalPoint()); point != std::string::npos) {
    text[point] = '.';
  }
  return text;
}

std::string CUnitConverter::DisplayMinimum(const std::string& type_id) {
  return SNVTDataConversion::LocalizeNumber(internal::SnvtChildText(type_id, "MIN"));
}

std::string CUnitConverter::DisplayMaximum(const std::string& type_id) {
  return SNVTDataConversion::LocalizeNumber(internal::SnvtChildText(type_id, "MAX"));
}

std::string CUnitConverter::DisplayUnits(const std::string& type_id) {
  return internal::SnvtChildText(type_id, "UNIT");
}

std::string CUnitConverter::DefaultValue(const std::string& type_id) {
  return internal::SnvtChildText(type_id, "DEFAULT");
}

double CUnitConverter::TextToNumber(const std::string& text) {
  return ParseNumber(SNVTDataConversion::NormalizeDecimal(text), Globals::DecimalPoint());
}

}  // namespace kolvane
