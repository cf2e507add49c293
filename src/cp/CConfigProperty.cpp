#include "cp/CConfigProperty.h"

#include <sstream>

#include "conversion/SNVTDataConversion.h"
#include "conversion/ValueCodec.h"
#include "dialogs/EditDialog.h"
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
#include "interfaces/IScheduleEditor.h"
#include "interfaces/IUtility.h"
#include "types/CSNVTType.h"

namespace kolvane {

namespace {

constexpr char kScheduleEditor[] = "Brask.Ondo.UI.SchedulerEditor.SchedulerFace";
constexpr const char* kScheduleTypes[] = {"40050", "40051", "40060", "40061", "40070"};

bool IsScheduleType(const std::string& id) {
  for (const char* schedule : kScheduleTypes) {
    if (id == schedule) return true;
  }
  return false;
}

void Warn(const std::string& text) { MsgBox(text, vbCritical + vbOKOnly, "Warning"); }

// One "FIELD" of the schedule exchange text; a structure field carries its own "FIELDS".
void AppendExchangeField(pugi::xml_node parent, const std::string& name, const ISNVType& type,
                         const std::string& value, const std::shared_ptr<IFields>& fields) {
  pugi::xml_node field = parent.append_child("FIELD");
  field.append_attribute("Name").set_value(name.c_str());
  field.append_attribute("Type").set_value(("SNVT_" + type.ISNVType_Name()).c_str());
  if (KindOf(type) != TypeKind::kStruct) {
    field.append_attribute("Value").set_value(value.c_str());
    return;
  }
  pugi::xml_node list = field.append_child("FIELDS");
  if (!fields) return;
  for (const auto& sub : fields->IFields_NewEnum()) {
    AppendExchangeField(list, sub->IField_Name(), *sub->IField_SNVTType(), sub->IField_Value(),
                        sub->IField_Fields());
  }
}

}  // namespace

CConfigProperty::CConfigProperty()
    : units_manager_(CreateObjectAs<IUnitConverter>("UnitManager.Converter")) {}
CConfigProperty::~CConfigProperty() = default;

std::string CConfigProperty::IConfigProperty_Name() const { return name_; }
void CConfigProperty::IConfigProperty_Name(const std::string& value) {
  name_ = value;
  internal::ItemNamesChanged();
}

std::string CConfigProperty::IConfigProperty_Value() const { return codec::PlainValue(PropertyTexts()); }

void CConfigProperty::IConfigProperty_Value(const std::string& value) {
  value_ = value;
  Globals::NeedSaveFlag = true;
}

std::string CConfigProperty::IConfigProperty_DispValue() const {
  return codec::DisplayValue(PropertyTexts());
}

std::string CConfigProperty::IConfigProperty_DispDefault() const {
  return codec::DisplayDefault(PropertyTexts());
}

std::string CConfigProperty::IConfigProperty_DispMin() const {
  return codec::DisplayLimit(PropertyTexts(), false);
}

std::string CConfigProperty::IConfigProperty_DispMax() const {
  return codec::DisplayLimit(PropertyTexts(), true);
}

std::string CConfigProperty::IConfigProperty_DefaultValue() const { return default_value_; }
std::string CConfigProperty::IConfigProperty_RefValue() const { return ref_value_; }
void CConfigProperty::IConfigProperty_RefValue(const std::string& value) { ref_value_ = value; }

std::string CConfigProperty::IConfigProperty_RawValue() const { return RawText(); }

void CConfigProperty::IConfigProperty_SetValue() {
  if (type_ && IsScheduleType(type_->ISNVType_ID())) {
    EditSchedule();
    return;
  }
  ShowEditor();
}

void CConfigProperty::IConfigProperty_SetSnvtType(const std::string& type_name) {
  type_name_ = type_name;
  InitType("", "", "", pugi::xml_node(), false);
}

std::shared_ptr<ISNVType> CConfigProperty::IConfigProperty_SNVTType() const { return type_; }
std::shared_ptr<IFields> CConfigProperty::IConfigProperty_Fields() const { return fields_; }
int32_t CConfigProperty::IConfigProperty_Index() const { return index_; }
std::string CConfigProperty::IConfigProperty_GlobalKey() const { return global_key_; }
std::string CConfigProperty::IConfigProperty_ExtendedKey() const { return global_key_; }
std::string CConfigProperty::IConfigProperty_Tag() const { return tag_; }
void CConfigProperty::IConfigProperty_Tag(const std::string& value) { tag_ = value; }
std::string CConfigProperty::IConfigProperty_IndexInFile() const { return index_in_file_; }
void CConfigProperty::IConfigProperty_IndexInFile(const std::string& value) {
  index_in_file_ = value;
}
std::string CConfigProperty::IConfigProperty_PointKey() const { return point_key_; }

void CConfigProperty::IConfigProperty_PointKey(const std::string& value) {
  point_key_ = value;
  if (fields_) fields_->SetParentKeys(value);
}

int32_t CConfigProperty::IConfigProperty_ConnectionIndex() const { return connection_index_; }
void CConfigProperty::IConfigProperty_ConnectionIndex(int32_t value) { connection_index_ = value; }
int32_t CConfigProperty::IConfigProperty_IncrementalConnIndex() const {
  return incremental_conn_index_;
}
void CConfigProperty::IConfigProperty_IncrementalConnIndex(int32_t value) {
  incremental_conn_index_ = value;
}
double CConfigProperty::IConfigProperty_XPosition() const { return x_position_; }

void CConfigProperty::IConfigProperty_XPosition(double value) {
  x_position_ = value;
  Globals::NeedSaveFlag = true;
}

double CConfigProperty::IConfigProperty_YPosition() const { return y_position_; }

void CConfigProperty::IConfigProperty_YPosition(double value) {
  y_position_ = value;
  Globals::NeedSaveFlag = true;
}

std::shared_ptr<ICompatibleSNVTs> CConfigProperty::IConfigProperty_AvailableTypes() const {
  return available_types_;
}
void CConfigProperty::IConfigProperty_AvailableTypes(std::shared_ptr<ICompatibleSNVTs> value) {
  available_types_ = std::move(value);
}
int32_t CConfigProperty::IConfigProperty_NodeType() const { return 3; }

bool CConfigProperty::IConfigProperty_IsConnected() const {
  return is_connected_ || (fields_ && fields_->AnyConnected());
}

bool CConfigProperty::IConfigProperty_IsArrayForFW() const {
  return Kind() == TypeKind::kStruct && IsUserTypeId(type_->ISNVType_ID());
}

bool CConfigProperty::IConfigProperty_IsStructForFW() const {
  return Kind() == TypeKind::kStruct && !IsUserTypeId(type_->ISNVType_ID());
}

bool CConfigProperty::IConfigProperty_Mandatory() const { return mandatory_; }

std::string CConfigProperty::IDisplayItem_Key() const { return point_key_; }
int32_t CConfigProperty::IDisplayItem_ItemType() const { return internal::kDisplayProperty; }
bool CConfigProperty::IDisplayItem_IsWritable() const { return true; }
// Listed only while connected.
bool CConfigProperty::IDisplayItem_IsDisplayable() const { return is_connected_; }
int32_t CConfigProperty::ISubItemConnable_ItemType() const { return internal::kPropertyItem; }

std::shared_ptr<IUnitConverter> CConfigProperty::UnitsManager() const { return units_manager_; }

void CConfigProperty::LoadFromXml(const std::shared_ptr<IUnknown>& profile, pugi::xml_node element,
                                  const std::string& fallback_type) {
  ContinueOnError([&] { SetProfile(profile); });
  default_warning_ = false;
  mandatory_ = false;
  std::string default_candidate;
  std::string min_candidate;
  std::string max_candidate;
  for (pugi::xml_node child : element.children()) {
    if (child.type() == pugi::node_comment) continue;
    ContinueOnError([&] {
      const std::string name = ToUpper(mXML::BaseName(child));
      // A child without text leaves what was read before.
      if (!child.first_child()) RaiseError(ErrorNumber::kObjectNotSet, name + " has no text");
      const std::string text = child.first_child().value();
      if (name == "SNVTTYPE") {
        type_name_ = text;
      } else if (name == "DEFAULT" || name == "VALUE") {
        default_candidate = text;
      } else if (name == "MIN") {
        min_candidate = text;
      } else if (name == "MAX") {
        max_candidate = text;
      }
    });
  }
  if (type_name_.empty() || ToUpper(type_name_.substr(0, 1)) == "X") type_name_ = fallback_type;
  if (type_name_.empty()) Warn(name_ + ": SNVT Type not defined into the XML file of the profile");
  InitType(default_candidate, min_candidate, max_candidate, element, true);
}

void CConfigProperty::LoadFromPointRecord(pugi::xml_node element) {
  ContinueOnError([&] { type_name_ = element.attribute("Type").value(); });
  InitType(element.attribute("Value").value(), "", "", pugi::xml_node(), false);
  if (pugi::xml_attribute value = element.attribute("Value")) value_ = value.value();
  if (pugi::xml_attribute key = element.attribute("Key")) IConfigProperty_PointKey(key.value());
  const pugi::xml_node info = element.child("ExtendedInfo");
  ContinueOnError([&] {
    auto utility = CreateObjectAs<IUtility>("Moraface.Utility");
    int32_t x = 0;
    int32_t y = 0;
    utility->ParseLocation(info.attribute("Location").value(), x, y);
    x_position_ = x;
    y_position_ = y;
  });
  ContinueOnError([&] {
    connection_index_ = RoundToInt32(ParseNumber(info.attribute("ExportIndex").value()));
  });
}

void CConfigProperty::InitType(const std::string& default_candidate,
                               const std::string& min_candidate, const std::string& max_candidate,
                               pugi::xml_node element, bool warn) {
  fields_ = nullptr;
  ResetEditDialog();
  ContinueOnError([&] { LoadType(type_name_); });
  minimum_ = type_->ISNVType_Min();
  maximum_ = type_->ISNVType_Max();
  if (!min_candidate.empty()) minimum_ = min_candidate;
  if (!max_candidate.empty()) maximum_ = max_candidate;

  const TypeKind kind = Kind();
  std::string assumed;  // the default taken for a missing one
  default_value_ = default_candidate;
  switch (kind) {
    case TypeKind::kTextual:
    case TypeKind::kEnum:
    case TypeKind::kBitfield:
      if (default_value_.empty()) assumed = AssumedDefault(kind);
      break;
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kFloat:
      if (default_value_.empty()) assumed = AssumedDefault(kind);
      // Later checks against the type use the property's bounds: the property's own copy of
      // the type carries them (the shared one serves while they are the type's).
      if (type_->ISNVType_Max() != maximum_ || type_->ISNVType_Min() != minimum_) {
        OwnType().SetMax(maximum_);
        OwnType().SetMin(minimum_);
      }
      break;
    case TypeKind::kStruct:
      // Each step under its own guard: one that fails leaves the others to run.
      ContinueOnError([&] {
        fields_ = std::make_shared<CFields>();
        fields_->SetParent(shared_from_this());
        int32_t position = 0;
        // The fields take the warning flag, which a load clears first, not the load's argument.
        fields_->BuildFromType(position, type_->ISNVType_ID(), internal::kPropertyItem, "",
                               default_warning_);
      });
      ContinueOnError([&] { SetTypeLength(fields_->IFields_Length()); });
      ContinueOnError([&] {
        if (element) fields_->LoadValuesFromXml(element);
      });
      ContinueOnError([&] { fields_->SetGlobalKeys(global_key_); });
      ContinueOnError([&] { fields_->SetParentKeys(point_key_); });
      ContinueOnError([&] { default_value_ = IConfigProperty_Value(); });
      break;
    case TypeKind::kUnknown:
      break;
  }
  if (!assumed.empty()) {
    default_value_ = assumed;
    default_warning_ = true;
    if (warn) {
      Warn(name_ + ": Default value not defined into the XML file of the profile; " + assumed +
           " assumed.");
    }
  }
  value_ = default_value_;
}

codec::PointRecord CConfigProperty::PointRecord() const {
  codec::PointRecord record;
  record.key = point_key_;
  record.global_key = global_key_;
  record.name = name_;
  record.direction = "In";
  record.type_id = type_ ? type_->ISNVType_ID() : type_name_;
  record.value = IConfigProperty_Value();
  record.x = x_position_;
  record.y = y_position_;
  record.export_index = connection_index_;
  record.type_override = type_override_;
  record.fields = fields_;
  return record;
}

pugi::xml_node CConfigProperty::WriteXml(pugi::xml_document& document,
                                         pugi::xml_node parent) const {
  pugi::xml_node element = mXML::AppendXmlElement(document, parent, name_, mXML::kNoTextField);
  if (!index_in_file_.empty()) element.append_attribute("Index").set_value(index_in_file_.c_str());
  if (default_warning_) {
    element.append_attribute("DefaultWarning").set_value(mXML::BoolToBit(true).c_str());
  }
  mXML::AppendXmlElement(document, element, "Visible", mXML::BoolToBit(true));
  mXML::AppendXmlElement(document, element, "SNVTType", type_name_);
  if (!sisd_.empty()) mXML::AppendXmlElement(document, element, "SISD", sisd_);
  const codec::LimitTexts texts =
      codec::RecordLimits(fields_, {default_value_, minimum_, maximum_});
  mXML::AppendXmlElement(document, element, "Default", texts.default_value);
  mXML::AppendXmlElement(document, element, "Min", texts.minimum);
  mXML::AppendXmlElement(document, element, "Max", texts.maximum);
  return element;
}

std::string CConfigProperty::ScheduleExchangeText() const {
  if (!type_) RaiseError(ErrorNumber::kObjectNotSet, "the property has no type");
  pugi::xml_document exchange;
  AppendExchangeField(exchange, name_, *type_, value_, fields_);
  std::ostringstream text;
  exchange.first_child().print(text, "", pugi::format_raw);
  return text.str();
}

void CConfigProperty::ApplyScheduleExchangeText(const std::string& text) {
  pugi::xml_document returned;
  if (!returned.load_string(text.c_str())) return;
  const pugi::xml_node field = returned.select_node("//FIELD").node();
  if (!field) return;
  if (fields_ && field.first_child()) {
    for (pugi::xml_node entry : field.child("FIELDS").children("FIELD")) {
      // By name only: a returned "2" names no field, it is not position 2.
      if (const auto* target = fields_->Items().Find(entry.attribute("Name").value())) {
        (*target)->IField_Value(entry.attribute("Value").value());
      }
    }
    Globals::NeedSaveFlag = true;
    return;
  }
  if (pugi::xml_attribute value = field.attribute("Value")) IConfigProperty_Value(value.value());
}

bool CConfigProperty::IsUserTypeId(const std::string& id) { return id >= "40000" && id < "49999"; }

void CConfigProperty::SetIndex(int32_t index) {
  index_ = index;
  connection_index_ = index;
}

void CConfigProperty::SetGlobalKey(const std::string& key) {
  global_key_ = key;
  if (fields_) fields_->SetGlobalKeys(key);
}

void CConfigProperty::SetProfile(const std::shared_ptr<IUnknown>& profile) { profile_ = profile; }


void CConfigProperty::ShowEditor() {
  const auto editor = EditDialogOfKind();
  if (!editor) RaiseError(ErrorNumber::kObjectNotSet, "no editor for the property's type");
  internal::SetDataPoint(*editor, shared_from_this(), false);
  editor->Show();
}

void CConfigProperty::EditSchedule() {
  SetMousePointer(vbHourglass);
  std::shared_ptr<IScheduleEditor> editor;
  ContinueOnError([&] { editor = CreateObjectAs<IScheduleEditor>(kScheduleEditor); });
  SetMousePointer(vbDefault);
  if (!editor) {
    MsgBox("Install SchedulerEditor.dll to edit Schedulers", vbOKOnly);
    ShowEditor();
    return;
  }
  SetMousePointer(vbHourglass);
  editor->xml(ScheduleExchangeText());
  editor->TypeDBPath(ComponentFolder() + "/../../SNVTS.XML");
  SetMousePointer(vbDefault);
  editor->ShowDialog();
  ApplyScheduleExchangeText(editor->xml());
}

codec::ItemTexts CConfigProperty::PropertyTexts() const { return Texts(units_manager_); }

}  // namespace kolvane
