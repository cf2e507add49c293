#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <pugixml.hpp>

#include "dialogs/DataPoint.h"
#include "dialogs/Form.h"
#include "fields/FieldOwner.h"
#include "interfaces/IDisplayItem.h"
#include "interfaces/IField.h"
#include "interfaces/IOverridableItem.h"
#include "interfaces/ISubItemConnable.h"

namespace kolvane {

class CFields;
class CSNVTType;

// One named field of a structured value. Built by CFields from the type catalogue; its owner is
// a network variable, a configuration property or a structure field.
class CField final : public IField,
                     public IDisplayItem,
                     public ISubItemConnable,
                     public IOverridableItem,
                     public internal::FieldOwner,
                     public internal::DataPointItem,
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

  // IDisplayItem
  std::string IDisplayItem_DisplayText() const override;
  void IDisplayItem_DisplayText(const std::string& value) override;
  std::string IDisplayItem_Key() const override;
  int32_t IDisplayItem_ItemType() const override;
  int32_t IDisplayItem_Icon() const override;
  bool IDisplayItem_IsWritable() const override;
  bool IDisplayItem_IsTrendable() const override;
  std::string IDisplayItem_Reference() const override;
  bool IDisplayItem_IsConnected() const override;
  bool IDisplayItem_IsDisplayable() const override;
  std::shared_ptr<ISNVType> IDisplayItem_SNVTType() const override;
  std::shared_ptr<IFields> IDisplayItem_Fields() const override;

  // ISubItemConnable
  void ISubItemConnable_IsConnected(bool value) override;
  void ISubItemConnable_HasPriority(bool value) override;
  void ISubItemConnable_IncrementalConnIndex(int32_t value) override;
  void ISubItemConnable_ConnectedType(const std::string& value) override;
  int32_t ISubItemConnable_ItemType() const override;
  std::string ISubItemConnable_GlobalKey() const override;
  std::string ISubItemConnable_Name() const override;
  std::shared_ptr<ISNVType> ISubItemConnable_SNVTType() const override;
  bool ISubItemConnable_IsSNVTCompatible(const std::string& type_name) override;

  // IOverridableItem
  std::shared_ptr<ITypeOverride> IOverridableItem_TypeOverride() const override;
  void IOverridableItem_TypeOverride(std::shared_ptr<ITypeOverride> value) override;

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
  // Loads the type by name, takes its default, makes the edit dialog and, for a structure,
  // builds the sub-fields. Errors are swallowed step by step.
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
  std::string RawText() const;
  // Raw hexadecimal text of the type's invalid value.
  std::string InvalidRawText() const;

  // The dialog that edits the field, made for its kind; nullptr for an unknown kind.
  std::shared_ptr<Form> EditDialog() const { return edit_dialog_; }
  // The sub-fields of a structure field.
  std::shared_ptr<CFields> Fields() const { return fields_; }
  // The type, with its project-internal members.
  std::shared_ptr<CSNVTType> Type() const { return type_; }

  // internal::DataPointItem
  std::string DataPointValue() override { return IField_Value(); }
  void DataPointValue(const std::string& value) override { IField_Value(value); }
  std::string DataPointName() const override { return name_; }
  std::shared_ptr<ISNVType> DataPointType() const override { return IField_SNVTType(); }
  std::shared_ptr<IFields> DataPointFields() const override { return IField_Fields(); }

 private:
  std::string Kind() const;
  // IField_DispMin or IField_DispMax.
  std::string DisplayLimit(bool maximum) const;
  void ApplyMissingDefault(const std::string& replacement);
  // Number of enclosing structure fields.
  int Depth() const;
  // True when an enclosing structure field, or the item at the top, expands type_name.
  bool OnOwnPath(const std::string& type_name) const;
  // The network variable or configuration property at the top of the owner chain.
  std::shared_ptr<IUnknown> TopOwner() const;

  bool is_connected_ = false;
  int32_t connection_count_ = 0;
  std::shared_ptr<CFields> fields_;
  std::string global_key_;
  std::string default_value_;
  std::string name_;
  std::string value_;
  int32_t index_ = 0;
  int32_t offset_ = 0;
  int32_t end_offset_ = 0;
  std::shared_ptr<CSNVTType> type_;
  int32_t node_type_ = 0;
  std::weak_ptr<IUnknown> parent_;
  bool warn_missing_default_ = false;
  std::shared_ptr<Form> edit_dialog_;
  std::string ref_value_;
  std::shared_ptr<ITypeOverride> type_override_;
  bool is_display_usable_ = false;
  std::string parent_key_;
};

}  // namespace kolvane
