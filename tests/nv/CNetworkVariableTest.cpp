#include "nv/CNetworkVariable.h"

#include "interfaces/IStates.h"
#include "interfaces/ITypeOverride.h"
#include "nv/frmEditNVI.h"
#include "nv/frmEditNVO.h"
#include "types/NvoTable.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

using test::FieldAt;

// A variable filled from one NV element.
std::shared_ptr<CNetworkVariable> Loaded(const std::string& xml) {
  test::ParsedXml parsed(xml);
  auto variable = std::make_shared<CNetworkVariable>();
  variable->LoadFromXml(parsed.Root());
  return variable;
}

// A variable of a type and direction (0 input, 1 output), as a host adds one.
std::shared_ptr<CNetworkVariable> Made(int32_t direction, const std::string& type_name,
                                       const std::string& name = "nv") {
  auto variable = std::make_shared<CNetworkVariable>();
  variable->INetworkVariable_Name(name);
  variable->InitType(direction, type_name);
  return variable;
}

// "x;y #export number" of a variable.
std::string Place(const CNetworkVariable& nv) {
  std::ostringstream text;
  text << nv.INetworkVariable_XPosition() << ";" << nv.INetworkVariable_YPosition() << " #"
       << nv.INetworkVariable_ConnectionIndex();
  return text.str();
}

// "Enum" and its states as "(value,name);...", "Float", or "" for no override.
std::string OverrideText(const std::shared_ptr<IUnknown>& item) {
  const auto overridable = std::dynamic_pointer_cast<IOverridableItem>(item);
  if (!overridable) return "not overridable";
  const auto type_override = overridable->IOverridableItem_TypeOverride();
  if (!type_override) return "";
  const auto states = type_override->ITypeOverride_States();
  const std::string kind = type_override->ITypeOverride_OverridingType();
  return states && states->IStates_Count() > 0 ? kind + " " + states->IStates_ToString() : kind;
}

class CNetworkVariableTest : public ::testing::Test {
 protected:
  test::MessageBoxRecorder boxes;
  test::ScopedDecimalSeparator point{"."};
  test::ScopedCatalogue catalogue{test::kBundledCatalogue, true};
  test::ScopedSaveFlags flags;
};

TEST_F(CNetworkVariableTest, LoadReadsTypeDirectionPlaceExportIndexAndKey) {
  const auto nvi = Loaded(R"(<nviTemp Type="temp_p" Direction="In" Key="P1">
      <ExtendedInfo Location="120;45.5" ExportIndex="7"/></nviTemp>)");
  EXPECT_EQ(nvi->INetworkVariable_SNVTType()->ISNVType_ID(), "temp_p");
  EXPECT_EQ(nvi->INetworkVariable_Direction(), 0);
  EXPECT_EQ(Place(*nvi), "120;46 #7");
  EXPECT_EQ(nvi->INetworkVariable_PointKey(), "P1");
  EXPECT_EQ(nvi->INetworkVariable_Fields(), nullptr);
  EXPECT_NE(std::dynamic_pointer_cast<frmEditNVI>(nvi->OptionsDialog()), nullptr);

  EXPECT_EQ(
      Place(*Loaded(R"(<nvoA Type="temp_p"><ExtendedInfo Location="119.5;44.5" ExportIndex="3"/>
      </nvoA>)")),
      "120;44 #3");

  for (const std::string direction :
       {R"(Direction="in")", R"(Direction="Out")", R"(Direction="IN")", ""}) {
    const auto nv = Loaded("<nv Type=\"temp_p\" " + direction + "/>");
    EXPECT_EQ(nv->INetworkVariable_Direction(), 1) << direction;
    EXPECT_NE(std::dynamic_pointer_cast<frmEditNVO>(nv->OptionsDialog()), nullptr) << direction;
  }

  const auto output_switch = Loaded(R"(<nvoLamp Type="switch" Direction="Out"/>)");
  ASSERT_NE(output_switch->INetworkVariable_Fields(), nullptr);
  EXPECT_EQ(output_switch->INetworkVariable_SNVTType()->ISNVType_Length(), 2);
  EXPECT_EQ(output_switch->OptionsDialog(), nullptr);
  const auto input_switch = Loaded(R"(<nviLamp Type="switch" Direction="In"/>)");
  EXPECT_NE(std::dynamic_pointer_cast<frmEditNVI>(input_switch->OptionsDialog()), nullptr);
  const auto room = Loaded(R"(<nviRoom Type="40003" Direction="In" Key="P3"/>)");
  ASSERT_NE(room->INetworkVariable_Fields(), nullptr);
  EXPECT_EQ(room->INetworkVariable_Fields()->IFields_Count(), 2);
  EXPECT_EQ(room->INetworkVariable_SNVTType()->ISNVType_Length(), 18);
  const auto value = FieldAt(room->INetworkVariable_Fields(), "room.fan.value");
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->IDisplayItem_Key(), "P3.room.fan.value");
  room->INetworkVariable_PointKey("Q9");
  EXPECT_EQ(value->IDisplayItem_Key(), "Q9.room.fan.value");

  // Without ExtendedInfo the place is reset and the export number left alone.
  test::ParsedXml bare(R"(<nvoBare Type="temp_p" Direction="Out" Key="P2"/>)");
  const auto nv = Made(1, "temp_p");
  nv->INetworkVariable_ConnectionIndex(5);
  nv->INetworkVariable_XPosition(3);
  nv->INetworkVariable_YPosition(4);
  nv->LoadFromXml(bare.Root());
  EXPECT_EQ(Place(*nv), "0;0 #5");
  EXPECT_EQ(nv->INetworkVariable_PointKey(), "P2");

  const auto unknown = Loaded(R"(<nvoX Type="no_such" Direction="Out"/>)");
  ASSERT_NE(unknown->INetworkVariable_SNVTType(), nullptr);
  EXPECT_EQ(unknown->INetworkVariable_SNVTType()->ISNVType_ID(), "no_such");
  EXPECT_EQ(unknown->INetworkVariable_SNVTType()->ISNVType_GenType(), "");
  EXPECT_EQ(unknown->INetworkVariable_Fields(), nullptr);
}

TEST_F(CNetworkVariableTest, TypeOverridesOfTheVariableAndItsFields) {
  const auto enumerated = Loaded(R"(<nviMode Type="occupancy" Direction="In">
      <ExtendedInfo><TypeOverride Type="Enum"><States>
        <State Name="Low" Value="-2"/><State Name="Mid" Value="0"/><State Name="High" Value="300"/>
      </States></TypeOverride></ExtendedInfo></nviMode>)");
  EXPECT_EQ(OverrideText(enumerated), "Enum (-2,Low);(0,Mid);(300,High)");

  const auto plain = Loaded(R"(<nviT Type="temp_p" Direction="In">
      <ExtendedInfo><TypeOverride Type="Float"/></ExtendedInfo></nviT>)");
  EXPECT_EQ(OverrideText(plain), "Float");

  const auto untyped = Loaded(R"(<nviT Type="occupancy" Direction="In">
      <ExtendedInfo><TypeOverride><States><State Name="A" Value="1"/></States></TypeOverride>
      </ExtendedInfo></nviT>)");
  EXPECT_EQ(untyped->IOverridableItem_TypeOverride(), nullptr);

  const auto room = Loaded(R"(<nvoRoom Type="40003" Direction="Out">
      <ExtendedInfo><TypeOverride Type="Struct"><Fields>
        <Field Name="fan_mode" Type="Enum"><States><State Name="Auto" Value="0"/></States></Field>
        <Field Name="room" Type="Struct"><Fields>
          <Field Name="occupancy" Type="Float"/>
          <Field Name="fan" Type="Struct"><Fields>
            <Field Name="state" Type="Enum"><States>
              <State Name="Off" Value="0"/><State Name="On" Value="1"/></States></Field>
          </Fields></Field>
        </Fields></Field>
      </Fields></TypeOverride></ExtendedInfo></nvoRoom>)");
  const auto fields = room->INetworkVariable_Fields();
  EXPECT_EQ(OverrideText(room), "");
  EXPECT_EQ(OverrideText(FieldAt(fields, "fan_mode")), "Enum (0,Auto)");
  EXPECT_EQ(OverrideText(FieldAt(fields, "room")), "");
  EXPECT_EQ(OverrideText(FieldAt(fields, "room.occupancy")), "Float");
  EXPECT_EQ(OverrideText(FieldAt(fields, "room.space_temp")), "");
  EXPECT_EQ(OverrideText(FieldAt(fields, "room.fan.state")), "Enum (0,Off);(1,On)");
  EXPECT_EQ(OverrideText(FieldAt(fields, "room.fan.value")), "");
}

TEST_F(CNetworkVariableTest, ConnectionCountsAndItemKinds) {
  const auto input = Made(0, "temp_p");
  EXPECT_FALSE(input->IDisplayItem_IsConnected() || input->IDisplayItem_IsDisplayable() ||
               input->INetworkVariable_IsConnected());
  input->ISubItemConnable_IsConnected(true);
  input->ISubItemConnable_IsConnected(true);
  input->ISubItemConnable_IsConnected(false);
  EXPECT_TRUE(input->IDisplayItem_IsConnected() && input->IDisplayItem_IsDisplayable());
  EXPECT_TRUE(input->INetworkVariable_IsConnected());
  input->ISubItemConnable_IsConnected(false);
  EXPECT_FALSE(input->IDisplayItem_IsConnected() || input->INetworkVariable_IsConnected());

  const auto unconnected = Made(0, "temp_p");
  unconnected->ISubItemConnable_IsConnected(false);
  EXPECT_TRUE(unconnected->IDisplayItem_IsConnected());

  const auto output = Made(1, "temp_p");
  for (int i = 0; i < 3; ++i) output->ISubItemConnable_IsConnected(true);
  EXPECT_TRUE(output->INetworkVariable_IsConnected());
  output->ISubItemConnable_IsConnected(false);
  EXPECT_FALSE(output->IDisplayItem_IsConnected() || output->INetworkVariable_IsConnected());

  // An input is connected through any of its fields; an output only through its own flag.
  for (const int32_t direction : {0, 1}) {
    const auto lamp = Made(direction, "switch");
    const auto state = std::dynamic_pointer_cast<ISubItemConnable>(
        lamp->INetworkVariable_Fields()->IFields_Item("2"));
    ASSERT_NE(state, nullptr);
    state->ISubItemConnable_IsConnected(true);
    EXPECT_EQ(lamp->INetworkVariable_IsConnected(), direction == 0) << direction;
    EXPECT_FALSE(lamp->IDisplayItem_IsConnected()) << direction;
  }

  EXPECT_EQ(std::pair(input->IDisplayItem_ItemType(), output->IDisplayItem_ItemType()),
            std::pair(1, 2));
  EXPECT_TRUE(input->IDisplayItem_IsWritable() && !output->IDisplayItem_IsWritable());
  for (const auto& nv : {input, output}) {
    EXPECT_EQ(nv->ISubItemConnable_ItemType(), 2);
    EXPECT_EQ(nv->INetworkVariable_NodeType(), 2);
  }
  EXPECT_EQ(input->INetworkVariable_SNVTCompatibles(), nullptr);
  EXPECT_TRUE(input->ISubItemConnable_IsSNVTCompatible(""));
  EXPECT_FALSE(input->ISubItemConnable_IsSNVTCompatible("temp_p"));
}

TEST_F(CNetworkVariableTest, CompatibleListsFromTheNvoTable) {
  test::ParsedXml table(R"(<NVOTable><SNVT_5><SNVT_a/><SNVT_b/></SNVT_5>
      <SNVT_12><SNVT_b/></SNVT_12></NVOTable>)");
  EXPECT_EQ(CNetworkVariable::BuildNVOCompatibleList("c", table.document), "");
  EXPECT_EQ(CNetworkVariable::BuildNVOCompatibleList("a", table.document), ",5");
  EXPECT_EQ(CNetworkVariable::BuildNVOCompatibleList("b", table.document), "5,12");

  test::ParsedXml bundled(test::kBundledNvoTable, true);
  const internal::NvoTable nvo_table(bundled.document);
  const auto input = Made(0, "temp_p");
  input->RebuildCompatibles(nvo_table);
  ASSERT_NE(input->INetworkVariable_SNVTCompatibles(), nullptr);
  EXPECT_EQ(input->INetworkVariable_SNVTCompatibles()->ICompatibleSNVTs_ToString(),
            "temp_p,temp,temp_f");
  const auto output = Made(1, "switch");
  output->RebuildCompatibles(nvo_table);
  ASSERT_NE(output->INetworkVariable_SNVTCompatibles(), nullptr);
  EXPECT_EQ(output->INetworkVariable_SNVTCompatibles()->ICompatibleSNVTs_ToString(), "switch");

  EXPECT_TRUE(input->ISubItemConnable_IsSNVTCompatible(""));
  EXPECT_TRUE(input->ISubItemConnable_IsSNVTCompatible("temp_f"));
  EXPECT_FALSE(input->ISubItemConnable_IsSNVTCompatible("TEMP"));
  EXPECT_FALSE(input->ISubItemConnable_IsSNVTCompatible("tem"));
  EXPECT_FALSE(input->ISubItemConnable_IsSNVTCompatible("switch"));
}

TEST_F(CNetworkVariableTest, WhichChangesMarkTheProfileForSaving) {
  const auto nv = Made(1, "temp_p");
  const std::vector<std::tuple<std::string, std::function<void()>, bool>> changes = {
      {"Value", [&] { nv->INetworkVariable_Value("Invalid"); }, true},
      {"XPosition", [&] { nv->INetworkVariable_XPosition(1.5); }, true},
      {"YPosition", [&] { nv->INetworkVariable_YPosition(2.5); }, true},
      {"SendOnDelta", [&] { nv->SendOnDelta("0.5"); }, true},
      {"SendOnDeltaEnabled", [&] { nv->SendOnDeltaEnabled(true); }, true},
      {"ReceiveHeartbeat", [&] { nv->ReceiveHeartbeat(true); }, true},
      {"Name", [&] { nv->INetworkVariable_Name("nvoOther"); }, false},
      {"Tag", [&] { nv->INetworkVariable_Tag("t"); }, false},
      {"K4Offset", [&] { nv->INetworkVariable_K4Offset(4); }, false},
      {"RefValue", [&] { nv->INetworkVariable_RefValue("r"); }, false},
  };
  for (const auto& [what, change, marks] : changes) {
    flags.Clear();
    change();
    EXPECT_EQ(Globals::NeedSaveFlag, marks) << what;
  }
  EXPECT_EQ(nv->INetworkVariable_Value(), "Invalid");
}

TEST_F(CNetworkVariableTest, ValueTextsByKind) {
  test::ScopedDecimalSeparator comma(",");
  const auto temp = Made(0, "temp_p");
  temp->INetworkVariable_Value("21.5");
  EXPECT_EQ(temp->INetworkVariable_Value(), "21,5");
  const auto occupancy = Made(0, "occupancy");
  occupancy->INetworkVariable_Value("1.5.2");
  EXPECT_EQ(occupancy->INetworkVariable_Value(), "1,5.2");
  occupancy->INetworkVariable_Value("OC_BYPASS");
  EXPECT_EQ(occupancy->INetworkVariable_Value(), "OC_BYPASS");
  const auto text = Made(0, "str_asc");
  text->INetworkVariable_Value("  a.b  ");
  EXPECT_EQ(text->INetworkVariable_Value(), "a,b");

  // A structure hands token i-1 of its text to field i and reads the fields back.
  const auto lamp = Made(1, "switch");
  const auto fields = lamp->INetworkVariable_Fields();
  lamp->INetworkVariable_Value("100 TOGGLE_ON");
  EXPECT_EQ(lamp->INetworkVariable_Value(), "100 TOGGLE_ON");
  EXPECT_EQ(FieldAt(fields, "value")->IField_Value(), "100");
  EXPECT_EQ(FieldAt(fields, "state")->IField_Value(), "TOGGLE_ON");
  EXPECT_EQ(lamp->INetworkVariable_RawValue(), "C801");
  lamp->INetworkVariable_Value("100  TOGGLE_ON");
  EXPECT_EQ(lamp->INetworkVariable_Value(), "100");
  EXPECT_EQ(FieldAt(fields, "state")->IField_Value(), "");
  lamp->INetworkVariable_Value("100");
  EXPECT_EQ(lamp->INetworkVariable_Value(), "");
  EXPECT_EQ(FieldAt(fields, "value")->IField_Value(), "");
}

TEST_F(CNetworkVariableTest, DisplayAndRawTexts) {
  const auto temp = Made(0, "temp_p");
  temp->INetworkVariable_Value("21.5");
  EXPECT_EQ(temp->INetworkVariable_DispValue(), "21.5 °C");
  EXPECT_EQ(temp->INetworkVariable_DispMin(), "-273.17 °C");
  EXPECT_EQ(temp->INetworkVariable_DispMax(), "327.66 °C");
  EXPECT_EQ(temp->INetworkVariable_RawValue(), "0866");
  EXPECT_EQ(temp->INetworkVariable_InvalidRaw(), "7FFF");
  temp->INetworkVariable_Value("Invalid");
  EXPECT_EQ(temp->INetworkVariable_Value(), "Invalid");
  EXPECT_EQ(temp->INetworkVariable_DispValue(), "Invalid");

  const auto raw = [](const std::string& type_name, const std::string& value) {
    const auto nv = Made(1, type_name);
    nv->INetworkVariable_Value(value);
    return nv->INetworkVariable_RawValue();
  };
  EXPECT_EQ(raw("occupancy", "OC_BYPASS"), "02");
  EXPECT_EQ(Made(1, "occupancy")->INetworkVariable_InvalidRaw(), "FF");
  EXPECT_EQ(raw("temp_f", "21.5"), "41AC0000");
  EXPECT_EQ(raw("state", "5"), "0005");
  std::string padded = "4869";
  for (int i = 0; i < 28; ++i) padded += "20";
  EXPECT_EQ(raw("str_asc", "Hi"), padded + "00");

  const auto document = std::make_shared<pugi::xml_document>();
  document->load_string("<Profile><NVS/></Profile>");
  const auto previous = Globals::ProfileDocument;
  Globals::ProfileDocument = document;
  const std::string before = test::XmlText(*document);
  EXPECT_EQ(temp->INetworkVariable_XMLSave(), "");
  EXPECT_EQ(test::XmlText(*document), before);
  Globals::ProfileDocument = previous;
}

TEST_F(CNetworkVariableTest, DefaultWarningGatesAssumedFieldDefaults) {
  const auto plain = Made(1, "switch", "nvoLamp");
  EXPECT_TRUE(boxes.boxes.empty());
  const auto plain_fields = plain->INetworkVariable_Fields();
  EXPECT_EQ(FieldAt(plain_fields, "value")->IField_DispDefault(), " %");
  EXPECT_EQ(FieldAt(plain_fields, "state")->IField_DispDefault(), "");
  EXPECT_EQ(FieldAt(plain_fields, "state")->IDisplayItem_ItemType(), 4);
  EXPECT_TRUE(FieldAt(plain_fields, "value")->IDisplayItem_IsWritable());

  const auto assumed = std::make_shared<CNetworkVariable>();
  assumed->INetworkVariable_Name("nvoLamp");
  assumed->DefaultWarning(true);
  assumed->INetworkVariable_SetSnvtType("switch");
  const std::string tail =
      ": Default value not defined into the XML file of the profile; 0 assumed.";
  using Box = test::MessageBoxRecorder::Box;
  EXPECT_EQ(boxes.boxes, (std::vector<Box>{{"nvoLamp.value" + tail, 16, "Warning"},
                                           {"nvoLamp.state" + tail, 16, "Warning"}}));
  const auto fields = assumed->INetworkVariable_Fields();
  EXPECT_EQ(FieldAt(fields, "value")->IField_DispDefault(), "0 %");
  EXPECT_EQ(FieldAt(fields, "state")->IField_DispDefault(), "TOGGLE_OFF");
  EXPECT_EQ(FieldAt(fields, "value")->IDisplayItem_ItemType(), 5);
  EXPECT_FALSE(FieldAt(fields, "state")->IDisplayItem_IsWritable());
}

}  // namespace
}  // namespace kolvane
