#include "ProfileItems.h"

#include <sstream>

#include "foundation/ContinueOnError.h"
#include "foundation/Text.h"

namespace kolvane::app {

std::vector<ItemRef> TopItems(const IProfile& profile) {
  std::vector<ItemRef> items;
  for (const auto& nv : profile.IProfile_NVs()->INetworkVariables_NewEnum()) {
    items.push_back({nv->INetworkVariable_Name(),
                     nv->INetworkVariable_Direction() == 0 ? "in" : "out", nv,
                     nv->INetworkVariable_SNVTType(), nv->INetworkVariable_Fields()});
  }
  for (const auto& cp : profile.IProfile_CPs()->IConfigProperties_NewEnum()) {
    items.push_back({cp->IConfigProperty_Name(), "cp", cp, cp->IConfigProperty_SNVTType(),
                     cp->IConfigProperty_Fields()});
  }
  return items;
}

std::vector<ItemRef> FieldsOf(const ItemRef& item) {
  std::vector<ItemRef> fields;
  if (!item.fields) return fields;
  for (const auto& field : item.fields->IFields_NewEnum()) {
    fields.push_back({item.path + "." + field->IField_Name(), "field", field,
                      field->IField_SNVTType(), field->IField_Fields()});
  }
  return fields;
}

RawBytes RawBytesOf(const ItemRef& item) { return CheckedRawBytes(item.object); }

std::string RawColumnOf(const ItemRef& item) {
  const RawBytes bytes = RawBytesOf(item);
  return bytes.problem.empty() ? bytes.raw : "! " + bytes.problem;
}

std::vector<std::string> DisplayOf(const ItemRef& item) {
  std::vector<std::string> texts(4);
  ContinueOnError([&] {
    if (auto nv = std::dynamic_pointer_cast<INetworkVariable>(item.object)) {
      texts = {nv->INetworkVariable_DispValue(), nv->INetworkVariable_DispDefault(),
               nv->INetworkVariable_DispMin(), nv->INetworkVariable_DispMax()};
    } else if (auto cp = std::dynamic_pointer_cast<IConfigProperty>(item.object)) {
      texts = {cp->IConfigProperty_DispValue(), cp->IConfigProperty_DispDefault(),
               cp->IConfigProperty_DispMin(), cp->IConfigProperty_DispMax()};
    } else if (auto field = std::dynamic_pointer_cast<IField>(item.object)) {
      texts = {field->IField_DispValue(), field->IField_DispDefault(), field->IField_DispMin(),
               field->IField_DispMax()};
    }
  });
  for (std::string& text : texts) text = std::string(TrimBlanks(text));
  // An item without a value shows none, not its unit alone.
  ContinueOnError([&] {
    std::string value = "x";
    std::string default_value = "x";
    if (item.fields) return;
    if (auto nv = std::dynamic_pointer_cast<INetworkVariable>(item.object)) {
      value = nv->INetworkVariable_Value();
      default_value = nv->INetworkVariable_DefaultValue();
    } else if (auto cp = std::dynamic_pointer_cast<IConfigProperty>(item.object)) {
      value = cp->IConfigProperty_Value();
      default_value = cp->IConfigProperty_DefaultValue();
    } else if (auto field = std::dynamic_pointer_cast<IField>(item.object)) {
      value = field->IField_Value();
      default_value = field->IField_DefaultValue();
    }
    // Only numbers: their texts would be a bare unit.
    const std::string kind = item.type ? item.type->ISNVType_GenType() : "";
    if (kind != "SignedNumeric" && kind != "UnsignedNumeric" && kind != "Float") return;
    if (value.empty()) texts[0].clear();
    if (default_value.empty()) texts[1].clear();
  });
  return texts;
}

std::string LimitsOf(const ItemRef& item, const std::vector<std::string>& display) {
  if (item.fields || display.size() < 4 || (display[2].empty() && display[3].empty())) return "";
  return display[2] + " .. " + display[3];
}

std::string ValuesDocumentText(IProfile& profile, bool interoperability) {
  pugi::xml_document values;
  if (interoperability) {
    profile.Iprofile_SaveValueForInteroperability(values, values);
  } else {
    profile.Iprofile_XmlSaveValue(values, values);
  }
  std::ostringstream text;
  values.save(text, "  ", pugi::format_default, pugi::encoding_utf8);
  return text.str();
}

}  // namespace kolvane::app
