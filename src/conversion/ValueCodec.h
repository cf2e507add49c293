#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <pugixml.hpp>

#include "interfaces/IField.h"
#include "interfaces/IFields.h"
#include "interfaces/IOverridableItem.h"
#include "interfaces/ISNVType.h"
#include "interfaces/ITypeOverride.h"
#include "interfaces/IUnitConverter.h"

// The texts network variables, configuration properties and fields show of their values, and the
// "ApPoint" records the profile writes. One place for each rule; the item classes only hand in
// their members. Not visible to a host.
namespace kolvane::codec {

// One text of a field, for the rule at hand.
using FieldText = std::function<std::string(const IField&)>;

// "{", then for each position i from 1 to the count the field found by the text of i, as " " +
// text + " ", then "}"; not trimmed, so neighbouring texts are two blanks apart. A position that
// finds no field adds nothing.
std::string StructureText(const IFields& fields, const FieldText& text);

// A number of a type in display units with the display unit text: "21.5 °C".
std::string NumberInDisplayUnits(IUnitConverter& converter, const std::string& type_id,
                                 const std::string& value);

// A number in the type's own unit with its unit text (no conversion): "21.5 °C".
std::string NumberInTypeUnits(const ISNVType& type, const std::string& value);

// The type's minimum (or maximum) in display units with the display unit text.
std::string LimitInDisplayUnits(IUnitConverter& converter, const std::string& type_id,
                                bool maximum);

// The members of a network variable or configuration property that its display texts read.
struct ItemTexts {
  std::string value;
  std::string default_value;
  std::string minimum;
  std::string maximum;
  std::shared_ptr<ISNVType> type;
  std::shared_ptr<IFields> fields;
  std::shared_ptr<IUnitConverter> converter;
};

// Whose texts the rules make: a network variable's or configuration property's, or a field's.
// The two differ in a few places (a field's texts are not localised, a field's structure value
// is not trimmed, a field shows its type's own limits); each rule says where.
enum class Holder { kItem, kField };

// Plain value text: an enumeration as stored, a structure from its fields' values, anything
// else localised (and trimmed unless numeric). Error 91 when an item's type or a needed
// converter or field collection is missing.
std::string PlainValue(const ItemTexts& item, Holder holder = Holder::kItem);

// Display text of the value: numbers in display units with their unit (an item's "Invalid"
// stays as is).
std::string DisplayValue(const ItemTexts& item, Holder holder = Holder::kItem);

// Display text of the default: an enumeration's state name, numbers in the type's own unit.
std::string DisplayDefault(const ItemTexts& item, Holder holder = Holder::kItem);

// Display text of the minimum (maximum): the type's limit in display units for numbers; an
// item's own limit text for every other kind but a structure, a field's type limit.
std::string DisplayLimit(const ItemTexts& item, bool maximum, Holder holder = Holder::kItem);

// The default, minimum and maximum texts an item's records carry: a structure's gathered from its
// fields (values and type limits), else the texts given.
struct LimitTexts {
  std::string default_value;
  std::string minimum;
  std::string maximum;
};
LimitTexts RecordLimits(const std::shared_ptr<IFields>& fields, LimitTexts own);

// What an item's point record holds.
struct PointRecord {
  std::string key;         // "Key": the point key
  std::string global_key;  // "ItemKey", in the interoperability form only
  std::string name;
  std::string direction;  // "In" for a configuration property
  std::string type_id;    // "Type"
  std::string value;      // "Value": the plain value text
  double x = 0;           // "Location" = x;y
  double y = 0;
  int32_t export_index = 0;
  std::shared_ptr<ITypeOverride> type_override;
  std::shared_ptr<IFields> fields;
  // The interoperability form's "Direction" when it differs from direction.
  std::string interoperability_direction;
  // Further attributes of the interoperability form, written after "Permanent".
  std::vector<std::pair<std::string, std::string>> interoperability_attributes;
  // Child elements of the interoperability form, written after "ExtendedInfo".
  std::vector<std::pair<std::string, std::string>> interoperability_children;
};

// Appends one "ApPoint" element to parent (the stored form, or the interoperability form with
// "ItemKey" after "Key") with its "ExtendedInfo", type override and field overrides.
pugi::xml_node WritePointRecord(pugi::xml_document& document, pugi::xml_node parent,
                                const PointRecord& record, bool interoperability);

// Writes an override into element: "Type" and, for an enumeration type, its "States".
void WriteTypeOverride(pugi::xml_document& document, pugi::xml_node element,
                       const ITypeOverride& type_override);

// Writes the overrides of fields (nested fields with dotted names after prefix) under parent.
void WriteFieldOverrides(pugi::xml_document& document, pugi::xml_node parent, const IFields& fields,
                         const std::string& prefix);

}  // namespace kolvane::codec
