#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "conversion/ValueCodec.h"
#include "dialogs/DataPoint.h"
#include "fields/FieldOwner.h"
#include "interfaces/IDisplayItem.h"
#include "interfaces/IOverridableItem.h"
#include "interfaces/ISubItemConnable.h"
#include "types/TypeKind.h"

namespace kolvane {

class CFields;
class CSNVTType;
class Form;

namespace internal {

// ISubItemConnable_ItemType of a network variable and of a configuration property.
inline constexpr int32_t kVariableItem = 2;
inline constexpr int32_t kPropertyItem = 3;
// IDisplayItem_ItemType of a property, an input and an output.
inline constexpr int32_t kDisplayProperty = 0;
inline constexpr int32_t kDisplayInput = 1;
inline constexpr int32_t kDisplayOutput = 2;
// IDisplayItem_ItemType of a field: of a property, of a variable, of a variable whose field
// defaults were assumed (not writable by the host).
inline constexpr int32_t kPropertyField = 3;
inline constexpr int32_t kVariableField = 4;
inline constexpr int32_t kAssumedVariableField = 5;
// Direction of a network variable.
inline constexpr int32_t kInput = 0;
inline constexpr int32_t kOutput = 1;

// What network variables, configuration properties and fields share: their type, fields, type
// override, value and default texts, connection count, the display, connection and override
// members that are the same for all three, their raw texts and their edit dialog.
class ItemCore : public IDisplayItem,
                 public ISubItemConnable,
                 public IOverridableItem,
                 public FieldOwner,
                 public DataPointItem {
 public:
  ~ItemCore() override;

  // IDisplayItem
  std::string IDisplayItem_DisplayText() const override { return name_; }
  void IDisplayItem_DisplayText(const std::string& /*value*/) override {}
  int32_t IDisplayItem_Icon() const override { return 0; }
  bool IDisplayItem_IsTrendable() const override { return false; }
  std::string IDisplayItem_Reference() const override { return ref_value_; }
  bool IDisplayItem_IsConnected() const override { return is_connected_; }
  std::shared_ptr<ISNVType> IDisplayItem_SNVTType() const override;
  std::shared_ptr<IFields> IDisplayItem_Fields() const override;

  // ISubItemConnable
  // Counts a connection made (true) or dropped (false).
  void ISubItemConnable_IsConnected(bool value) override;
  void ISubItemConnable_HasPriority(bool value) override { has_priority_ = value; }
  void ISubItemConnable_IncrementalConnIndex(int32_t value) override {
    incremental_conn_index_ = value;
  }
  void ISubItemConnable_ConnectedType(const std::string& /*value*/) override {}
  std::string ISubItemConnable_GlobalKey() const override { return global_key_; }
  std::string ISubItemConnable_Name() const override { return name_; }
  std::shared_ptr<ISNVType> ISubItemConnable_SNVTType() const override;
  bool ISubItemConnable_IsSNVTCompatible(const std::string& /*type_name*/) override {
    return false;
  }

  // IOverridableItem
  std::shared_ptr<ITypeOverride> IOverridableItem_TypeOverride() const override {
    return type_override_;
  }
  void IOverridableItem_TypeOverride(std::shared_ptr<ITypeOverride> value) override {
    type_override_ = std::move(value);
  }

  // DataPointItem
  std::string DataPointName() const override { return name_; }
  std::shared_ptr<ISNVType> DataPointType() const override;
  std::shared_ptr<IFields> DataPointFields() const override;

  // RawText with nothing clamped, cut or read as 0: error naming the field and why when the
  // value has no raw form of its type's length; empty when the item holds no number (an empty
  // text is a text of blanks).
  std::string CheckedRawText() const;

  // The type, with its project-internal members.
  std::shared_ptr<CSNVTType> Type() const { return type_; }
  // The field collection of a structure, else nullptr.
  std::shared_ptr<CFields> Fields() const { return fields_; }

 protected:
  TypeKind Kind() const;
  // The type of the catalogue called id, shared with every item of that type (a new object for a
  // type the catalogue lacks).
  void LoadType(const std::string& id);
  // The item's own copy of its type, made before the item changes it.
  CSNVTType& OwnType();
  // Sets the type's length: a shared type is swapped for the catalogue's one of that length.
  void SetTypeLength(int32_t length);
  // The raw text of the value: a structure's fields' joined, else the value's bytes by its type
  // (error 91 without a type).
  std::string RawText() const;
  // The raw text of the type's invalid value, likewise.
  std::string InvalidRawText() const;
  // The members the shared text rules read, with the converter to use.
  codec::ItemTexts Texts(std::shared_ptr<IUnitConverter> converter) const;
  // The edit dialog for the type's kind, made when first asked for; nullptr for a kind no dialog
  // edits. ResetEditDialog drops it (a new type).
  std::shared_ptr<Form> EditDialogOfKind() const;
  void ResetEditDialog() { edit_dialog_.reset(); }

  std::string name_;
  std::string value_;
  std::string default_value_;
  std::string minimum_;
  std::string maximum_;
  std::string global_key_;
  std::string ref_value_;
  std::shared_ptr<CSNVTType> type_;
  std::shared_ptr<CFields> fields_;
  std::shared_ptr<ITypeOverride> type_override_;
  bool is_connected_ = false;
  int32_t connection_count_ = 0;
  bool has_priority_ = false;
  int32_t incremental_conn_index_ = 0;

 private:
  bool own_type_ = false;
  mutable std::shared_ptr<Form> edit_dialog_;
};

}  // namespace internal
}  // namespace kolvane
