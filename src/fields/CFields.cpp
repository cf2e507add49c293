#include "fields/CFields.h"

#include <limits>

#include "fields/CField.h"
#include "foundation/ContinueOnError.h"
#include "foundation/Error.h"
#include "foundation/HostServices.h"
#include "foundation/ItemLookup.h"
#include "foundation/Numbers.h"
#include "foundation/mXML.h"
#include "interfaces/IUtility.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"
#include "types/StructureDepth.h"

namespace kolvane {

namespace {

int32_t CheckedSum(int32_t a, int32_t b) {
  const int64_t sum = static_cast<int64_t>(a) + b;
  if (sum > std::numeric_limits<int32_t>::max() || sum < std::numeric_limits<int32_t>::min()) {
    RaiseError(ErrorNumber::kOverflow, "field lengths");
  }
  return static_cast<int32_t>(sum);
}

}  // namespace

int32_t CFields::IFields_Count() const { return items_.Count(); }

std::shared_ptr<IField> CFields::IFields_Item(const std::string& index) const {
  const auto* field = internal::FindByKeyOrPosition(items_, index);
  return field ? *field : nullptr;
}

std::vector<std::shared_ptr<IField>> CFields::IFields_NewEnum() const {
  return items_.Values<std::shared_ptr<IField>>();
}

int32_t CFields::IFields_Length() const {
  int32_t length = 0;
  for (const auto& entry : items_) {
    length = CheckedSum(length, entry.item->IField_SNVTType()->ISNVType_Length());
  }
  return length;
}

void CFields::SetParent(const std::shared_ptr<IUnknown>& owner) { parent_ = owner; }

std::shared_ptr<CField> CFields::BuildFromType(int32_t& position, const std::string& type_name,
                                               int32_t item_type, const std::string& value_text,
                                               bool warn) {
  const auto utility = CreateObjectAs<IUtility>("Moraface.Utility");
  const std::vector<std::string> values = utility->SplitFields(value_text);
  const std::shared_ptr<IUnknown> owner = parent_.lock();

  internal::StructureExpansion expansion(type_name);
  std::shared_ptr<CField> last;
  int32_t accumulated = 0;
  size_t i = 0;
  for (pugi::xml_node child : internal::FindSnvtChild(type_name, "Fields").children()) {
    if (child.type() != pugi::node_element) continue;
    expansion.CountField();
    auto field = std::make_shared<CField>();
    field->SetParent(owner);
    field->SetNodeType(item_type);
    field->SetName(std::string(mXML::BaseName(child)));
    field->SetWarnMissingDefault(warn);
    field->SetEndOffset(position);
    field->InitFromType(child.first_child().value());
    position = field->GetEndOffset();

    if (!value_text.empty()) {
      if (i >= values.size()) {
        RaiseError(ErrorNumber::kSubscriptOutOfRange,
                   "no value for field " + field->IField_Name() + " in \"" + value_text + "\"");
      }
      field->ProfileValue(values[i]);
    } else {
      field->ResetToDefault();
    }
    items_.Add(field->IField_Name(), field);
    field->SetIndex(items_.Count());
    field->SetOffset(CheckedSum(position, accumulated));
    if (field->Type()->Kind() != TypeKind::kStruct) {
      accumulated = CheckedSum(accumulated, field->IField_SNVTType()->ISNVType_Length());
    }
    last = field;
    ++i;
  }
  position = CheckedSum(position, accumulated);
  return last;
}

void CFields::SetGlobalKeys(const std::string& owner_key) {
  for (const auto& entry : items_) ContinueOnError([&] { entry.item->SetGlobalKey(owner_key); });
}

void CFields::SetParentKeys(const std::string& prefix) {
  for (const auto& entry : items_) entry.item->SetParentKey(prefix);
}

int32_t CFields::FirstOffset() const { return items_.ItemAt(1)->IField_Offset(); }

void CFields::LoadValuesFromXml(pugi::xml_node node) {
  for (const auto& entry : items_) entry.item->LoadValueFromXml(node);
}

void CFields::ExportToXml(pugi::xml_document& document, pugi::xml_node parent) {
  for (const auto& entry : items_) entry.item->ExportToXml(document, parent);
}

void CFields::SaveValuesToXml(pugi::xml_document& document, pugi::xml_node parent) {
  for (const auto& entry : items_) entry.item->SaveValueToXml(document, parent);
}

bool CFields::AnyConnected() const {
  bool connected = false;
  ContinueOnError([&] {
    for (int32_t i = 1; i <= IFields_Count() && !connected; ++i) {
      const auto field = IFields_Item(std::to_string(i));
      connected = field && field->IField_IsConnected();
    }
  });
  return connected;
}

std::string CFields::RawText() const {
  std::string raw;
  for (const auto& entry : items_) raw += entry.item->RawText();
  return raw;
}

std::string CFields::CheckedRawText() const {
  std::string raw;
  std::string empty;  // the first field without a value
  bool any = false;
  for (const auto& entry : items_) {
    std::string field_raw;
    try {
      field_raw = entry.item->CheckedRawText();
    } catch (const Error& error) {
      RaiseError(error.number(), entry.item->IField_Name() + ": " + error.detail());
    }
    if (field_raw.empty() && empty.empty()) empty = entry.item->IField_Name();
    any = any || !field_raw.empty();
    raw += field_raw;
  }
  if (!any) return "";
  if (!empty.empty()) RaiseError(ErrorNumber::kInvalidProcedureCall, empty + ": no value");
  return raw;
}

std::string CFields::InvalidRawText() const {
  std::string raw;
  for (const auto& entry : items_) raw += entry.item->InvalidRawText();
  return raw;
}

}  // namespace kolvane
