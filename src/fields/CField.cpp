#include "fields/CField.h"

#include "conversion/SNVTDataConversion.h"
#include "conversion/ValueCodec.h"
#include "dialogs/EditDialog.h"
#include "fields/CFields.h"
#include "foundation/ConnectionCount.h"
#include "foundation/ContinueOnError.h"
#include "foundation/Error.h"
#include "foundation/HostServices.h"
#include "foundation/Numbers.h"
#include "foundation/Text.h"
#include "foundation/mXML.h"
#include "interfaces/IUtility.h"
#include "types/CSNVTType.h"
#include "types/StructureDepth.h"

namespace kolvane {

namespace {

constexpr codec::Holder kField = codec::Holder::kField;
// The node type of the fields of a structure field.
constexpr int32_t kNestedNodeType = 5;

int32_t ConnectableItemType(const std::shared_ptr<IUnknown>& item) {
  const auto connectable = std::dynamic_pointer_cast<ISubItemConnable>(item);
  if (!connectable) RaiseError(ErrorNumber::kTypeMismatch, "the owner takes no connections");
  return connectable->ISubItemConnable_ItemType();
}

// A display member whose conversion fails shows nothing.
template <class Text>
std::string Displayed(Text&& text) {
  std::string result;
  if (ContinueOnError([&] { result = text(); }) != 0) return "";
  return result;
}

}  // namespace

CField::CField() = default;
CField::~CField() = default;

std::string CField::IField_Name() const { return name_; }
int32_t CField::IField_Index() const { return index_; }

int32_t CField::IField_Offset() const {
  if (Kind() == TypeKind::kStruct && fields_ && fields_->IFields_Count() > 0) {
    return fields_->FirstOffset();
  }
  return offset_;
}

std::shared_ptr<IUnknown> CField::IField_Parent() const { return parent_.lock(); }
std::shared_ptr<ISNVType> CField::IField_SNVTType() const { return type_; }
std::shared_ptr<IFields> CField::IField_Fields() const { return fields_; }
std::string CField::IField_GlobalKey() const { return global_key_; }
std::string CField::IField_ExtendedKey() const { return global_key_; }
int32_t CField::IField_NodeType() const { return node_type_; }
bool CField::IField_IsConnected() const { return is_connected_; }
void CField::IField_IsDisplayUsable(bool value) { is_display_usable_ = value; }
std::string CField::IField_RefValue() const { return ref_value_; }
void CField::IField_RefValue(const std::string& value) { ref_value_ = value; }
void CField::IField_Load() {}
void CField::IField_Save() {}
void CField::IField_Import() {}
void CField::IField_Export() {}
void CField::IField_SetValue() {}

// The plain text needs no converter.
std::string CField::IField_Value() const { return codec::PlainValue(Texts(nullptr), kField); }

void CField::IField_Value(const std::string& value) { value_ = value; }

std::string CField::IField_DefaultValue() const {
  const auto converter = UnitsManager();
  if (!converter) RaiseError(ErrorNumber::kObjectNotSet, "the field's owner has no converter");
  return converter->DefaultValue(type_ ? type_->ISNVType_ID() : "");
}

std::string CField::IField_DispValue() const {
  return Displayed([&] { return codec::DisplayValue(FieldTexts(), kField); });
}

std::string CField::IField_DispDefault() const {
  return Displayed([&] { return codec::DisplayDefault(FieldTexts(), kField); });
}

std::string CField::IField_DispMin() const {
  return Displayed([&] { return codec::DisplayLimit(FieldTexts(), false, kField); });
}

std::string CField::IField_DispMax() const {
  return Displayed([&] { return codec::DisplayLimit(FieldTexts(), true, kField); });
}

std::string CField::IDisplayItem_Key() const { return parent_key_ + "." + name_; }

int32_t CField::IDisplayItem_ItemType() const {
  int32_t result = 0;
  ContinueOnError([&] {
    std::shared_ptr<IUnknown> owner = parent_.lock();
    for (int step = 0; owner && step <= kMaxStructureDepth; ++step) {
      const int32_t code = ConnectableItemType(owner);
      if (code == internal::kVariableItem) {
        const auto flagged = std::dynamic_pointer_cast<internal::FieldOwner>(owner);
        result = flagged && flagged->FieldDefaultsFlag() ? internal::kAssumedVariableField
                                                         : internal::kVariableField;
        return;
      }
      if (code == internal::kPropertyItem) {
        result = internal::kPropertyField;
        return;
      }
      const auto field = std::dynamic_pointer_cast<IField>(owner);
      if (!field) return;
      owner = field->IField_Parent();
    }
  });
  return result;
}


bool CField::IDisplayItem_IsWritable() const {
  const int32_t type = IDisplayItem_ItemType();
  return type == internal::kPropertyField || type == internal::kVariableField;
}

bool CField::IDisplayItem_IsConnected() const { return false; }

bool CField::IDisplayItem_IsDisplayable() const {
  // Listed when the host allows it, the field belongs to a listed item kind and the network
  // variable or configuration property at the top is listed itself.
  if (!is_display_usable_) return false;
  const int32_t type = IDisplayItem_ItemType();
  if (type != internal::kPropertyField && type != internal::kVariableField &&
      type != internal::kAssumedVariableField) {
    return false;
  }
  const auto top = std::dynamic_pointer_cast<IDisplayItem>(TopOwner());
  return !top || top->IDisplayItem_IsDisplayable();
}

int32_t CField::ISubItemConnable_ItemType() const { return node_type_; }

std::shared_ptr<IUnitConverter> CField::UnitsManager() const {
  const auto owner = field_owner_.lock();
  return owner ? owner->UnitsManager() : nullptr;
}

bool CField::FieldDefaultsFlag() const {
  const auto owner = field_owner_.lock();
  return owner && owner->FieldDefaultsFlag();
}

void CField::DefaultValue(const std::string& value) {
  default_value_ = value;
  value_ = value;
}

void CField::ProfileValue(const std::string& value) { value_ = value; }

void CField::ResetToDefault() {
  const auto utility = CreateObjectAs<IUtility>("Moraface.Utility");
  value_ = utility->DefaultValue(type_);
}

void CField::SetParent(const std::shared_ptr<IUnknown>& owner) {
  // The owner's other interfaces are looked up once, not on every use.
  if (owner != parent_.lock()) {
    parent_ = owner;
    field_owner_ = std::dynamic_pointer_cast<internal::FieldOwner>(owner);
    parent_display_ = std::dynamic_pointer_cast<IDisplayItem>(owner);
  }
  if (const auto display = parent_display_.lock()) parent_key_ = display->IDisplayItem_Key();
}

void CField::SetNodeType(int32_t node_type) { node_type_ = node_type; }
void CField::SetName(const std::string& name) { name_ = name; }
void CField::SetWarnMissingDefault(bool warn) { warn_missing_default_ = warn; }
void CField::SetEndOffset(int32_t position) { end_offset_ = position; }
int32_t CField::GetEndOffset() const { return end_offset_; }
void CField::SetIndex(int32_t index) { index_ = index; }
void CField::SetOffset(int32_t offset) { offset_ = offset; }

void CField::InitFromType(const std::string& type_name) {
  ContinueOnError([&] { LoadType(type_name); });
  const TypeKind kind = Kind();
  switch (kind) {
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kFloat:
    case TypeKind::kBitfield:
    case TypeKind::kEnum:
    case TypeKind::kTextual:
      ContinueOnError([&] {
        const auto converter = UnitsManager();
        if (!converter) RaiseError(ErrorNumber::kObjectNotSet, "no units converter");
        DefaultValue(converter->DefaultValue(type_name));
      });
      ContinueOnError([&] {
        if (default_value_.empty()) ApplyMissingDefault(AssumedDefault(kind));
      });
      value_ = default_value_;
      return;
    case TypeKind::kStruct:
      break;
    case TypeKind::kUnknown:
      return;
  }
  ContinueOnError([&] {
    fields_ = std::make_shared<CFields>();
    fields_->SetParent(shared_from_this());
    // A type met again on its own nesting path stops there, as does a nesting too deep.
    if (OnOwnPath(type_->ISNVType_Name())) {
      RaiseError(ErrorNumber::kOutOfStackSpace, "SNVT_" + type_name + " contains itself");
    }
    if (Depth() >= kMaxStructureDepth) internal::StructureExpansion::TooDeep();
    fields_->BuildFromType(end_offset_, type_->ISNVType_Name(), kNestedNodeType, value_,
                           warn_missing_default_);
  });
  ContinueOnError([&] { SetTypeLength(fields_->IFields_Length()); });
  default_value_ = value_;
}

void CField::SetGlobalKey(const std::string& owner_key) {
  global_key_ = owner_key + "\\" + name_;
  if (fields_) fields_->SetGlobalKeys(global_key_);
}

void CField::SetParentKey(const std::string& prefix) {
  parent_key_ = prefix;
  if (fields_) fields_->SetParentKeys(prefix + "." + name_);
}

void CField::LoadValueFromXml(pugi::xml_node node) {
  ContinueOnError([&] {
    pugi::xml_node found;
    for (pugi::xml_node child : node.children()) {
      if (child.type() == pugi::node_element && mXML::BaseName(child) == name_) found = child;
    }
    if (!found) return;
    if (Kind() == TypeKind::kStruct) {
      if (fields_) fields_->LoadValuesFromXml(found);
      return;
    }
    for (pugi::xml_node child : found.children()) {
      if (child.type() != pugi::node_element || ToUpper(mXML::BaseName(child)) != "VALUE") {
        continue;
      }
      if (!child.first_child()) continue;  // a child without text leaves the value
      const std::string text = child.first_child().value();
      value_ = Kind() == TypeKind::kTextual ? text : SNVTDataConversion::NormalizeDecimal(text);
    }
  });
}

void CField::ExportToXml(pugi::xml_document& document, pugi::xml_node parent) {
  pugi::xml_node element = mXML::AppendXmlElement(document, parent, name_, mXML::kNoTextField);
  if (Kind() == TypeKind::kStruct) {
    if (fields_) fields_->ExportToXml(document, element);
    return;
  }
  mXML::AppendXmlElement(document, element, "Default", value_);
  if (!type_->ISNVType_Min().empty()) {
    mXML::AppendXmlElement(document, element, "Min", type_->ISNVType_Min());
  }
  if (!type_->ISNVType_Max().empty()) {
    mXML::AppendXmlElement(document, element, "Max", type_->ISNVType_Max());
  }
}

void CField::SaveValueToXml(pugi::xml_document& document, pugi::xml_node parent) {
  if (Kind() == TypeKind::kStruct) {
    pugi::xml_node element;
    for (pugi::xml_node child : parent.children()) {
      if (child.type() == pugi::node_element && mXML::BaseName(child) == name_) {
        element = child;
        break;
      }
    }
    if (!element) element = mXML::AppendXmlElement(document, parent, name_, mXML::kNoTextField);
    if (fields_) fields_->SaveValuesToXml(document, element);
    return;
  }
  pugi::xml_node element = mXML::AppendXmlElement(document, parent, name_, mXML::kNoTextField);
  mXML::AppendXmlElement(document, element, "Value", value_);
  if (!type_->ISNVType_Min().empty()) {
    mXML::AppendXmlElement(document, element, "Min", type_->ISNVType_Min());
  }
  if (!type_->ISNVType_Max().empty()) {
    mXML::AppendXmlElement(document, element, "Max", type_->ISNVType_Max());
  }
}

codec::ItemTexts CField::FieldTexts() const { return Texts(UnitsManager()); }

void CField::ApplyMissingDefault(const std::string& replacement) {
  std::string path = name_;
  std::shared_ptr<IUnknown> owner = parent_.lock();
  for (int step = 0; step <= kMaxStructureDepth; ++step) {
    const auto field = std::dynamic_pointer_cast<IField>(owner);
    if (!field) break;
    path = field->IField_Name() + "." + path;
    owner = field->IField_Parent();
  }
  const auto connectable = std::dynamic_pointer_cast<ISubItemConnable>(owner);
  if (!connectable) return;
  const int32_t owner_type = connectable->ISubItemConnable_ItemType();
  if (owner_type == internal::kVariableItem) {
    const auto flagged = std::dynamic_pointer_cast<internal::FieldOwner>(owner);
    if (!flagged || !flagged->FieldDefaultsFlag()) return;
  } else if (owner_type != internal::kPropertyItem) {
    return;
  }
  default_value_ = replacement;
  if (warn_missing_default_) {
    MsgBox(connectable->ISubItemConnable_Name() + "." + path +
               ": Default value not defined into the XML file of the profile; " + replacement +
               " assumed.",
           vbCritical + vbOKOnly, "Warning");
  }
}

int CField::Depth() const {
  int depth = 0;
  for (auto owner = std::dynamic_pointer_cast<CField>(parent_.lock()); owner;
       owner = std::dynamic_pointer_cast<CField>(owner->parent_.lock())) {
    ++depth;
  }
  return depth;
}

bool CField::OnOwnPath(const std::string& type_name) const {
  std::shared_ptr<IUnknown> owner = parent_.lock();
  for (auto field = std::dynamic_pointer_cast<CField>(owner); field;
       field = std::dynamic_pointer_cast<CField>(owner)) {
    if (field->type_ && field->type_->ISNVType_Name() == type_name) return true;
    owner = field->parent_.lock();
  }
  // The item at the top expands its type by identifier.
  const auto item = std::dynamic_pointer_cast<ISubItemConnable>(owner);
  const auto type = item ? item->ISubItemConnable_SNVTType() : nullptr;
  return type && type->ISNVType_ID() == type_name;
}

std::shared_ptr<IUnknown> CField::TopOwner() const {
  std::shared_ptr<IUnknown> owner = parent_.lock();
  while (const auto field = std::dynamic_pointer_cast<CField>(owner)) owner = field->parent_.lock();
  return owner;
}

}  // namespace kolvane
