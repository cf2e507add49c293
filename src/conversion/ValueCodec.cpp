#include "conversion/ValueCodec.h"

#include "conversion/SNVTDataConversion.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/Numbers.h"
#include "foundation/Text.h"
#include "foundation/mXML.h"
#include "types/SnvtCatalogue.h"

namespace kolvane::codec {

namespace {

using SNVTDataConversion::LocalizeNumber;

const ISNVType& TypeOf(const ItemTexts& item) {
  if (!item.type) RaiseError(ErrorNumber::kObjectNotSet, "the item has no type");
  return *item.type;
}

IUnitConverter& ConverterOf(const ItemTexts& item) {
  if (!item.converter) RaiseError(ErrorNumber::kObjectNotSet, "the item has no units converter");
  return *item.converter;
}

const IFields& FieldsOf(const ItemTexts& item) {
  if (!item.fields) RaiseError(ErrorNumber::kObjectNotSet, "the structure has no fields");
  return *item.fields;
}

std::string Trimmed(const std::string& text) { return std::string(TrimBlanks(text)); }

std::string TrimmedStructure(const ItemTexts& item, const FieldText& text) {
  return Trimmed(StructureText(FieldsOf(item), text));
}

void SetAttribute(pugi::xml_node element, const char* name, const std::string& value) {
  element.append_attribute(name).set_value(value.c_str());
}

}  // namespace

bool IsNumericKind(const std::string& kind) {
  return kind == "Float" || kind == "SignedNumeric" || kind == "UnsignedNumeric";
}

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

std::string PlainValue(const ItemTexts& item) {
  const std::string kind = TypeOf(item).ISNVType_GenType();
  if (kind == "Enum") return item.value;
  if (IsNumericKind(kind)) return LocalizeNumber(item.value);
  if (kind == "Struct") {
    return TrimmedStructure(item, [](const IField& field) { return field.IField_Value(); });
  }
  return Trimmed(LocalizeNumber(item.value));
}

std::string DisplayValue(const ItemTexts& item) {
  const ISNVType& type = TypeOf(item);
  const std::string kind = type.ISNVType_GenType();
  if (kind == "Enum") return item.value;
  if (IsNumericKind(kind)) {
    if (item.value == "Invalid") return "Invalid";
    return NumberInDisplayUnits(ConverterOf(item), type.ISNVType_ID(), item.value);
  }
  if (kind == "Struct") {
    return TrimmedStructure(item, [](const IField& field) { return field.IField_DispValue(); });
  }
  return Trimmed(LocalizeNumber(item.value));
}

std::string DisplayDefault(const ItemTexts& item) {
  const ISNVType& type = TypeOf(item);
  const std::string kind = type.ISNVType_GenType();
  if (kind == "Enum") {
    return SNVTDataConversion::EnumStateName(LocalizeNumber(item.default_value),
                                             type.ISNVType_EnumDesc());
  }
  if (IsNumericKind(kind)) return NumberInTypeUnits(type, item.default_value);
  if (kind == "Struct") {
    return TrimmedStructure(item, [](const IField& field) { return field.IField_DispDefault(); });
  }
  return Trimmed(LocalizeNumber(item.default_value));
}

std::string DisplayLimit(const ItemTexts& item, bool maximum) {
  const ISNVType& type = TypeOf(item);
  const std::string kind = type.ISNVType_GenType();
  if (IsNumericKind(kind))
    return LimitInDisplayUnits(ConverterOf(item), type.ISNVType_ID(), maximum);
  if (kind == "Struct") {
    return TrimmedStructure(item, [maximum](const IField& field) {
      return maximum ? field.IField_DispMax() : field.IField_DispMin();
    });
  }
  return Trimmed(LocalizeNumber(maximum ? item.maximum : item.minimum));
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
