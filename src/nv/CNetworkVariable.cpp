#include "nv/CNetworkVariable.h"

#include "conversion/SNVTDataConversion.h"
#include "conversion/ValueCodec.h"
#include "fields/CField.h"
#include "fields/CFields.h"
#include "foundation/ConnectionCount.h"
#include "foundation/ContinueOnError.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/HostServices.h"
#include "foundation/ItemNames.h"
#include "foundation/Numbers.h"
#include "foundation/Text.h"
#include "foundation/mXML.h"
#include "interfaces/IUtility.h"
#include "nv/frmEditNVI.h"
#include "nv/frmEditNVO.h"
#include "types/CNVOCompatibleSNVTs.h"
#include "types/CSNVTType.h"
#include "types/CState.h"
#include "types/CStates.h"
#include "types/CTypeOverride.h"
#include "types/NvoTable.h"

namespace kolvane {

namespace {

using internal::kInput;
using internal::kOutput;

// The "Field" child of list whose "Name" is name.
pugi::xml_node FieldOverride(pugi::xml_node list, const std::string& name) {
  for (pugi::xml_node field : list.children("Field")) {
    if (name == field.attribute("Name").value()) return field;
  }
  return {};
}

// Applies the override element of an item (the variable or one of its fields): an enumeration
// override with its states, a plain one, or, for "Struct", one per field from "Fields".
void ApplyTypeOverride(IOverridableItem& item, const std::shared_ptr<IFields>& fields,
                       const std::string& overriding_type, pugi::xml_node element) {
  std::shared_ptr<CTypeOverride> made;
  if (overriding_type == "Enum") {
    made = std::make_shared<CTypeOverride>();
    made->ITypeOverride_OverridingType("Enum");
    auto states = std::make_shared<CStates>();
    for (pugi::xml_node node : element.child("States").children()) {
      if (node.type() == pugi::node_comment) continue;
      std::shared_ptr<iState> state = std::make_shared<CState>();
      ContinueOnError([&] { state->iState_Name(node.attribute("Name").value()); });
      ContinueOnError(
          [&] { state->iState_Value(RoundToInt16(ParseNumber(node.attribute("Value").value()))); });
      states->IStates_Add(state);
    }
    made->ITypeOverride_States(states);
  } else if (overriding_type != "Struct") {
    made = std::make_shared<CTypeOverride>();
    made->ITypeOverride_OverridingType(overriding_type);
  } else if (fields) {
    const pugi::xml_node list = element.child("Fields");
    for (const auto& field : fields->IFields_NewEnum()) {
      ContinueOnError([&] {
        const pugi::xml_node node = FieldOverride(list, field->IField_Name());
        const auto overridable = std::dynamic_pointer_cast<IOverridableItem>(field);
        if (!node || !overridable || !node.attribute("Type")) return;
        ApplyTypeOverride(*overridable, field->IField_Fields(), node.attribute("Type").value(),
                          node);
      });
    }
  }
  item.IOverridableItem_TypeOverride(made);
}

}  // namespace

CNetworkVariable::CNetworkVariable()
    : units_manager_(CreateObjectAs<IUnitConverter>("UnitManager.Converter")) {
  incremental_conn_index_ = -1;
}
CNetworkVariable::~CNetworkVariable() = default;

std::shared_ptr<ICompatibleSNVTs> CNetworkVariable::INetworkVariable_AvailableTypes() const {
  return available_types_;
}
void CNetworkVariable::INetworkVariable_AvailableTypes(std::shared_ptr<ICompatibleSNVTs> value) {
  available_types_ = std::move(value);
}
int32_t CNetworkVariable::INetworkVariable_ConnectionIndex() const { return connection_index_; }
void CNetworkVariable::INetworkVariable_ConnectionIndex(int32_t value) {
  connection_index_ = value;
}
std::string CNetworkVariable::INetworkVariable_DefaultValue() const { return default_value_; }
int32_t CNetworkVariable::INetworkVariable_Direction() const { return direction_; }
std::string CNetworkVariable::INetworkVariable_ExtendedKey() const { return global_key_; }
std::shared_ptr<IFields> CNetworkVariable::INetworkVariable_Fields() const { return fields_; }
std::string CNetworkVariable::INetworkVariable_GlobalKey() const { return global_key_; }
int32_t CNetworkVariable::INetworkVariable_IncrementalConnIndex() const {
  return incremental_conn_index_;
}
int32_t CNetworkVariable::INetworkVariable_Index() const { return index_; }
bool CNetworkVariable::INetworkVariable_isNC() const { return is_nc_; }
int32_t CNetworkVariable::INetworkVariable_K4Offset() const { return k4_offset_; }
void CNetworkVariable::INetworkVariable_K4Offset(int32_t value) { k4_offset_ = value; }
std::shared_ptr<IUnknown> CNetworkVariable::INetworkVariable_LinkedSource() const {
  return linked_source_;
}
void CNetworkVariable::INetworkVariable_LinkedSource(std::shared_ptr<IUnknown> value) {
  linked_source_ = std::move(value);
}
bool CNetworkVariable::INetworkVariable_Mandatory() const { return mandatory_; }
std::string CNetworkVariable::INetworkVariable_Name() const { return name_; }
void CNetworkVariable::INetworkVariable_Name(const std::string& value) {
  name_ = value;
  internal::ItemNamesChanged();
}
int32_t CNetworkVariable::INetworkVariable_NodeType() const { return 2; }
std::string CNetworkVariable::INetworkVariable_PointKey() const { return point_key_; }

void CNetworkVariable::INetworkVariable_PointKey(const std::string& value) {
  point_key_ = value;
  if (fields_) fields_->SetParentKeys(value);
}

std::string CNetworkVariable::INetworkVariable_RefValue() const { return ref_value_; }
void CNetworkVariable::INetworkVariable_RefValue(const std::string& value) { ref_value_ = value; }
std::shared_ptr<ICompatibleSNVTs> CNetworkVariable::INetworkVariable_SNVTCompatibles() const {
  return compatibles_;
}
std::shared_ptr<ISNVType> CNetworkVariable::INetworkVariable_SNVTType() const { return type_; }
std::string CNetworkVariable::INetworkVariable_Tag() const { return tag_; }
void CNetworkVariable::INetworkVariable_Tag(const std::string& value) { tag_ = value; }
double CNetworkVariable::INetworkVariable_XPosition() const { return x_position_; }

void CNetworkVariable::INetworkVariable_XPosition(double value) {
  x_position_ = value;
  Globals::NeedSaveFlag = true;
}

double CNetworkVariable::INetworkVariable_YPosition() const { return y_position_; }

void CNetworkVariable::INetworkVariable_YPosition(double value) {
  y_position_ = value;
  Globals::NeedSaveFlag = true;
}

void CNetworkVariable::INetworkVariable_SetSnvtType(const std::string& type_name) {
  InitType(direction_, type_name);
}

bool CNetworkVariable::INetworkVariable_IsConnected() const {
  if (direction_ == kOutput || is_connected_) return is_connected_;
  return fields_ && fields_->AnyConnected();
}

std::string CNetworkVariable::INetworkVariable_Value() {
  switch (Kind()) {
    case TypeKind::kEnum:
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kFloat:
      return SNVTDataConversion::LocalizeNumber(value_);
    case TypeKind::kStruct: {
      if (!fields_) RaiseError(ErrorNumber::kObjectNotSet, "the structure has no fields");
      std::string text;
      for (int32_t i = 1; i <= fields_->IFields_Count(); ++i) {
        const auto field = fields_->IFields_Item(std::to_string(i));
        if (!field) continue;
        field->IField_Value(Globals::GetToken(value_, i - 1, " "));
        text += field->IField_Value() + " ";
      }
      return std::string(TrimBlanks(text));
    }
    case TypeKind::kBitfield:
    case TypeKind::kTextual:
    case TypeKind::kUnknown:
      return std::string(TrimBlanks(SNVTDataConversion::LocalizeNumber(value_)));
  }
  return "";
}

void CNetworkVariable::INetworkVariable_Value(const std::string& value) {
  value_ = value;
  Globals::NeedSaveFlag = true;
}

std::string CNetworkVariable::INetworkVariable_DispValue() const {
  return codec::DisplayValue(VariableTexts());
}

std::string CNetworkVariable::INetworkVariable_DispDefault() const {
  return codec::DisplayDefault(VariableTexts());
}

std::string CNetworkVariable::INetworkVariable_DispMin() const {
  return codec::DisplayLimit(VariableTexts(), false);
}

std::string CNetworkVariable::INetworkVariable_DispMax() const {
  return codec::DisplayLimit(VariableTexts(), true);
}

std::string CNetworkVariable::INetworkVariable_RawValue() const { return RawText(); }

std::string CNetworkVariable::INetworkVariable_InvalidRaw() const { return InvalidRawText(); }

void CNetworkVariable::INetworkVariable_SetValue() {
  if (!is_nc_) {
    if (direction_ != kOutput) {
      options_dialog_ = std::make_shared<frmEditNVI>();
    } else if (Kind() != TypeKind::kStruct) {
      options_dialog_ = std::make_shared<frmEditNVO>();
    }
  }
  const auto dialog = OptionsDialog();
  if (!dialog) RaiseError(ErrorNumber::kObjectNotSet, "an output structure has no options");
  if (auto input = std::dynamic_pointer_cast<frmEditNVI>(dialog)) {
    input->DataPoint(shared_from_this());
  } else if (auto output = std::dynamic_pointer_cast<frmEditNVO>(dialog)) {
    output->DataPoint(shared_from_this());
  }
  dialog->Show();
}

std::shared_ptr<Form> CNetworkVariable::OptionsDialog() const {
  if (!options_dialog_) {
    switch (options_) {
      case Options::kInput:
        options_dialog_ = std::make_shared<frmEditNVI>();
        break;
      case Options::kOutput:
        options_dialog_ = std::make_shared<frmEditNVO>();
        break;
      case Options::kNone:
        break;
    }
  }
  return options_dialog_;
}

std::string CNetworkVariable::INetworkVariable_XMLSave() { return ""; }

std::string CNetworkVariable::IDisplayItem_Key() const { return point_key_; }

int32_t CNetworkVariable::IDisplayItem_ItemType() const {
  return direction_ == kInput ? internal::kDisplayInput : internal::kDisplayOutput;
}

bool CNetworkVariable::IDisplayItem_IsWritable() const { return direction_ <= kInput; }
// Only connected variables are listed.
bool CNetworkVariable::IDisplayItem_IsDisplayable() const { return is_connected_; }

void CNetworkVariable::ISubItemConnable_IsConnected(bool value) {
  if (direction_ != kInput) {
    is_connected_ = value;
    return;
  }
  ItemCore::ISubItemConnable_IsConnected(value);
}

int32_t CNetworkVariable::ISubItemConnable_ItemType() const { return internal::kVariableItem; }

bool CNetworkVariable::ISubItemConnable_IsSNVTCompatible(const std::string& type_name) {
  if (type_name.empty()) return true;
  if (!compatibles_) return false;
  for (const auto& entry : compatibles_->ICompatibleSNVTs_NewEnum()) {
    if (entry->ICompatibleSNVT_ID() == type_name) return true;
  }
  return false;
}

std::shared_ptr<IUnitConverter> CNetworkVariable::UnitsManager() const { return units_manager_; }

// The default-warning flag is the one whose name says what it gates: it marks a variable whose
// defaults are assumed rather than given by the profile, so its fields take "0" ("none" for
// text) for a missing default and say so, as a configuration property's do, and they are listed
// as item type 5 (not writable by the host), since their values are not the profile's own.
bool CNetworkVariable::FieldDefaultsFlag() const { return default_warning_; }

void CNetworkVariable::LoadFromXml(pugi::xml_node element) {
  ContinueOnError([&] {
    if (!element.attribute("Type")) RaiseError(ErrorNumber::kObjectNotSet, "no Type");
    type_name_ = element.attribute("Type").value();
  });
  ContinueOnError([&] {
    direction_ = std::string_view(element.attribute("Direction").value()) == "In" ? kInput : kOutput;
  });
  is_nc_ = false;
  const pugi::xml_node info = element.child("ExtendedInfo");
  const std::string location = info.attribute("Location").value();
  int32_t x = 0;
  int32_t y = 0;
  ContinueOnError([&] {
    auto utility = CreateObjectAs<IUtility>("Moraface.Utility");
    utility->ParseLocation(location, x, y);
  });
  ContinueOnError([&] { LoadType(type_name_); });
  ContinueOnError([&] {
    if (Kind() == TypeKind::kStruct) BuildFields();
  });
  // An input gets the input options, an output of a plain type the output options, made when
  // first needed.
  if (direction_ != kOutput) {
    options_ = Options::kInput;
  } else if (Kind() != TypeKind::kStruct) {
    options_ = Options::kOutput;
  }
  // Options a profile keeps, named as the interoperability record names them.
  if (direction_ == kInput) {
    receive_heartbeat_ = std::string_view(element.attribute("RcvHrtBtEnable").value()) == "1";
  } else if (const pugi::xml_attribute delta = element.attribute("SendOnDelta")) {
    send_on_delta_enabled_ = true;
    send_on_delta_ = delta.value();
  }
  x_position_ = x;
  y_position_ = y;
  ContinueOnError([&] {
    if (!info) RaiseError(ErrorNumber::kObjectNotSet, "no ExtendedInfo");
    connection_index_ = RoundToInt32(ParseNumber(info.attribute("ExportIndex").value()));
  });
  ContinueOnError([&] {
    if (!element.attribute("Key")) RaiseError(ErrorNumber::kObjectNotSet, "no Key");
    INetworkVariable_PointKey(element.attribute("Key").value());
  });
  ContinueOnError([&] {
    const pugi::xml_node type_override = info.child("TypeOverride");
    if (!type_override || !type_override.attribute("Type")) return;
    ApplyTypeOverride(*this, fields_, type_override.attribute("Type").value(), type_override);
  });
}

void CNetworkVariable::InitType(int32_t direction, const std::string& type_name) {
  mandatory_ = false;
  is_nc_ = false;
  direction_ = direction;
  fields_ = nullptr;
  type_name_ = type_name;
  LoadType(type_name);
  if (Kind() == TypeKind::kStruct) BuildFields();
}

void CNetworkVariable::SetGlobalKey(const std::string& key) {
  global_key_ = key;
  if (!fields_) return;
  for (const auto& entry : fields_->Items()) {
    ContinueOnError([&] {
      entry.item->SetGlobalKey(key);
      entry.item->SetParent(shared_from_this());
    });
  }
}

void CNetworkVariable::SetIndex(int32_t index) {
  index_ = index;
  connection_index_ = index;
}

void CNetworkVariable::SetOwner(const std::shared_ptr<IUnknown>& profile) { owner_ = profile; }

std::string CNetworkVariable::BuildNVOCompatibleList(const std::string& type_id,
                                                     const pugi::xml_document& table) {
  return internal::NvoTable(table).OutputsListing(type_id);
}

void CNetworkVariable::RebuildCompatibles(const internal::NvoTable& table) {
  auto list = std::make_shared<CNVOCompatibleSNVTs>();
  const std::string id = type_ ? type_->ISNVType_ID() : type_name_;
  list->AddList(direction_ == kOutput ? table.CompatibleTypes(id) : table.CompatibleOutputs(id));
  compatibles_ = list;
}

codec::PointRecord CNetworkVariable::PointRecord(bool interoperability) {
  codec::PointRecord record;
  record.key = point_key_;
  record.global_key = global_key_;
  record.name = name_;
  record.direction = direction_ == kInput ? "In" : "Out";
  record.type_id = type_ ? type_->ISNVType_ID() : type_name_;
  record.value = INetworkVariable_Value();
  record.x = x_position_;
  record.y = y_position_;
  record.export_index = connection_index_;
  record.type_override = type_override_;
  record.fields = fields_;
  if (!interoperability) return record;
  record.interoperability_direction = direction_ == kInput ? "Input" : "Output";
  auto& extra = record.interoperability_attributes;
  if (direction_ == kInput && receive_heartbeat_) {
    extra.emplace_back("RcvHrtBtEnable", mXML::BoolToBit(receive_heartbeat_));
  }
  if (direction_ != kInput && send_on_delta_enabled_) extra.emplace_back("SendOnDelta", send_on_delta_);
  extra.emplace_back("Visible", mXML::BoolToBit(true));
  extra.emplace_back("Mandatory", mXML::BoolToBit(mandatory_));
  extra.emplace_back("SNVTType", record.type_id);
  if (!sisd_.empty()) extra.emplace_back("SISD", sisd_);
  if (is_nc_) extra.emplace_back("IsNC", mXML::BoolToBit(is_nc_));
  if (default_warning_) extra.emplace_back("DefaultWarning", mXML::BoolToBit(default_warning_));
  // The variable reads no limits of its own: a plain one carries its type's.
  const codec::LimitTexts limits = codec::RecordLimits(
      fields_, {default_value_, minimum_.empty() && type_ ? type_->ISNVType_Min() : minimum_,
                maximum_.empty() && type_ ? type_->ISNVType_Max() : maximum_});
  record.interoperability_children = {{"Default", limits.default_value},
                                      {"Min", limits.minimum},
                                      {"Max", limits.maximum}};
  return record;
}

void CNetworkVariable::SendOnDelta(const std::string& value) {
  send_on_delta_ = value;
  Globals::NeedSaveFlag = true;
}

void CNetworkVariable::SendOnDeltaEnabled(bool value) {
  send_on_delta_enabled_ = value;
  Globals::NeedSaveFlag = true;
}

void CNetworkVariable::ReceiveHeartbeat(bool value) {
  receive_heartbeat_ = value;
  Globals::NeedSaveFlag = true;
}


void CNetworkVariable::BuildFields() {
  fields_ = std::make_shared<CFields>();
  fields_->SetParent(shared_from_this());
  int32_t position = 0;
  // Item type 4 (5 when the host asks and the defaults were assumed, see
  // CField::IDisplayItem_ItemType).
  fields_->BuildFromType(position, type_->ISNVType_ID(), internal::kVariableField, "", true);
  SetTypeLength(fields_->IFields_Length());
}

codec::ItemTexts CNetworkVariable::VariableTexts() const { return Texts(units_manager_); }

}  // namespace kolvane
