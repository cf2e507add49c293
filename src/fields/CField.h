#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <pugixml.hpp>

#include "conversion/ValueCodec.h"
#include "dialogs/Form.h"
#include "interfaces/IField.h"
#include "items/ItemCore.h"

namespace kolvane {

class CFields;
class CSNVTType;

// One named field of a structured value. Built by CFields from the type catalogue; its owner is
// a network variable, a configuration property or a structure field.
class CField final : public IField,
                     public internal::ItemCore,
                     public std::enable_shared_from_this<CField> {
 public:
  CField();
  ~CField() override;

  // IField
  std::string IField_Name() const override;
  int32_t IField_Index() const override;
  int32_t IField_Offset() const override;
  std::shared_ptr<IUnknown> IField_Parent() const override;
  std::shared_ptr<ISNVType> IField_SNVTType() const override;
  std::shared_ptr<IFields> IField_Fields() const override;
  std::string IField_GlobalKey() const override;
  std::string IField_ExtendedKey() const override;
  int32_t IField_NodeType() const override;
  bool IField_IsConnected() const override;
  void IField_IsDisplayUsable(bool value) override;
  std::string IField_RefValue() const override;
  void IField_RefValue(const std::string& value) override;
  void IField_Load() override;
  void IField_Save() override;
  void IField_Import() override;
  void IField_Export() override;
  void IField_SetValue() override;
  std::string IField_Value() const override;
  void IField_Value(const std::string& value) override;
  std::string IField_DefaultValue() const override;
  std::string IField_DispValue() const override;
  std::string IField_DispDefault() const override;
  std::string IField_DispMin() const override;
  std::string IField_DispMax() const override;

  // IDisplayItem members of a field's own
  std::string IDisplayItem_Key() const override;
  int32_t IDisplayItem_ItemType() const override;
  bool IDisplayItem_IsWritable() const override;
  bool IDisplayItem_IsConnected() const override;
  bool IDisplayItem_IsDisplayable() const override;

  // ISubItemConnable
  int32_t ISubItemConnable_ItemType() const override;

  // The units converter of the owner at the top; nullptr for an owner that has none.
  std::shared_ptr<IUnitConverter> UnitsManager() const override;
  // The owner's flag, passed on to sub-fields.
  bool FieldDefaultsFlag() const override;

  // Sets the default value text and the value to it.
  void DefaultValue(const std::string& value);
  // Sets the value text only (as read from a profile).
  void ProfileValue(const std::string& value);
  // Sets the value to the default the "Moraface.Utility" component gives for the type.
  void ResetToDefault();

  // Builder steps, in the order CFields calls them.
  void SetParent(const std::shared_ptr<IUnknown>& owner);
  void SetNodeType(int32_t node_type);
  void SetName(const std::string& name);
  void SetWarnMissingDefault(bool warn);
  void SetEndOffset(int32_t position);
  int32_t GetEndOffset() const;
  // Loads the type by name, takes its default and, for a structure, builds the sub-fields.
  // Errors are swallowed step by step.
  void InitFromType(const std::string& type_name);
  void SetIndex(int32_t index);
  void SetOffset(int32_t offset);

  // Global key: owner_key + "\" + name, handed down to sub-fields.
  void SetGlobalKey(const std::string& owner_key);
  // Display key prefix (the owner's key), handed down to sub-fields as prefix + "." + name.
  void SetParentKey(const std::string& prefix);

  // Reads the value from the last child of node named as the field (errors ignored).
  void LoadValueFromXml(pugi::xml_node node);
  // Writes name/Default/Min/Max under parent (a structure: nested elements).
  void ExportToXml(pugi::xml_document& document, pugi::xml_node parent);
  // Writes name/Value/Min/Max under parent, reusing a structure's existing element.
  void SaveValueToXml(pugi::xml_document& document, pugi::xml_node parent);
  // Raw hexadecimal text of the value (a structure: its sub-fields' joined).
  using ItemCore::RawText;
  // Raw hexadecimal text of the type's invalid value.
  using ItemCore::InvalidRawText;

  // The dialog that edits the field, made for its kind when first asked for; nullptr for an
  // unknown kind.
  std::shared_ptr<Form> EditDialog() const { return EditDialogOfKind(); }

  // internal::DataPointItem
  std::string DataPointValue() override { return IField_Value(); }
  void DataPointValue(const std::string& value) override { IField_Value(value); }

 private:
  // The members the shared display rules read.
  codec::ItemTexts FieldTexts() const;
  void ApplyMissingDefault(const std::string& replacement);
  // Number of enclosing structure fields.
  int Depth() const;
  // True when an enclosing structure field, or the item at the top, expands type_name.
  bool OnOwnPath(const std::string& type_name) const;
  // The network variable or configuration property at the top of the owner chain.
  std::shared_ptr<IUnknown> TopOwner() const;

  int32_t index_ = 0;
  int32_t offset_ = 0;
  int32_t end_offset_ = 0;
  int32_t node_type_ = 0;
  std::weak_ptr<IUnknown> parent_;
  std::weak_ptr<internal::FieldOwner> field_owner_;  // parent_, as the owner of fields
  std::weak_ptr<IDisplayItem> parent_display_;        // parent_, as a display item
  bool warn_missing_default_ = false;
  bool is_display_usable_ = false;
  std::string parent_key_;
};

}  // namespace kolvane
