#include "Values.h"

#include <optional>
#include <sstream>

#include "conversion/SNVTDataConversion.h"
#include "foundation/Characters.h"
#include "foundation/Error.h"
#include "foundation/Numbers.h"
#include "host/Schedule.h"
#include "types/CSNVTType.h"

namespace kolvane::cli {

namespace {

// A number as documents and users write it: "," or "." as decimal point.
std::optional<double> NumberOf(const std::string& text) {
  try {
    return ParseEitherPoint(text);
  } catch (const Error&) {
    return std::nullopt;
  }
}

bool CheckNumber(const ItemRef& item, const std::string& typed, std::string& value,
                 std::string& error) {
  const std::string id = item.type->ISNVType_ID();
  // A schedule's time of day is typed as a time: "07:30" is 450 minutes.
  if (id == "sched_time" && typed.find(':') != std::string::npos) {
    const auto minutes = schedule::Schedule::ParseTime(typed);
    if (!minutes) {
      error = item.path + ": \"" + typed + "\": The time must be between 00:00 and 23:59";
      return false;
    }
    value = std::to_string(*minutes);
    return true;
  }
  const auto converter = CreateObjectAs<IUnitConverter>("UnitManager.Converter");
  const std::string unit = converter->DisplayUnits(id);
  const auto with_unit = [&unit](const std::string& number) {
    return unit.empty() ? number : number + " " + unit;
  };
  std::string number = typed;
  if (const size_t blank = typed.find(' '); blank != std::string::npos) {
    const std::string typed_unit = typed.substr(blank + 1);
    if (typed_unit != unit) {
      error = item.path + ": \"" + typed + "\" is in " + typed_unit + "; expected " +
              (unit.empty() ? "no unit" : unit);
      return false;
    }
    number = typed.substr(0, blank);
  }
  const auto shown = NumberOf(number);
  if (!shown) {
    error = item.path + ": \"" + typed + "\" is not a number";
    return false;
  }
  // The limits of the item's own type object, in display units, as the numeric dialog has them.
  const auto limit = [&](const std::string& text) {
    return text.empty() ? text
                        : converter->ToDisplayUnits(id, SNVTDataConversion::LocalizeNumber(text));
  };
  const std::string minimum = limit(item.type->ISNVType_Min());
  const std::string maximum = limit(item.type->ISNVType_Max());
  if (const auto low = NumberOf(minimum); low && *shown < *low) {
    error = item.path + ": " + with_unit(number) + ": The value is less than " + with_unit(minimum);
    return false;
  }
  if (const auto high = NumberOf(maximum); high && *shown > *high) {
    error = item.path + ": " + with_unit(number) + ": The value is greater than " +
            with_unit(maximum);
    return false;
  }
  value = converter->FromDisplayUnits(id, SNVTDataConversion::LocalizeNumber(number));
  // What is stored is what the type holds, in one form in either unit system: 21.504 °C is
  // 21.5, the value of its bytes.
  try {
    value = SNVTDataConversion::RawToValue(SNVTDataConversion::HexToBytes(SNVTDataConversion::CheckedValueToRaw(value, *item.type)),
                                           *item.type);
  } catch (const Error&) {
    // Left to the raw check below, which names why.
  }
  return true;
}

// The states a type override allows an item: (number, name); empty without one.
std::vector<std::pair<std::string, std::string>> OverrideStates(const ItemRef& item) {
  std::vector<std::pair<std::string, std::string>> states;
  const auto overridable = std::dynamic_pointer_cast<IOverridableItem>(item.object);
  const auto override = overridable ? overridable->IOverridableItem_TypeOverride() : nullptr;
  const auto list = override ? override->ITypeOverride_States() : nullptr;
  if (!list) return states;
  for (const auto& state : list->IStates_NewEnum()) {
    if (state) states.emplace_back(std::to_string(state->iState_Value()), state->iState_Name());
  }
  return states;
}

bool CheckState(const ItemRef& item, const std::string& typed, std::string& value,
                std::string& error) {
  // A type override's states are the ones offered and accepted.
  if (const auto states = OverrideStates(item); !states.empty()) {
    std::string names;
    for (const auto& [number, name] : states) {
      if (typed == name || typed == number || typed == "(" + number + "," + name + ")") {
        // A name the type itself lacks is written as the enumeration dialog writes it.
        const bool own = ("," + item.type->ISNVType_EnumDesc()).find("," + number + "," + name + ";") !=
                         std::string::npos;
        value = own ? name : "(" + number + "," + name + ")";
        return true;
      }
      names += (names.empty() ? "" : ", ") + name;
    }
    error = item.path + ": \"" + typed + "\" is no state the item allows; valid: " + names;
    return false;
  }
  // By name, by number, or as the enumeration dialog writes a state: "(1,ON)".
  if (!SNVTDataConversion::StateNameOf(typed, item.type->ISNVType_EnumDesc()).empty()) return true;
  std::istringstream entries(item.type->ISNVType_EnumDesc());
  std::string names;
  for (std::string entry; std::getline(entries, entry, ';');) {
    const size_t comma = entry.find(',');
    if (comma != std::string::npos) names += (names.empty() ? "" : ", ") + entry.substr(comma + 1);
  }
  error = item.path + ": \"" + typed + "\" is no state of SNVT_" + item.type->ISNVType_ID() +
          "; valid: " + names;
  return false;
}

bool CheckText(const ItemRef& item, const std::string& typed, std::string& error) {
  // An ASCII text type holds ASCII only: a device reads other bytes as another character.
  if (item.type->ISNVType_ID() == "str_asc") {
    for (size_t i = 0; i < typed.size(); ++i) {
      if (static_cast<unsigned char>(typed[i]) >= 0x80) {
        size_t end = i + 1;
        while (end < typed.size() && (static_cast<unsigned char>(typed[end]) & 0xC0) == 0x80) ++end;
        error = item.path + ": \"" + typed + "\": \"" + typed.substr(i, end - i) +
                "\" is no ASCII character; SNVT_str_asc holds ASCII only";
        return false;
      }
    }
  }
  const int32_t room = item.type->ISNVType_Length() - 1;
  if (room >= 0 && CharacterCount(typed) > static_cast<size_t>(room)) {
    error = item.path + ": \"" + typed + "\": The text cannot exceed " + std::to_string(room) +
            " characters";
    return false;
  }
  return true;
}

bool CheckKind(const ItemRef& item, const std::string& typed, std::string& value,
               std::string& error) {
  if (typed == "Invalid") {
    if (item.type->ISNVType_InvalidValue().empty()) {
      const std::string name = "SNVT_" + item.type->ISNVType_ID();
      error = item.path + ": \"Invalid\": " + (item.path == name ? "the type" : name) +
              " has no invalid value";
      return false;
    }
    return true;
  }
  switch (KindOf(*item.type)) {
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kFloat:
      return CheckNumber(item, typed, value, error);
    case TypeKind::kEnum:
      return CheckState(item, typed, value, error);
    case TypeKind::kTextual:
      return CheckText(item, typed, error);
    case TypeKind::kBitfield:
    case TypeKind::kStruct:
    case TypeKind::kUnknown:
      return true;
  }
  return true;
}

}  // namespace

bool ParseTypedValue(const ItemRef& item, const std::string& typed, std::string& value,
                     std::string& error) {
  value = typed;
  if (!item.type) return true;
  if (KindOf(*item.type) == TypeKind::kStruct) {
    // A structure is set field by field: its brace text names no field.
    error = item.path + ": a structure is set by its fields (" + item.path + ".FIELD=VALUE)";
    return false;
  }
  if (!CheckKind(item, typed, value, error)) return false;
  // What the edit dialogs let pass must still fit the type's bytes.
  try {
    SNVTDataConversion::CheckedValueToRaw(value, *item.type);
  } catch (const Error& refused) {
    error = item.path + ": " + refused.detail();
    return false;
  }
  return true;
}

}  // namespace kolvane::cli
