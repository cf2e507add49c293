#include "conversion/ValueCodec.h"

#include "conversion/SNVTDataConversion.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/Numbers.h"
#include "foundation/Text.h"
#include "foundation/mXML.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"

namespace kolvane::codec {

namespace {

using SNVTDataConversion::LocalizeNumber;

IUnitConverter& ConverterOf(const ItemTexts& item) {
  if (!item.converter) RaiseError(ErrorNumber::kObjectNotSet, "the item has no units converter");
  return *item.converter;
}

const IFields& FieldsOf(const ItemTexts& item) {
  if (!item.fields) RaiseError(ErrorNumber::kObjectNotSet, "the structure has no fields");
  return *item.fields;
}

// The kind the rules branch on. An item without a type fails; a field without one shows its
// texts as text.
TypeKind KindOf(const ItemTexts& item, Holder holder) {
  if (item.type) return kolvane::KindOf(*item.type);
  if (holder == Holder::kField) return TypeKind::kUnknown;
  RaiseError(ErrorNumber::kObjectNotSet, "the item has no type");
}

std::string Trimmed(const std::string& text) { return std::string(TrimBlanks(text)); }

// A structure's text from its fields, for an item trimmed; a field without a field collection
// falls back to otherwise (the structure is then shown as text).
std::string Structure(const ItemTexts& item, Holder holder, const FieldText& text) {
  if (holder == Holder::kField && !item.fields) return Trimmed(item.value);
  return Trimmed(StructureText(FieldsOf(item), text));
}

void SetAttribute(pugi::xml_node element, const char* name, const std::string& value) {
  element.append_attribute(name).set_value(value.c_str());
}

}  // namespace

std::string StructureText(const IFields& fields, const FieldText& text) {
  std::string out = "{";
  const int32_t count = fields.IFields_Count();
  for (int32_t i = 1; i <= count; ++i) {
    if (const auto field = fields.IFields_Item(std::to_string(i))) {
      out += " " + text(*field) + " ";
    }
  }
  return out + "}";
}

std::string NumberInDisplayUnits(IUnitConverter& converter, const std::string& type_id,
                                 const std::string& value) {
  return converter.ToDisplayUnits(type_id, LocalizeNumber(value)) + " " +
         converter.DisplayUnits(type_id);
}

std::string NumberInTypeUnits(const ISNVType& type, const std::string& value) {
  return LocalizeNumber(value) + " " + type.ISNVType_Units();
}

std::string LimitInDisplayUnits(IUnitConverter& converter, const std::string& type_id,
                                bool maximum) {
  const std::string limit =
      maximum ? converter.DisplayMaximum(type_id) : converter.DisplayMinimum(type_id);
  return limit + " " + converter.DisplayUnits(type_id);
}

std::string PlainValue(const ItemTexts& item, Holder holder) {
  switch (KindOf(item, holder)) {
    case TypeKind::kEnum:
      return item.value;
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kFloat:
      return LocalizeNumber(item.value);
    case TypeKind::kStruct:
      if (holder == Holder::kField) {
        // A field's structure text is not trimmed.
        if (!item.fields) return Trimmed(item.value);
        return StructureText(*item.fields, [](const IField& field) { return field.IField_Value(); });
      }
      return Structure(item, holder, [](const IField& field) { return field.IField_Value(); });
    case TypeKind::kBitfield:
    case TypeKind::kTextual:
    case TypeKind::kUnknown:
      // A field's text is not localised.
      return Trimmed(holder == Holder::kItem ? LocalizeNumber(item.value) : item.value);
  }
  return "";
}

std::string DisplayValue(const ItemTexts& item, Holder holder) {
  const TypeKind kind = KindOf(item, holder);
  switch (kind) {
    case TypeKind::kEnum:
      return item.value;
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kFloat:
      // An item shows "Invalid" as it is; a field converts whatever it holds.
      if (holder == Holder::kItem && item.value == "Invalid") return "Invalid";
      return NumberInDisplayUnits(ConverterOf(item), item.type->ISNVType_ID(), item.value);
    case TypeKind::kStruct:
      return Structure(item, holder, [](const IField& field) { return field.IField_DispValue(); });
    case TypeKind::kBitfield:
    case TypeKind::kTextual:
    case TypeKind::kUnknown:
      return Trimmed(holder == Holder::kItem ? LocalizeNumber(item.value) : item.value);
  }
  return "";
}

std::string DisplayDefault(const ItemTexts& item, Holder holder) {
  switch (KindOf(item, holder)) {
    case TypeKind::kEnum:
      return SNVTDataConversion::EnumStateName(
          holder == Holder::kItem ? LocalizeNumber(item.default_value) : item.default_value,
          item.type->ISNVType_EnumDesc());
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kFloat:
      return NumberInTypeUnits(*item.type, item.default_value);
    case TypeKind::kStruct:
      if (holder == Holder::kField && !item.fields) return Trimmed(item.default_value);
      return Structure(item, holder,
                       [](const IField& field) { return field.IField_DispDefault(); });
    case TypeKind::kBitfield:
    case TypeKind::kTextual:
    case TypeKind::kUnknown:
      return Trimmed(holder == Holder::kItem ? LocalizeNumber(item.default_value)
                                             : item.default_value);
  }
  return "";
}

std::string DisplayLimit(const ItemTexts& item, bool maximum, Holder holder) {
  const TypeKind kind = KindOf(item, holder);
  switch (kind) {
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kFloat:
      return LimitInDisplayUnits(ConverterOf(item), item.type->ISNVType_ID(), maximum);
    case TypeKind::kStruct:
      if (holder == Holder::kItem) {
        return Structure(item, holder, [maximum](const IField& field) {
          return maximum ? field.IField_DispMax() : field.IField_DispMin();
        });
      }
      break;
    case TypeKind::kEnum:
    case TypeKind::kBitfield:
    case TypeKind::kTextual:
    case TypeKind::kUnknown:
      break;
  }
  if (holder == Holder::kItem) return Trimmed(LocalizeNumber(maximum ? item.maximum : item.minimum));
  // A field shows its type's own limit: an enumeration's as a state name, others localised.
  if (!item.type) return "";
  const std::string limit = maximum ? item.type->ISNVType_Max() : item.type->ISNVType_Min();
  if (kind == TypeKind::kEnum) {
    return SNVTDataConversion::EnumStateName(limit, item.type->ISNVType_EnumDesc());
  }
  return LocalizeNumber(limit);
}

namespace {

void WritePointRecordInto(pugi::xml_document& document, pugi::xml_node point,
                          const PointRecord& record, bool interoperability) {
  SetAttribute(point, "Key", record.key);
  if (interoperability) SetAttribute(point, "ItemKey", record.global_key);
  SetAttribute(point, "Name", record.name);
  SetAttribute(point, "Direction",
               interoperability && !record.interoperability_direction.empty()
                   ? record.interoperability_direction
                   : record.direction);
  SetAttribute(point, "Type", record.type_id);
  SetAttribute(point, "Value", record.value);
  SetAttribute(point, "Permanent", "1");
  if (interoperability) {
    for (const auto& [name, value] : record.interoperability_attributes) {
      SetAttribute(point, name.c_str(), value);
    }
  }

  pugi::xml_node info = mXML::AppendXmlElement(document, point, "ExtendedInfo", mXML::kNoTextField);
  const std::string& separator = Globals::DecimalSeparator;
  SetAttribute(info, "Location",
               GeneralText(record.x, 15, separator) + ";" + GeneralText(record.y, 15, separator));
  info.append_attribute("ExportIndex").set_value(record.export_index);
  if (record.type_override) {
    pugi::xml_node element =
        mXML::AppendXmlElement(document, info, "TypeOverride", mXML::kNoTextField);
    WriteTypeOverride(document, element, *record.type_override);
  }
  if (record.fields) WriteFieldOverrides(document, info, *record.fields, "");
  if (!interoperability) return;
  for (const auto& [name, text] : record.interoperability_children) {
    mXML::AppendXmlElement(document, point, name, text);
  }
}

}  // namespace

LimitTexts RecordLimits(const std::shared_ptr<IFields>& fields, LimitTexts own) {
  if (!fields) return own;
  const auto text = [&](const FieldText& rule) {
    return std::string(TrimBlanks(StructureText(*fields, rule)));
  };
  return {text([](const IField& field) { return field.IField_Value(); }),
          text([](const IField& field) { return field.IField_SNVTType()->ISNVType_Min(); }),
          text([](const IField& field) { return field.IField_SNVTType()->ISNVType_Max(); })};
}

pugi::xml_node WritePointRecord(pugi::xml_document& document, pugi::xml_node parent,
                                const PointRecord& record, bool interoperability) {
  pugi::xml_node point = mXML::AppendXmlElement(document, parent, "ApPoint", mXML::kNoTextField);
  try {
    WritePointRecordInto(document, point, record, interoperability);
  } catch (...) {
    // A record that fails is not left half-written.
    parent.remove_child(point);
    throw;
  }
  return point;
}

void WriteTypeOverride(pugi::xml_document& document, pugi::xml_node element,
                       const ITypeOverride& type_override) {
  const std::string type_id = type_override.ITypeOverride_OverridingType();
  SetAttribute(element, "Type", type_id);
  // An override read from a profile names the kind itself ("Enum"); one made by a host may name
  // an enumeration type of the catalogue.
  if (type_id != "Enum" && internal::SnvtChildText(type_id, "TYPE") != "Enum") return;
  const auto set = type_override.ITypeOverride_States();
  if (!set) RaiseError(ErrorNumber::kObjectNotSet, "the enumeration override " + type_id + " has no states");
  pugi::xml_node states = mXML::AppendXmlElement(document, element, "States", mXML::kNoTextField);
  for (const auto& state : set->IStates_NewEnum()) {
    pugi::xml_node entry = mXML::AppendXmlElement(document, states, "State", mXML::kNoTextField);
    entry.append_attribute("Value").set_value(state->iState_Value());
    SetAttribute(entry, "Name", state->iState_Name());
  }
}

void WriteFieldOverrides(pugi::xml_document& document, pugi::xml_node parent, const IFields& fields,
                         const std::string& prefix) {
  pugi::xml_node list;  // "TypeOverride/Fields", made for the first overridden field
  for (const auto& field : fields.IFields_NewEnum()) {
    const auto overridable = std::dynamic_pointer_cast<IOverridableItem>(field);
    const auto type_override = overridable ? overridable->IOverridableItem_TypeOverride() : nullptr;
    if (type_override) {
      if (!list) {
        pugi::xml_node element =
            mXML::AppendXmlElement(document, parent, "TypeOverride", mXML::kNoTextField);
        SetAttribute(element, "Type", "Struct");
        list = mXML::AppendXmlElement(document, element, "Fields", mXML::kNoTextField);
      }
      pugi::xml_node entry = mXML::AppendXmlElement(document, list, "Field", mXML::kNoTextField);
      SetAttribute(entry, "Name", prefix + field->IField_Name());
      WriteTypeOverride(document, entry, *type_override);
    }
    if (const auto sub_fields = field->IField_Fields()) {
      WriteFieldOverrides(document, parent, *sub_fields, prefix + field->IField_Name() + ".");
    }
  }
}

}  // namespace kolvane::codec
