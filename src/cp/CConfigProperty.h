#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <pugixml.hpp>

#include "conversion/ValueCodec.h"
#include "dialogs/Form.h"
#include "interfaces/IConfigProperty.h"
#include "interfaces/IUnitConverter.h"
#include "items/ItemCore.h"

namespace kolvane {

class CFields;
class CSNVTType;

// One configuration property of a profile.
class CConfigProperty final : public IConfigProperty,
                              public internal::ItemCore,
                              public std::enable_shared_from_this<CConfigProperty> {
 public:
  // Creates the units converter ("UnitManager.Converter"); error 429 without one.
  CConfigProperty();
  ~CConfigProperty() override;

  // IConfigProperty
  std::string IConfigProperty_Name() const override;
  void IConfigProperty_Name(const std::string& value) override;
  std::string IConfigProperty_Value() const override;
  void IConfigProperty_Value(const std::string& value) override;
  std::string IConfigProperty_DispValue() const override;
  std::string IConfigProperty_DispDefault() const override;
  std::string IConfigProperty_DispMin() const override;
  std::string IConfigProperty_DispMax() const override;
  std::string IConfigProperty_DefaultValue() const override;
  std::string IConfigProperty_RefValue() const override;
  void IConfigProperty_RefValue(const std::string& value) override;
  std::string IConfigProperty_RawValue() const override;
  void IConfigProperty_SetValue() override;
  void IConfigProperty_SetSnvtType(const std::string& type_name) override;
  std::shared_ptr<ISNVType> IConfigProperty_SNVTType() const override;
  std::shared_ptr<IFields> IConfigProperty_Fields() const override;
  int32_t IConfigProperty_Index() const override;
  std::string IConfigProperty_GlobalKey() const override;
  std::string IConfigProperty_ExtendedKey() const override;
  std::string IConfigProperty_Tag() const override;
  void IConfigProperty_Tag(const std::string& value) override;
  std::string IConfigProperty_IndexInFile() const override;
  void IConfigProperty_IndexInFile(const std::string& value) override;
  std::string IConfigProperty_PointKey() const override;
  void IConfigProperty_PointKey(const std::string& value) override;
  int32_t IConfigProperty_ConnectionIndex() const override;
  void IConfigProperty_ConnectionIndex(int32_t value) override;
  int32_t IConfigProperty_IncrementalConnIndex() const override;
  void IConfigProperty_IncrementalConnIndex(int32_t value) override;
  double IConfigProperty_XPosition() const override;
  void IConfigProperty_XPosition(double value) override;
  double IConfigProperty_YPosition() const override;
  void IConfigProperty_YPosition(double value) override;
  std::shared_ptr<ICompatibleSNVTs> IConfigProperty_AvailableTypes() const override;
  void IConfigProperty_AvailableTypes(std::shared_ptr<ICompatibleSNVTs> value) override;
  int32_t IConfigProperty_NodeType() const override;
  bool IConfigProperty_IsConnected() const override;
  bool IConfigProperty_IsArrayForFW() const override;
  bool IConfigProperty_IsStructForFW() const override;
  bool IConfigProperty_Mandatory() const override;

  // IDisplayItem members of a property's own
  std::string IDisplayItem_Key() const override;
  int32_t IDisplayItem_ItemType() const override;
  bool IDisplayItem_IsWritable() const override;
  bool IDisplayItem_IsDisplayable() const override;

  // ISubItemConnable
  int32_t ISubItemConnable_ItemType() const override;

  // The units converter made for this property.
  std::shared_ptr<IUnitConverter> UnitsManager() const override;

  // Loads the property from its element of the profile document: type ("SNVTType", else the
  // fallback), default ("Default" or "Value"), bounds, fields, and the editor of its kind.
  // Steps that fail are skipped; a missing type or default is reported in a "Warning" box.
  void LoadFromXml(const std::shared_ptr<IUnknown>& profile, pugi::xml_node element,
                   const std::string& fallback_type);
  // Loads the property from an exported point record ("Type", "Value", "Key", ExtendedInfo).
  void LoadFromPointRecord(pugi::xml_node element);
  // The property's "ApPoint" record (direction "In").
  codec::PointRecord PointRecord() const;
  // Appends the property's element (the form LoadFromXml reads) to parent.
  pugi::xml_node WriteXml(pugi::xml_document& document, pugi::xml_node parent) const;
  // The text handed to the schedule editor: one "FIELD" element, with "FIELDS" for a structure.
  std::string ScheduleExchangeText() const;
  // Takes the values of a text returned by the schedule editor; a text that is not XML changes
  // nothing.
  void ApplyScheduleExchangeText(const std::string& text);

  // True for a type identifier from "40000" to below "49999", compared as text.
  static bool IsUserTypeId(const std::string& id);

  // Sets Index and ConnectionIndex.
  void SetIndex(int32_t index);
  // Stores the global key and hands it to every field.
  void SetGlobalKey(const std::string& key);
  // The profile that owns the property (held weakly).
  void SetProfile(const std::shared_ptr<IUnknown>& profile);
  std::shared_ptr<IUnknown> Profile() const { return profile_.lock(); }
  // An instance property keeps its name unique within its collection.
  bool Instance() const { return instance_; }
  void Instance(bool value) { instance_ = value; }
  // The warning flag: set when a default had to be assumed; written as "DefaultWarning".
  bool DefaultWarning() const { return default_warning_; }
  std::string Sisd() const { return sisd_; }
  void Sisd(const std::string& value) { sisd_ = value; }
  // The dialog that edits the value, made for the type's kind when first asked for; nullptr for
  // an unknown kind.
  std::shared_ptr<Form> Editor() const { return EditDialogOfKind(); }

  // internal::DataPointItem
  std::string DataPointValue() override { return IConfigProperty_Value(); }
  void DataPointValue(const std::string& value) override { IConfigProperty_Value(value); }

 private:
  // The members the shared display rules read.
  codec::ItemTexts PropertyTexts() const;
  // Loads the type, sets bounds and default from the candidates, builds fields (with their
  // values from element, when there is one) and makes the editor.
  // Warnings about assumed defaults are shown only for a property read from a profile.
  void InitType(const std::string& default_candidate, const std::string& min_candidate,
                const std::string& max_candidate, pugi::xml_node element, bool warn);
  void ShowEditor();
  void EditSchedule();

  std::string type_name_;
  std::string tag_;
  int32_t index_ = 0;
  bool default_warning_ = false;
  std::string sisd_;
  std::string index_in_file_;
  std::string point_key_;
  int32_t connection_index_ = 0;
  double x_position_ = 0;
  double y_position_ = 0;
  std::shared_ptr<ICompatibleSNVTs> available_types_;
  std::shared_ptr<IUnitConverter> units_manager_;
  bool mandatory_ = false;
  bool instance_ = false;
  std::weak_ptr<IUnknown> profile_;
};

}  // namespace kolvane
