#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <pugixml.hpp>

#include "conversion/ValueCodec.h"
#include "dialogs/Form.h"
#include "interfaces/INetworkVariable.h"
#include "interfaces/IUnitConverter.h"
#include "items/ItemCore.h"

namespace kolvane {

class CFields;
class CSNVTType;
class CNVOCompatibleSNVTs;
namespace internal {
class NvoTable;
}

// One network variable of a profile.
class CNetworkVariable final : public INetworkVariable,
                               public internal::ItemCore,
                               public std::enable_shared_from_this<CNetworkVariable> {
 public:
  // Creates the units converter ("UnitManager.Converter"); error 429 without one.
  CNetworkVariable();
  ~CNetworkVariable() override;

  // INetworkVariable
  std::shared_ptr<ICompatibleSNVTs> INetworkVariable_AvailableTypes() const override;
  void INetworkVariable_AvailableTypes(std::shared_ptr<ICompatibleSNVTs> value) override;
  int32_t INetworkVariable_ConnectionIndex() const override;
  void INetworkVariable_ConnectionIndex(int32_t value) override;
  std::string INetworkVariable_DefaultValue() const override;
  int32_t INetworkVariable_Direction() const override;
  std::string INetworkVariable_ExtendedKey() const override;
  std::shared_ptr<IFields> INetworkVariable_Fields() const override;
  std::string INetworkVariable_GlobalKey() const override;
  int32_t INetworkVariable_IncrementalConnIndex() const override;
  int32_t INetworkVariable_Index() const override;
  bool INetworkVariable_isNC() const override;
  int32_t INetworkVariable_K4Offset() const override;
  void INetworkVariable_K4Offset(int32_t value) override;
  std::shared_ptr<IUnknown> INetworkVariable_LinkedSource() const override;
  void INetworkVariable_LinkedSource(std::shared_ptr<IUnknown> value) override;
  bool INetworkVariable_Mandatory() const override;
  std::string INetworkVariable_Name() const override;
  void INetworkVariable_Name(const std::string& value) override;
  int32_t INetworkVariable_NodeType() const override;
  std::string INetworkVariable_PointKey() const override;
  void INetworkVariable_PointKey(const std::string& value) override;
  std::string INetworkVariable_RefValue() const override;
  void INetworkVariable_RefValue(const std::string& value) override;
  std::shared_ptr<ICompatibleSNVTs> INetworkVariable_SNVTCompatibles() const override;
  std::shared_ptr<ISNVType> INetworkVariable_SNVTType() const override;
  std::string INetworkVariable_Tag() const override;
  void INetworkVariable_Tag(const std::string& value) override;
  double INetworkVariable_XPosition() const override;
  void INetworkVariable_XPosition(double value) override;
  double INetworkVariable_YPosition() const override;
  void INetworkVariable_YPosition(double value) override;
  void INetworkVariable_SetSnvtType(const std::string& type_name) override;
  bool INetworkVariable_IsConnected() const override;
  std::string INetworkVariable_Value() override;
  void INetworkVariable_Value(const std::string& value) override;
  std::string INetworkVariable_DispValue() const override;
  std::string INetworkVariable_DispDefault() const override;
  std::string INetworkVariable_DispMin() const override;
  std::string INetworkVariable_DispMax() const override;
  std::string INetworkVariable_RawValue() const override;
  std::string INetworkVariable_InvalidRaw() const override;
  void INetworkVariable_SetValue() override;
  std::string INetworkVariable_XMLSave() override;

  // IDisplayItem members of a variable's own
  std::string IDisplayItem_Key() const override;
  int32_t IDisplayItem_ItemType() const override;
  bool IDisplayItem_IsWritable() const override;
  bool IDisplayItem_IsDisplayable() const override;

  // ISubItemConnable
  // An input counts its connections; an output is connected or not.
  void ISubItemConnable_IsConnected(bool value) override;
  int32_t ISubItemConnable_ItemType() const override;
  bool ISubItemConnable_IsSNVTCompatible(const std::string& type_name) override;

  // The units converter made for this variable.
  std::shared_ptr<IUnitConverter> UnitsManager() const override;
  // The default-warning flag: see FieldDefaultsFlag in the source.
  bool FieldDefaultsFlag() const override;

  // Fills the variable from an NV element of a profile; failing steps are skipped.
  void LoadFromXml(pugi::xml_node element);
  // Sets direction and type and builds the fields of a structure type.
  void InitType(int32_t direction, const std::string& type_name);
  // Stores the global key and hands it to every field.
  void SetGlobalKey(const std::string& key);
  // Sets Index and ConnectionIndex.
  void SetIndex(int32_t index);
  // The profile that loaded the variable (held weakly).
  void SetOwner(const std::shared_ptr<IUnknown>& profile);

  // The outputs whose NVO table lists type_id, joined by "," (a list of one single-character
  // identifier keeps its leading comma).
  static std::string BuildNVOCompatibleList(const std::string& type_id,
                                            const pugi::xml_document& table);
  // Rebuilds SNVTCompatibles: an output's from its table entry, an input's from the outputs
  // that list its type.
  void RebuildCompatibles(const internal::NvoTable& table);

  // The variable's "ApPoint" record: direction "In" or "Out"; for the interoperability form
  // also its options, "Visible", "Mandatory", "SNVTType" and its default and limits.
  codec::PointRecord PointRecord(bool interoperability);

  // Send-on-delta threshold text and flag of an output, receive heartbeat of an input; setting
  // any of them marks the profile as needing saving.
  std::string SendOnDelta() const { return send_on_delta_; }
  void SendOnDelta(const std::string& value);
  bool SendOnDeltaEnabled() const { return send_on_delta_enabled_; }
  void SendOnDeltaEnabled(bool value);
  bool ReceiveHeartbeat() const { return receive_heartbeat_; }
  void ReceiveHeartbeat(bool value);
  // Default-warning flag ("DefaultWarning" of the interoperability record).
  bool DefaultWarning() const { return default_warning_; }
  void DefaultWarning(bool value) { default_warning_ = value; }
  std::string Sisd() const { return sisd_; }
  void Sisd(const std::string& value) { sisd_ = value; }
  // The options dialog the variable keeps, made when first asked for (nullptr for a variable
  // loaded as an output structure).
  std::shared_ptr<Form> OptionsDialog() const;

  // internal::DataPointItem
  std::string DataPointValue() override { return INetworkVariable_Value(); }
  void DataPointValue(const std::string& value) override { INetworkVariable_Value(value); }

 private:
  // Which options dialog a load gave the variable.
  enum class Options { kNone, kInput, kOutput };

  // The members the shared display rules read.
  codec::ItemTexts VariableTexts() const;
  void BuildFields();

  double x_position_ = 0;
  double y_position_ = 0;
  std::string send_on_delta_;
  bool send_on_delta_enabled_ = false;
  bool receive_heartbeat_ = false;
  bool default_warning_ = false;
  int32_t connection_index_ = 0;
  int32_t k4_offset_ = -1;
  bool is_nc_ = false;
  bool mandatory_ = false;
  std::string type_name_;
  std::string sisd_;
  std::string tag_;
  int32_t direction_ = internal::kInput;
  std::weak_ptr<IUnknown> owner_;
  int32_t index_ = 0;
  Options options_ = Options::kNone;
  mutable std::shared_ptr<Form> options_dialog_;
  std::shared_ptr<ICompatibleSNVTs> compatibles_;
  std::string point_key_;
  std::shared_ptr<IUnknown> linked_source_;
  std::shared_ptr<IUnitConverter> units_manager_;
  std::shared_ptr<ICompatibleSNVTs> available_types_;
};

}  // namespace kolvane
