#include "ProfileItems.h"

#include <algorithm>
#include <sstream>

#include "conversion/SNVTDataConversion.h"
#include "foundation/ContinueOnError.h"
#include "foundation/Numbers.h"
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

std::string TypeIdOf(const ItemRef& item) { return item.type ? item.type->ISNVType_ID() : ""; }

std::vector<ItemRef> FieldsOf(const ItemRef& item) {
  std::vector<ItemRef> fields;
  if (!item.fields) return fields;
  for (const auto& field : item.fields->IFields_NewEnum()) {
    fields.push_back({item.path + "." + field->IField_Name(), "field", field,
                      field->IField_SNVTType(), field->IField_Fields()});
  }
  return fields;
}

std::vector<ItemRef> LeavesOf(const ItemRef& item) {
  if (!item.fields) return {item};
  std::vector<ItemRef> leaves;
  for (const ItemRef& field : FieldsOf(item)) {
    for (ItemRef& leaf : LeavesOf(field)) leaves.push_back(std::move(leaf));
  }
  return leaves;
}

RawBytes RawBytesOf(const ItemRef& item) { return CheckedRawBytes(item.object); }

std::string RawColumnOf(const RawBytes& bytes) {
  return bytes.problem.empty() ? bytes.raw : "! " + bytes.problem;
}

std::string RawColumnOf(const ItemRef& item) { return RawColumnOf(RawBytesOf(item)); }

namespace {

// Whether a leaf, or any leaf below a structure, holds a text read by text_of. A structure's own
// value getter is not called: it writes the fields.
bool HasLeafText(const ItemRef& item, std::string (*text_of)(const ItemRef&)) {
  const auto leaves = LeavesOf(item);
  return std::any_of(leaves.begin(), leaves.end(),
                     [&](const ItemRef& leaf) { return !text_of(leaf).empty(); });
}

}  // namespace

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
  // An item without a value shows none, not its unit alone; a structure none when no field has
  // one ("{ % % }" says nothing).
  ContinueOnError([&] {
    if (item.fields) {
      if (!HasLeafText(item, LeafValueOf)) texts[0].clear();
      // A property keeps its structure's default whole ("{ 0 0 }"), a variable's fields their own.
      const auto cp = std::dynamic_pointer_cast<IConfigProperty>(item.object);
      const bool whole = cp && cp->IConfigProperty_DefaultValue().find_first_not_of("{} ") != std::string::npos;
      if (!whole && !HasLeafText(item, LeafDefaultOf)) texts[1].clear();
      return;
    }
    const std::string value = LeafValueOf(item);
    const std::string default_value = LeafDefaultOf(item);
    const std::string kind = item.type ? item.type->ISNVType_GenType() : "";
    const std::string stored[2] = {value, default_value};
    for (size_t i = 0; i < 2; ++i) {
      if (kind == "Enum") {
        // A state by its name, whether held as a number or as the dialog writes it, "(2,NAME)".
        const std::string name =
            SNVTDataConversion::StateNameOf(stored[i], item.type->ISNVType_EnumDesc());
        if (!name.empty()) texts[i] = name;
      } else if (IsNumberType(item.type.get())) {
        // No bare unit for no value, and no unit after a text that is no number.
        if (stored[i].empty()) {
          texts[i].clear();
        } else if (stored[i] != "Invalid" && !IsNumberText(stored[i]) && !IsNumberText(stored[i], ',')) {
          texts[i] = stored[i];
        }
      }
    }
  });
  return texts;
}

std::string LeafValueOf(const ItemRef& item) {
  if (auto nv = std::dynamic_pointer_cast<INetworkVariable>(item.object)) return nv->INetworkVariable_Value();
  if (auto cp = std::dynamic_pointer_cast<IConfigProperty>(item.object)) return cp->IConfigProperty_Value();
  if (auto field = std::dynamic_pointer_cast<IField>(item.object)) return field->IField_Value();
  return "";
}

std::string LeafDefaultOf(const ItemRef& item) {
  if (auto nv = std::dynamic_pointer_cast<INetworkVariable>(item.object)) return nv->INetworkVariable_DefaultValue();
  if (auto cp = std::dynamic_pointer_cast<IConfigProperty>(item.object)) return cp->IConfigProperty_DefaultValue();
  if (auto field = std::dynamic_pointer_cast<IField>(item.object)) return field->IField_DefaultValue();
  return "";
}

std::string FindingLine(const Finding& finding) {
  return (finding.error ? "error: " : "warning: ") + finding.path + ": " + finding.text + " [" +
         finding.code + "]";
}

bool IsNumberType(const ISNVType* type) {
  if (!type) return false;
  const std::string kind = type->ISNVType_GenType();
  return kind == "SignedNumeric" || kind == "UnsignedNumeric" || kind == "Float";
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

namespace {
constexpr const char* kOptionNames[] = {"SendOnDelta", "RcvHrtBtEnable"};
}  // namespace

std::string ValuesDocumentTextUnchanged(IProfile& profile, bool interoperability) {
  // The fields' values: a structure's own value is made of them.
  std::vector<std::pair<std::shared_ptr<IField>, std::string>> held;
  for (const ItemRef& item : TopItems(profile)) {
    for (const ItemRef& leaf : LeavesOf(item)) {
      if (const auto field = std::dynamic_pointer_cast<IField>(leaf.object)) {
        held.emplace_back(field, field->IField_Value());
      }
    }
  }
  const std::string text = ValuesDocumentText(profile, interoperability);
  for (const auto& [leaf, value] : held) {
    if (leaf->IField_Value() != value) leaf->IField_Value(value);
  }
  return text;
}

Options NetworkVariableOptions(const IProfile& profile) {
  Options options;
  for (const auto& nv : profile.IProfile_NVs()->INetworkVariables_NewEnum()) {
    options[nv->INetworkVariable_Name()] = kolvane::NetworkVariableOptions(nv);
  }
  return options;
}

void StoreOptions(const Options& options, pugi::xml_document& document) {
  for (pugi::xml_node item : document.child("Profile").child("NVs").children()) {
    const auto own = options.find(item.name());
    for (const char* name : kOptionNames) {
      const bool present = own != options.end() && own->second.count(name) > 0;
      if (!present) {
        item.remove_attribute(name);
        continue;
      }
      pugi::xml_attribute attribute = item.attribute(name);
      if (!attribute) attribute = item.append_attribute(name);
      attribute.set_value(own->second.at(name).c_str());
    }
  }
}

void SetValueOf(const ItemRef& item, const std::string& value) {
  if (auto nv = std::dynamic_pointer_cast<INetworkVariable>(item.object)) {
    nv->INetworkVariable_Value(value);
    // A structure's fields take the text when its value is read.
    if (item.fields) nv->INetworkVariable_Value();
  } else if (auto cp = std::dynamic_pointer_cast<IConfigProperty>(item.object)) {
    cp->IConfigProperty_Value(value);
  } else if (auto field = std::dynamic_pointer_cast<IField>(item.object)) {
    field->IField_Value(value);
    // A network variable's fields take their values from its value text whenever that is
    // read (saving reads it): join the fields into it, as the structure dialog does.
    std::shared_ptr<IUnknown> owner = field->IField_Parent();
    while (auto enclosing = std::dynamic_pointer_cast<IField>(owner)) {
      owner = enclosing->IField_Parent();
    }
    if (auto nv = std::dynamic_pointer_cast<INetworkVariable>(owner)) {
      std::string joined;
      for (const auto& sibling : nv->INetworkVariable_Fields()->IFields_NewEnum()) {
        joined += (joined.empty() ? "" : " ") + sibling->IField_Value();
      }
      nv->INetworkVariable_Value(joined);
    }
  }
}


namespace {

// Sets a property's structure from its brace text, field by field (nested ones too).
void SetStructureText(const ItemRef& item, const std::string& text) {
  const auto utility = CreateObjectAs<IUtility>("Moraface.Utility");
  const std::vector<std::string> parts = utility->SplitFields(text);
  const std::vector<ItemRef> fields = FieldsOf(item);
  for (size_t i = 0; i < fields.size() && i < parts.size(); ++i) {
    if (fields[i].fields) {
      SetStructureText(fields[i], parts[i]);
    } else if (auto field = std::dynamic_pointer_cast<IField>(fields[i].object)) {
      field->IField_Value(parts[i]);
    }
  }
}

}  // namespace

std::vector<std::string> ApplyValues(const IProfile& profile, const pugi::xml_document& values) {
  std::vector<std::string> notes;
  const std::vector<ItemRef> items = TopItems(profile);
  const auto key_of = [](const ItemRef& item) -> std::string {
    if (auto nv = std::dynamic_pointer_cast<INetworkVariable>(item.object)) return nv->INetworkVariable_PointKey();
    if (auto cp = std::dynamic_pointer_cast<IConfigProperty>(item.object)) return cp->IConfigProperty_PointKey();
    return "";
  };
  for (const pugi::xpath_node found : values.select_nodes("//ApplicationProfile/ApPoint")) {
    const pugi::xml_node point = found.node();
    const std::string key = point.attribute("Key").value();
    const std::string name = point.attribute("Name").value();
    // By point key, then by name.
    const ItemRef* target = nullptr;
    for (const ItemRef& item : items) {
      if (!key.empty() && key_of(item) == key) target = &item;
    }
    for (const ItemRef& item : items) {
      if (!target && item.path == name) target = &item;
    }
    if (!target) {
      notes.push_back(name + (key.empty() ? "" : " (" + key + ")") + ": no such item in the profile");
      continue;
    }
    const std::string value = point.attribute("Value").value();
    if (value.empty()) continue;  // a point without a value leaves the item
    ContinueOnError([&] {
      if (target->fields && std::dynamic_pointer_cast<IConfigProperty>(target->object)) {
        SetStructureText(*target, value);
      } else {
        SetValueOf(*target, value);
      }
    });
  }
  return notes;
}

}  // namespace kolvane::app
