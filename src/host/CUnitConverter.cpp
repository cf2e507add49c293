#include "host/CUnitConverter.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include "conversion/SNVTDataConversion.h"
#include "foundation/Decimal.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/Numbers.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"

namespace kolvane {

namespace {

using internal::Rational;

// How one type shows in US customary units: us = si x factor + offset. What it needs of the
// type's scaling is looked up once per catalogue.
struct Conversion {
  std::string unit;
  Rational factor;
  Rational offset;
  uint64_t stamp = 0;                 // the catalogue the rest was taken from
  std::optional<Rational> step;       // one raw step, for an integral number
  int decimals = 0;                   // decimals shown
  int type_decimals = 0;              // decimals of the type's own unit
  int32_t c = 0;
};

struct UnitState {
  UnitSystem system = UnitSystem::kSI;
  std::unordered_map<std::string, Conversion> table;
};

thread_local UnitState state;

std::optional<Rational> StepOf(const CSNVTType& type);
int DecimalsFor(const Rational& step_in_display);

// The conversion of type_id in the chosen system, or nothing (the catalogue unit stands).
const Conversion* ConversionOf(const std::string& type_id) {
  if (state.system != UnitSystem::kUSCustomary) return nullptr;
  const auto it = state.table.find(type_id);
  if (it == state.table.end()) return nullptr;
  Conversion& conversion = it->second;
  if (const uint64_t stamp = internal::CatalogueStamp(); conversion.stamp != stamp) {
    const auto type = CSNVTType::Shared(type_id);
    conversion.step = StepOf(*type);
    conversion.decimals = conversion.step ? DecimalsFor(*conversion.step * conversion.factor) : 0;
    conversion.type_decimals = std::max(0, -type->ISNVType_BCoef());
    conversion.c = type->ISNVType_CCoef();
    conversion.stamp = stamp;
  }
  return &conversion;
}

// One raw step of an integral numeric type, A x 10^B; nothing for other kinds.
std::optional<Rational> StepOf(const CSNVTType& type) {
  if (type.Kind() != TypeKind::kSignedNumeric && type.Kind() != TypeKind::kUnsignedNumeric) {
    return std::nullopt;
  }
  if (type.ISNVType_ACoef() == 0) return std::nullopt;
  try {
    return Rational(type.ISNVType_ACoef(), 1) * Rational::PowerOfTen(type.ISNVType_BCoef());
  } catch (const Error&) {
    return std::nullopt;
  }
}

// Decimals enough that a shown value lies within a quarter of a raw step of the exact one.
int DecimalsFor(const Rational& step_in_display) {
  int decimals = 0;
  while (decimals < 15 &&
         step_in_display < Rational(2, 1) * Rational::PowerOfTen(-decimals)) {
    ++decimals;
  }
  return decimals;
}

std::string Converted(const Conversion& conversion, const std::string& value) {
  const auto exact = conversion.step ? Rational::FromText(value) : std::nullopt;
  if (exact) {
    try {
      const Rational shown = *exact * conversion.factor + conversion.offset;
      return shown.Text(conversion.decimals, Globals::DecimalPoint());
    } catch (const Error&) {
    }
  }
  // Floats and numbers beyond exact reach: as few digits as give back the same single-precision
  // value when typed back.
  double number = 0;
  try {
    number = ParseNumber(SNVTDataConversion::NormalizeDecimal(value), Globals::DecimalPoint());
  } catch (const Error&) {
    return value;  // no number ("Invalid", empty): shown as it is
  }
  const double shown = number * conversion.factor.ToDouble() + conversion.offset.ToDouble();
  const auto held = static_cast<float>(number);
  // Near an offset (0 °C is 32 °F) a small value needs more than nine digits.
  for (int digits = 7; digits <= 17; ++digits) {
    // Typed back, the text goes the way FromDisplayUnits takes it.
    const std::string text = GeneralText(shown, digits, ".");
    const auto typed = Rational::FromText(text);
    try {
      if (typed && static_cast<float>(((*typed - conversion.offset) / conversion.factor).ToDouble()) == held) {
        return GeneralText(shown, digits, Globals::DecimalSeparator);
      }
    } catch (const Error&) {
    }
  }
  // None gives it back (a value at the end of single precision's range): seven digits.
  return GeneralText(shown, 7, Globals::DecimalSeparator);
}

// The shortest text of a number that reads back as the same single-precision value.
std::string SingleText(double number) {
  // The digits of the single-precision value itself: a number near the middle of two of them
  // would round either way once cut.
  const auto held = static_cast<float>(number);
  for (int digits = 7; digits < 9; ++digits) {
    const std::string text = GeneralText(held, digits, ".");
    try {
      if (static_cast<float>(ParseNumber(text)) == held) return text;
    } catch (const Error&) {
    }
  }
  return GeneralText(held, 9, ".");
}

std::string InvariantText(const std::string& value) {
  std::string text = value;
  if (const size_t point = text.find(Globals::DecimalPoint()); point != std::string::npos) {
    text[point] = '.';
  }
  return text;
}

}  // namespace

UnitSystem SetUnitSystem(UnitSystem system) {
  const UnitSystem previous = state.system;
  state.system = system;
  return previous;
}

UnitSystem CurrentUnitSystem() { return state.system; }

void SetUnitTable(const std::shared_ptr<pugi::xml_document>& table) {
  state.table.clear();
  if (!table) return;
  for (pugi::xml_node entry : table->document_element().children()) {
    const std::string_view name = entry.name();
    if (entry.type() != pugi::node_element || name.substr(0, 5) != "SNVT_") continue;
    const auto factor = Rational::FromFraction(entry.attribute("FACTOR").value());
    const auto offset = Rational::FromFraction(entry.attribute("OFFSET").as_string("0"));
    if (!factor || !offset || !(Rational() < *factor || *factor < Rational())) continue;
    Conversion conversion;
    conversion.unit = entry.attribute("UNIT").value();
    conversion.factor = *factor;
    conversion.offset = *offset;
    state.table.try_emplace(std::string(name.substr(5)), std::move(conversion));
  }
}

std::string CUnitConverter::ToDisplayUnits(const std::string& type_id, const std::string& value) {
  const Conversion* conversion = ConversionOf(type_id);
  return conversion ? Converted(*conversion, value) : value;
}

std::string CUnitConverter::FromDisplayUnits(const std::string& type_id,
                                             const std::string& value) {
  const Conversion* conversion = ConversionOf(type_id);
  const auto shown = conversion ? Rational::FromText(value) : std::nullopt;
  if (!shown) return InvariantText(value);
  try {
    const Rational si = (*shown - conversion->offset) / conversion->factor;
    if (const auto& step = conversion->step) {
      // The nearest value the type holds: a whole number of steps from its offset.
      const Rational c(conversion->c, 1);
      const Rational held = *step * (Rational((si / *step - c).Round(), 1) + c);
      return held.Text(conversion->type_decimals, '.');
    }
    return SingleText(si.ToDouble());
  } catch (const Error&) {
    return InvariantText(value);
  }
}

std::string CUnitConverter::DisplayMinimum(const std::string& type_id) {
  return ToDisplayUnits(
      type_id, SNVTDataConversion::LocalizeNumber(internal::SnvtChildText(type_id, "MIN")));
}

std::string CUnitConverter::DisplayMaximum(const std::string& type_id) {
  return ToDisplayUnits(
      type_id, SNVTDataConversion::LocalizeNumber(internal::SnvtChildText(type_id, "MAX")));
}

std::string CUnitConverter::DisplayUnits(const std::string& type_id) {
  const Conversion* conversion = ConversionOf(type_id);
  return conversion ? conversion->unit : internal::SnvtChildText(type_id, "UNIT");
}

std::string CUnitConverter::DefaultValue(const std::string& type_id) {
  return internal::SnvtChildText(type_id, "DEFAULT");
}

double CUnitConverter::TextToNumber(const std::string& text) {
  return ParseNumber(SNVTDataConversion::NormalizeDecimal(text), Globals::DecimalPoint());
}

}  // namespace kolvane
