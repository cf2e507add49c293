#include "items/ItemCore.h"

#include "conversion/SNVTDataConversion.h"
#include "dialogs/EditDialog.h"
#include "dialogs/Form.h"
#include "fields/CFields.h"
#include "foundation/ConnectionCount.h"
#include "foundation/Error.h"
#include "types/CSNVTType.h"

namespace kolvane::internal {

ItemCore::~ItemCore() = default;

std::shared_ptr<ISNVType> ItemCore::IDisplayItem_SNVTType() const { return type_; }
std::shared_ptr<IFields> ItemCore::IDisplayItem_Fields() const { return fields_; }
std::shared_ptr<ISNVType> ItemCore::ISubItemConnable_SNVTType() const { return type_; }
std::shared_ptr<ISNVType> ItemCore::DataPointType() const { return type_; }
std::shared_ptr<IFields> ItemCore::DataPointFields() const { return fields_; }

void ItemCore::ISubItemConnable_IsConnected(bool value) {
  CountConnection(value, connection_count_, is_connected_);
}

TypeKind ItemCore::Kind() const { return type_ ? type_->Kind() : TypeKind::kUnknown; }

void ItemCore::LoadType(const std::string& id) {
  own_type_ = false;
  type_ = CSNVTType::Shared(id);
}

CSNVTType& ItemCore::OwnType() {
  if (!type_) RaiseError(ErrorNumber::kObjectNotSet, "the item has no type");
  if (!own_type_) {
    type_ = std::make_shared<CSNVTType>(*type_);
    own_type_ = true;
  }
  return *type_;
}

void ItemCore::SetTypeLength(int32_t length) {
  if (!type_) RaiseError(ErrorNumber::kObjectNotSet, "the item has no type");
  if (own_type_) {
    type_->SetLength(length);
  } else {
    type_ = CSNVTType::WithLength(type_, length);
  }
}

std::string ItemCore::RawText() const {
  if (fields_) return fields_->RawText();
  if (Kind() == TypeKind::kStruct) return "";
  if (!type_) RaiseError(ErrorNumber::kObjectNotSet, "the item has no type");
  return SNVTDataConversion::TypedValueToRaw(value_, *type_);
}

std::string ItemCore::CheckedRawText() const {
  if (fields_) return fields_->CheckedRawText();
  if (!type_) RaiseError(ErrorNumber::kObjectNotSet, "the item has no type");
  if (Kind() == TypeKind::kStruct) RaiseError(ErrorNumber::kObjectNotSet, "the structure has no fields");
  if (Kind() == TypeKind::kUnknown) {
    RaiseError(ErrorNumber::kObjectNotSet, "no type SNVT_" + type_->ISNVType_ID() + " in the catalogue");
  }
  // An empty text is a value (all blanks); an empty number is none.
  if (value_.empty() && Kind() != TypeKind::kTextual) return "";
  return SNVTDataConversion::CheckedValueToRaw(value_, *type_);
}

std::string ItemCore::InvalidRawText() const {
  if (fields_) return fields_->InvalidRawText();
  if (Kind() == TypeKind::kStruct) return "";
  if (!type_) RaiseError(ErrorNumber::kObjectNotSet, "the item has no type");
  return SNVTDataConversion::TypedValueToRaw(type_->ISNVType_InvalidValue(), *type_);
}

codec::ItemTexts ItemCore::Texts(std::shared_ptr<IUnitConverter> converter) const {
  return {value_, default_value_, minimum_, maximum_, type_, fields_, std::move(converter)};
}

std::shared_ptr<Form> ItemCore::EditDialogOfKind() const {
  if (!edit_dialog_) edit_dialog_ = MakeEditDialog(Kind());
  return edit_dialog_;
}

}  // namespace kolvane::internal
