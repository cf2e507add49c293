#include "nv/CNetworkVariable.h"

#include "nv/CNetworkVariables.h"
#include "types/NvoTable.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

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
std::string OverrideText(const std::shared_ptr<IOverridableItem>& item) {
  const auto type_override = item->IOverridableItem_TypeOverride();
  if (!type_override) return "";
  const auto states = type_override->ITypeOverride_States();
  const std::string kind = type_override->ITypeOverride_OverridingType();
  return states && states->IStates_Count() > 0 ? kind + " " + states->IStates_ToString() : kind;
}

class CNetworkVariableTest : public CatalogueFixture {
 protected:
  // A variable filled from one NV element.
  std::shared_ptr<CNetworkVariable> Loaded(const std::string& xml) {
    auto variable = std::make_shared<CNetworkVariable>();
    variable->LoadFromXml(Element(xml));
    return variable;
  }
};

TEST_F(CNetworkVariableTest, LoadReadsTypeDirectionPlaceExportIndexAndKey) {
  const auto nvi = Loaded(R"(<nviTemp Type="temp_p" Direction="In" Key="P1">
      <ExtendedInfo Location="120;45.5" ExportIndex="7"/></nviTemp>)");
  EXPECT_EQ(
      nvi->INetworkVariable_SNVTType()->ISNVType_ID() + " " + nvi->INetworkVariable_PointKey(),
      "temp_p P1");
  EXPECT_EQ(nvi->INetworkVariable_Direction(), 0);
  EXPECT_EQ(Place(*nvi), "120;46 #7");
  EXPECT_NE(std::dynamic_pointer_cast<frmEditNVI>(nvi->OptionsDialog()), nullptr);

  // Only "In" makes an input.
  for (const std::string direction :
       {R"(Direction="in")", R"(Direction="Out")", R"(Direction="IN")", ""}) {
    const auto nv = Loaded("<nv Type=\"temp_p\" " + direction + "/>");
    EXPECT_EQ(nv->INetworkVariable_Direction(), 1) << direction;
  }

  const auto room = Loaded(R"(<nviRoom Type="40003" Direction="In" Key="P3"/>)");
  const auto value = NotNull(FieldAt(room->INetworkVariable_Fields(), "room.fan.value"));
  EXPECT_EQ(value->IDisplayItem_Key(), "P3.room.fan.value");
  room->INetworkVariable_PointKey("Q9");
  EXPECT_EQ(value->IDisplayItem_Key(), "Q9.room.fan.value");

  // Without ExtendedInfo the place is reset and the export number left alone.
  const auto nv = Made(1, "temp_p");
  nv->INetworkVariable_ConnectionIndex(5);
  nv->INetworkVariable_XPosition(3);
  nv->INetworkVariable_YPosition(4);
  nv->LoadFromXml(Element(R"(<nvoBare Type="temp_p" Direction="Out" Key="P2"/>)"));
  EXPECT_EQ(Place(*nv), "0;0 #5");

  const auto unknown = Loaded(R"(<nvoX Type="no_such" Direction="Out"/>)");
  EXPECT_EQ(NotNull(unknown->INetworkVariable_SNVTType())->ISNVType_GenType(), "");
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
  // clang-format off
  const std::pair<const char*, const char*> overrides[] = {
      {"fan_mode", "Enum (0,Auto)"}, {"room", ""}, {"room.occupancy", "Float"},
      {"room.space_temp", ""}, {"room.fan.state", "Enum (0,Off);(1,On)"}, {"room.fan.value", ""}};
  // clang-format on
  for (const auto& [path, text] : overrides) EXPECT_EQ(OverrideText(FieldAt(fields, path)), text);
}

TEST_F(CNetworkVariableTest, ConnectionsAndItemKinds) {
  // An input counts its connections (and is listed while connected); an output keeps only the
  // last flag.
  const auto input = Made(0, "temp_p"), output = Made(1, "temp_p");
  for (const bool connect : {true, true, false}) {
    input->ISubItemConnable_IsConnected(connect);
    output->ISubItemConnable_IsConnected(connect);
  }
  EXPECT_TRUE(input->IDisplayItem_IsConnected() && input->IDisplayItem_IsDisplayable());
  EXPECT_FALSE(output->IDisplayItem_IsConnected() || output->INetworkVariable_IsConnected());
  input->ISubItemConnable_IsConnected(false);
  EXPECT_FALSE(input->IDisplayItem_IsDisplayable() || input->INetworkVariable_IsConnected());

  // An input is connected through any of its fields; an output only through its own flag.
  for (const int32_t direction : {0, 1}) {
    const auto lamp = Made(direction, "switch");
    FieldAt(lamp->INetworkVariable_Fields(), "state")->ISubItemConnable_IsConnected(true);
    EXPECT_EQ(lamp->INetworkVariable_IsConnected(), direction == 0) << direction;
    EXPECT_FALSE(lamp->IDisplayItem_IsConnected()) << direction;
  }

  EXPECT_EQ(std::tuple(input->IDisplayItem_ItemType(), input->IDisplayItem_IsWritable(),
                       output->IDisplayItem_ItemType(), output->IDisplayItem_IsWritable()),
            std::tuple(1, true, 2, false));
  // Before its list is built a variable fits no type.
  EXPECT_FALSE(input->ISubItemConnable_IsSNVTCompatible("temp_p"));
}

TEST_F(CNetworkVariableTest, CompatibleListsFromTheNvoTable) {
  const internal::NvoTable nvo_table(*Parsed(kTestNvoTable, true));
  const auto input = Made(0, "temp_p"), output = Made(1, "switch");
  // An input lists the outputs that take its type, an output the types it takes.
  input->RebuildCompatibles(nvo_table);
  output->RebuildCompatibles(nvo_table);
  EXPECT_EQ(Identifiers(input->INetworkVariable_SNVTCompatibles()), "temp_p,temp,temp_f");
  EXPECT_EQ(Identifiers(output->INetworkVariable_SNVTCompatibles()), "switch");

  // Whole identifiers, in their case; an empty one always fits.
  EXPECT_TRUE(input->ISubItemConnable_IsSNVTCompatible("") &&
              input->ISubItemConnable_IsSNVTCompatible("temp_f"));
  for (const char* id : {"TEMP", "tem", "switch"}) {
    EXPECT_FALSE(input->ISubItemConnable_IsSNVTCompatible(id)) << id;
  }
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
    ClearFlags();
    change();
    EXPECT_EQ(Globals::NeedSaveFlag, marks) << what;
  }
  EXPECT_EQ(nv->INetworkVariable_Value(), "Invalid");
}

TEST_F(CNetworkVariableTest, ValueTextsByKind) {
  ScopedDecimalSeparator comma(",");
  // Numbers, enumerations and texts alike are localised; a text is trimmed as well.
  const std::tuple<const char*, const char*, const char*> values[] = {
      {"temp_p", "21.5", "21,5"},
      {"occupancy", "1.5.2", "1,5.2"},
      {"occupancy", "OC_BYPASS", "OC_BYPASS"},
      {"str_asc", "  a.b  ", "a,b"}};
  for (const auto& [type_name, value, shown] : values) {
    const auto nv = Made(0, type_name);
    nv->INetworkVariable_Value(value);
    EXPECT_EQ(nv->INetworkVariable_Value(), shown) << type_name << " " << value;
  }

  // A structure hands token i-1 of its text to field i and reads the fields back.
  const auto lamp = Made(1, "switch");
  const auto fields = lamp->INetworkVariable_Fields();
  lamp->INetworkVariable_Value("100 TOGGLE_ON");
  EXPECT_EQ(lamp->INetworkVariable_Value(), "100 TOGGLE_ON");
  EXPECT_EQ(FieldAt(fields, "state")->IField_Value(), "TOGGLE_ON");
  // Tokens are split at single blanks: two blanks make an empty token. Reading the value hands
  // the tokens to the fields first.
  lamp->INetworkVariable_Value("100  TOGGLE_ON");
  EXPECT_EQ(lamp->INetworkVariable_Value(), "100");
  EXPECT_EQ(FieldAt(fields, "state")->IField_Value(), "");
  lamp->INetworkVariable_Value("100");
  EXPECT_EQ(lamp->INetworkVariable_Value(), "");
  EXPECT_EQ(FieldAt(fields, "value")->IField_Value(), "");
}

// An input has only its heartbeat option, an output only its threshold, and each only while on;
// anything else has none.
TEST_F(CNetworkVariableTest, OptionsUnderTheirRecordNames) {
  using Options = std::map<std::string, std::string>;
  const auto input = Made(0, "temp_p");
  const auto output = Made(1, "temp_p");
  EXPECT_EQ(NetworkVariableOptions(input), Options{});
  EXPECT_EQ(NetworkVariableOptions(output), Options{});
  for (const auto& nv : {input, output}) {
    nv->ReceiveHeartbeat(true);
    nv->SendOnDelta("0.5");
    nv->SendOnDeltaEnabled(true);
  }
  EXPECT_EQ(NetworkVariableOptions(input), (Options{{"RcvHrtBtEnable", "1"}}));
  EXPECT_EQ(NetworkVariableOptions(output), (Options{{"SendOnDelta", "0.5"}}));
  output->SendOnDeltaEnabled(false);
  EXPECT_EQ(NetworkVariableOptions(output), Options{});
  EXPECT_EQ(NetworkVariableOptions(std::make_shared<CNetworkVariables>()), Options{});
  EXPECT_EQ(NetworkVariableOptions(nullptr), Options{});
}

TEST_F(CNetworkVariableTest, DisplayAndRawTexts) {
  const auto temp = Made(0, "temp_p");
  EXPECT_EQ(temp->INetworkVariable_InvalidRaw(), "7FFF");

  const auto text = Made(1, "str_asc");
  text->INetworkVariable_Value("Hi");
  std::string padded = "4869";
  for (int i = 0; i < 28; ++i) padded += "20";
  EXPECT_EQ(text->INetworkVariable_RawValue(), padded + "00");
}

TEST_F(CNetworkVariableTest, DefaultWarningGatesAssumedFieldDefaults) {
  // Without the flag the fields take no default and warn of nothing, even when asked to.
  const auto plain = Made(1, "switch", "nvoLamp");
  EXPECT_EQ(FieldAt(plain->INetworkVariable_Fields(), "state")->IField_DispDefault(), "");
  EXPECT_EQ(FieldAt(plain->INetworkVariable_Fields(), "value")->IField_DispDefault(), " %");
  BuildFields(std::make_shared<FakeOwner>(2), "40003", "", true);
  EXPECT_TRUE(boxes.boxes.empty());

  const auto assumed = std::make_shared<CNetworkVariable>();
  assumed->INetworkVariable_Name("nvoLamp");
  assumed->DefaultWarning(true);
  assumed->INetworkVariable_SetSnvtType("switch");
  EXPECT_EQ(boxes.boxes,
            (Boxes{DefaultBox("nvoLamp.value", "0"), DefaultBox("nvoLamp.state", "0")}));
  const auto state = FieldAt(assumed->INetworkVariable_Fields(), "state");
  EXPECT_EQ(state->IField_DispDefault() + "|" + std::to_string(state->IDisplayItem_ItemType()),
            "TOGGLE_OFF|5");
}

constexpr char kVariables[] = R"(<NVS>
  <nviTemp Type="temp_p" Direction="In" Key="P1">
    <ExtendedInfo Location="1;2" ExportIndex="7"/></nviTemp>
  <nvoRoom Type="40003" Direction="Out" Key="P2"><ExtendedInfo ExportIndex="8"/></nvoRoom>
  <nvoLamp Type="switch" Direction="Out" Key="P3"><ExtendedInfo ExportIndex="9"/></nvoLamp>
</NVS>)";

// "global key index export-number" of a variable.
std::string Keys(const INetworkVariable& nv) {
  return nv.INetworkVariable_GlobalKey() + " " + std::to_string(nv.INetworkVariable_Index()) + " " +
         std::to_string(nv.INetworkVariable_ConnectionIndex());
}

class CNetworkVariablesTest : public CatalogueFixture {
 protected:
  std::shared_ptr<FakeProfile> profile = std::make_shared<FakeProfile>();
  const pugi::xml_node nvs = Element(kVariables);
  CNetworkVariables variables;
};

TEST_F(CNetworkVariablesTest, KeysAndIndexesSurviveRemoval) {
  // Loading numbers the variables in document order; the export index read is not kept.
  std::vector<std::shared_ptr<CNetworkVariable>> loaded;
  for (pugi::xml_node element : nvs.children()) {
    loaded.push_back(NotNull(variables.AddFromXml(element.name(), element, profile)));
  }
  EXPECT_EQ(Keys(*loaded[0]), "PGeneric_Profile\\NVS\\NV1 0 0");
  EXPECT_EQ(Keys(*loaded[2]), "PGeneric_Profile\\NVS\\NV3 2 2");
  EXPECT_EQ(FieldAt(loaded[1]->INetworkVariable_Fields(), "room.fan.value")->IField_GlobalKey(),
            "PGeneric_Profile\\NVS\\NV2\\room\\fan\\value");

  variables.INetworkVariables_Remove(loaded[1]);
  EXPECT_EQ(Keys(*loaded[2]), "PGeneric_Profile\\NVS\\NV3 1 2");
  EXPECT_EQ(variables.INetworkVariables_Item("NV2"), nullptr);
  EXPECT_EQ(variables.INetworkVariables_Item("2"), loaded[2]);

  const auto fourth = NotNull(variables.AddFromXml("nviTemp2", nvs.first_child(), profile));
  EXPECT_EQ(Keys(*fourth), "PGeneric_Profile\\NVS\\NV4 2 2");
  EXPECT_EQ(variables.INetworkVariables_NewEnum(),
            (std::vector<std::shared_ptr<INetworkVariable>>{loaded[0], loaded[2], fourth}));
}

TEST_F(CNetworkVariablesTest, AddingAndRemovingMarkTheProfileAndAskForRebuilds) {
  variables.SetProfile(profile);
  const auto loaded = NotNull(variables.AddFromXml("nviTemp", nvs.first_child(), profile));
  EXPECT_FALSE(Globals::NeedSaveFlag);
  EXPECT_EQ(profile->rebuilds, 0);

  const auto added = NotNull(variables.INetworkVariables_AddNV("nvoLamp", 1, "switch"));
  EXPECT_TRUE(Globals::NeedSaveFlag);
  EXPECT_FALSE(Globals::DisplayIncompatibleFlag);
  EXPECT_EQ(profile->rebuilds, 1);
  EXPECT_EQ(added->INetworkVariable_SNVTType()->ISNVType_ID() + " " + Keys(*added),
            "switch PGeneric_Profile\\NVS\\NV2 1 -1");
  EXPECT_EQ(added->INetworkVariable_Direction(), 1);

  // Removing a variable the collection no longer holds removes nothing; the rest happens anyway.
  for (const int rebuilds : {2, 3}) {
    ClearFlags();
    variables.INetworkVariables_Remove(loaded);
    EXPECT_TRUE(Globals::NeedSaveFlag && Globals::DisplayIncompatibleFlag);
    EXPECT_EQ(profile->rebuilds, rebuilds);
    EXPECT_EQ(variables.INetworkVariables_Count(), 1);
    EXPECT_EQ(Keys(*added), "PGeneric_Profile\\NVS\\NV2 0 -1");
  }
}

}  // namespace
}  // namespace kolvane::test
