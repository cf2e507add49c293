#include "items/Findings.h"

#include <algorithm>
#include <map>
#include <optional>

#include "conversion/RawBytes.h"
#include "conversion/SNVTDataConversion.h"
#include "conversion/ValueCodec.h"
#include "cp/CConfigProperty.h"
#include "dialogs/DataPoint.h"
#include "foundation/Error.h"
#include "foundation/HostServices.h"
#include "foundation/Numbers.h"
#include "foundation/Text.h"
#include "interfaces/IField.h"
#include "interfaces/IFields.h"
#include "interfaces/IUnitConverter.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"
#include "types/StructureDepth.h"
#include "types/TypeKind.h"

namespace kolvane {

namespace {

struct Item {
  std::shared_ptr<IUnknown> object;
  std::string path;
  std::shared_ptr<ISNVType> type;
  std::shared_ptr<IFields> fields;
  bool field = false;
};

Item Describe(const std::shared_ptr<IUnknown>& object, const std::string& path) {
  Item item{object, path, nullptr, nullptr, std::dynamic_pointer_cast<IField>(object) != nullptr};
  if (const auto point = std::dynamic_pointer_cast<internal::DataPointItem>(object)) {
    item.type = point->DataPointType();
    item.fields = point->DataPointFields();
  }
  return item;
}

std::string TypeName(const Item& item) { return item.type ? item.type->ISNVType_ID() : ""; }

bool IsNumber(const Item& item) { return item.type && IsNumeric(KindOf(*item.type)); }

// The value text: a leaf's own, a structure's as the brace text of its fields' values (read
// without the structure's own getter, which writes the fields).
std::string ValueOf(const Item& item) {
  if (item.fields) {
    return std::string(TrimBlanks(codec::StructureText(
        *item.fields, [](const IField& field) { return field.IField_Value(); })));
  }
  const auto point = std::dynamic_pointer_cast<internal::DataPointItem>(item.object);
  return point ? point->DataPointValue() : "";
}

// A number text of the item's own unit in display units, with the unit: "70.7 °F".
std::string Shown(const Item& item, const std::string& value) {
  const auto converter = CreateObjectAs<IUnitConverter>("UnitManager.Converter");
  return std::string(TrimBlanks(codec::NumberInDisplayUnits(*converter, TypeName(item), value)));
}

// What a walk of a structure type's fields finds: the first type met again on its own path, and
// the number of fields the type expands to (a type on the path counts none). Types walked once
// are remembered, so a catalogue whose types multiply is walked in linear time.
struct StructureWalk {
  std::vector<std::string> path;
  std::map<std::string, int64_t> sizes;
  std::string loop;
};

int64_t WalkStructure(const std::string& id, StructureWalk& walk) {
  if (std::find(walk.path.begin(), walk.path.end(), id) != walk.path.end()) {
    if (walk.loop.empty()) walk.loop = id;
    return 0;
  }
  if (const auto known = walk.sizes.find(id); known != walk.sizes.end()) return known->second;
  if (static_cast<int>(walk.path.size()) > kMaxStructureDepth) return 0;
  walk.path.push_back(id);
  int64_t size = 0;
  for (pugi::xml_node field : internal::FindSnvtChild(id, "Fields").children()) {
    if (field.type() != pugi::node_element) continue;
    const std::string type = field.first_child().value();
    size += 1 + (ParseTypeKind(internal::SnvtChildText(type, "TYPE")) == TypeKind::kStruct
                     ? WalkStructure(type, walk)
                     : 0);
    size = std::min<int64_t>(size, int64_t{kMaxStructureFields} + 1);
  }
  walk.path.pop_back();
  walk.sizes.emplace(id, size);
  return size;
}

// Why "Invalid" of a type does not say invalid on the wire: the pattern it is written as is a
// valid value of the type; empty when it says invalid.
std::string InvalidPatternNote(const ISNVType& type) {
  const std::string pattern =
      SNVTDataConversion::InvalidPattern(KindOf(type), type.ISNVType_Length());
  if (pattern.empty()) return "";
  const std::string name = "SNVT_" + type.ISNVType_ID();
  const std::string invalid = type.ISNVType_InvalidValue();
  if (invalid.empty()) {
    return "\"Invalid\" is written as " + pattern + ", but " + name +
           " has no invalid value: a device reads it as a valid value";
  }
  std::string expected;
  try {
    expected = SNVTDataConversion::CheckedValueToRaw(invalid, type);
  } catch (const Error& error) {
    return name + "'s invalid value " + invalid + " has no raw form: " + error.detail();
  }
  if (expected == pattern) return "";
  return "\"Invalid\" is written as " + pattern + ", but " + name + "'s invalid value " +
         invalid + " is " + expected + ": a device reads " + pattern + " as a valid value";
}

// An enumeration value that names none of its type's states (by name, by number or as the
// enumeration dialog writes it, "(1,ON)").
void CheckState(const Item& item, std::vector<Finding>& findings) {
  const std::string value = ValueOf(item);
  if (value.empty() || value == "Invalid") return;
  if (!SNVTDataConversion::StateNameOf(value, item.type->ISNVType_EnumDesc()).empty()) return;
  findings.push_back({"value-unknown-state", true, item.path,
                      "value " + value + " is no state of SNVT_" + item.type->ISNVType_ID()});
}

// A value outside the limits of the item's own type object (a property's bounds are there).
void CheckRange(const Item& item, std::vector<Finding>& findings) {
  if (KindOf(*item.type) == TypeKind::kEnum) {
    CheckState(item, findings);
    return;
  }
  if (!IsNumber(item)) return;
  const std::string value = ValueOf(item);
  if (value.empty() || value == "Invalid") return;
  const std::string minimum = item.type->ISNVType_Min();
  const std::string maximum = item.type->ISNVType_Max();
  try {
    const double number = ParseEitherPoint(value);
    if (!minimum.empty() && number < ParseNumber(minimum)) {
      findings.push_back({"value-below-minimum", true, item.path,
                          "value " + Shown(item, value) + " is below the minimum " +
                              Shown(item, minimum)});
    } else if (!maximum.empty() && number > ParseNumber(maximum)) {
      findings.push_back({"value-above-maximum", true, item.path,
                          "value " + Shown(item, value) + " is above the maximum " +
                              Shown(item, maximum)});
    }
  } catch (const Error&) {
    findings.push_back(
        {"value-not-a-number", true, item.path, "value \"" + value + "\" is not a number"});
  }
}

// An item's own limits: a minimum above its maximum, limits beyond its type's range.
void CheckLimits(const Item& item, std::vector<Finding>& findings) {
  if (!IsNumber(item)) return;
  const auto number = [](const std::string& text) -> std::optional<double> {
    if (text.empty()) return std::nullopt;
    try {
      return ParseEitherPoint(text);
    } catch (const Error&) {
      return std::nullopt;
    }
  };
  const std::string minimum = item.type->ISNVType_Min();
  const std::string maximum = item.type->ISNVType_Max();
  const auto low = number(minimum);
  const auto high = number(maximum);
  if (low && high && *low > *high) {
    findings.push_back({"limits-reversed", true, item.path,
                        "minimum " + Shown(item, minimum) + " is above maximum " +
                            Shown(item, maximum)});
  }
  const std::string id = TypeName(item);
  const std::string type_minimum = internal::SnvtChildText(id, "MIN");
  const std::string type_maximum = internal::SnvtChildText(id, "MAX");
  const auto type_low = number(type_minimum);
  const auto type_high = number(type_maximum);
  if ((low && type_low && *low < *type_low) || (high && type_high && *high > *type_high)) {
    findings.push_back({"limits-outside-type", false, item.path,
                        "limits " + Shown(item, minimum) + " .. " + Shown(item, maximum) +
                            " reach beyond SNVT_" + id + "'s " + Shown(item, type_minimum) +
                            " .. " + Shown(item, type_maximum)});
  }
}

// A value whose bytes are not what it says: no raw form of the type's length (a leaf's own, or
// a structure's when its fields together have none), or "Invalid" written as a pattern a device
// reads as a valid value.
void CheckRawForm(const Item& item, std::vector<Finding>& findings) {
  const std::string value = ValueOf(item);
  if (!item.fields && value.empty()) return;
  if (!item.fields && value == "Invalid") {
    if (const std::string note = InvalidPatternNote(*item.type); !note.empty()) {
      findings.push_back({"invalid-pattern", false, item.path, note});
    }
  }
  const RawBytes bytes = CheckedRawBytes(item.object);
  if (!bytes.problem.empty()) {
    findings.push_back({"raw-unrepresentable", true, item.path,
                        "value " + value + " has no raw form: " + bytes.problem});
    return;
  }
  // A structure's length as the catalogue gives it: an item's own type may sum its fields.
  size_t length = static_cast<size_t>(item.type->ISNVType_Length());
  if (item.fields) {
    const auto declared = internal::DeclaredLength(TypeName(item));
    if (!declared) return;  // no length to hold the fields to
    length = static_cast<size_t>(*declared);
  }
  if (!bytes.raw.empty() && bytes.raw.size() != 2 * length) {
    findings.push_back({"raw-unrepresentable", true, item.path,
                        "the fields give " + std::to_string(bytes.raw.size() / 2) + " of the " +
                            std::to_string(length) + " bytes of SNVT_" + TypeName(item)});
  }
}

void Check(const Item& item, std::vector<Finding>& findings) {
  const size_t before = findings.size();
  const std::string id = TypeName(item);
  if (!item.type || item.type->ISNVType_GenType().empty()) {
    if (id.empty()) {
      findings.push_back({"type-missing", true, item.path, "no type given"});
    } else {
      findings.push_back(
          {"type-unknown", true, item.path, "type SNVT_" + id + " is not in the catalogue"});
    }
    return;
  }
  if (item.type->ISNVType_LUIType().empty()) {
    findings.push_back({"type-bad-kind", true, item.path,
                        "type SNVT_" + id + " has a bad kind \"" + item.type->ISNVType_GenType() +
                            "\""});
    return;
  }
  if (!item.field && KindOf(*item.type) == TypeKind::kStruct) {
    StructureWalk walk;
    const int64_t size = WalkStructure(id, walk);
    if (!walk.loop.empty()) {
      findings.push_back(
          {"structure-loop", true, item.path, "structure SNVT_" + walk.loop + " contains itself"});
    }
    if (size > kMaxStructureFields) {
      findings.push_back({"structure-too-large", true, item.path,
                          "structure SNVT_" + id + " has more than " +
                              std::to_string(kMaxStructureFields) + " fields"});
    }
  }
  CheckRange(item, findings);
  CheckLimits(item, findings);
  if (item.fields) {
    for (const auto& field : item.fields->IFields_NewEnum()) {
      Check(Describe(field, item.path + "." + field->IField_Name()), findings);
    }
  }
  // Leaves, and whole items whose parts gave no finding.
  if (findings.size() == before && (!item.fields || !item.field)) CheckRawForm(item, findings);
}

}  // namespace

std::vector<Finding> CheckItem(const std::shared_ptr<IUnknown>& item, const std::string& path) {
  std::vector<Finding> findings;
  if (const auto property = std::dynamic_pointer_cast<CConfigProperty>(item);
      property && property->DefaultWarning()) {
    findings.push_back({"default-assumed", false, path,
                        "Default value not defined into the XML file of the profile; " +
                            property->IConfigProperty_DefaultValue() + " assumed."});
  }
  Check(Describe(item, path), findings);
  return findings;
}

}  // namespace kolvane
