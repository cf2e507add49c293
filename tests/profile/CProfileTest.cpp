// Loading the bundled room-controller profile and what a host reads of it.

#include "ProfileTestSupport.h"

namespace kolvane {
namespace {

using test::CpNamed;
using test::DisplayTexts;
using test::Identifiers;
using test::NvNamed;

class CProfileTest : public test::ProfileFixture {};

TEST_F(CProfileTest, ConstructionNeedsSavingAtOnceAndAnswersTheFixedMembers) {
  Globals::NeedSaveFlag = false;
  const auto profile = CreateProfile();
  EXPECT_TRUE(profile->IProfile_NeedSave());
  EXPECT_EQ(profile->IProfile_NumberNVIs() + profile->IProfile_NumberNVOs(), 0);
  EXPECT_EQ(profile->IProfile_NumberCPs(), 0);
  EXPECT_EQ(profile->IProfile_NodeType(), 1);
  EXPECT_FALSE(profile->IProfile_IsFixed());
  EXPECT_EQ(profile->IProfile_Export("a", "b", "c", "d"), 0);

  profile->IProfile_ViewDatasheet("ignored");
  EXPECT_EQ(profile->Iprofile_XmlLoadValue(), 0);
  EXPECT_EQ(BoxTexts(), (std::vector<std::string>{"DataSheet not available [0, ]",
                                                  "REMOVED: Iprofile_XmlLoadValue [0, ]"}));
}

TEST_F(CProfileTest, FriendSetReadsTheNameAndGivesItBack) {
  const auto profile = NewProfile();
  documents.push_back(test::SharedDocument(test::kBundledProfile));
  auto parent = std::make_shared<test::FakeHost>();
  std::string name;
  profile->IProfile_FriendSet(documents.back(), name, parent, catalogue, nvo_table, "ignored");
  EXPECT_EQ(name, "RoomController");
  EXPECT_EQ(profile->IProfile_Name(), "RoomController");
  EXPECT_EQ(profile->IProfile_GlobalKey(), "PRoomController");
  EXPECT_EQ(profile->IProfile_ExtendedKey(), "PRoomController");
  EXPECT_FALSE(profile->IProfile_DatasheetAvailable());
  EXPECT_EQ(Globals::ProfileDocument, documents.back());

  EXPECT_EQ(profile->IProfile_Parent(), parent);
  profile->IProfile_ClearParent();
  EXPECT_EQ(profile->IProfile_Parent(), nullptr);

  profile->IProfile_Name("Renamed");
  EXPECT_EQ(profile->IProfile_Name(), "Renamed");
  EXPECT_EQ(profile->IProfile_GlobalKey(), "PRoomController");

  // A name handed in wins over the document's.
  const auto named = NewProfile();
  std::string given = "Lobby";
  named->IProfile_FriendSet(documents.back(), given, nullptr, catalogue, nvo_table, "");
  EXPECT_EQ(given, "Lobby");
  EXPECT_EQ(named->IProfile_GlobalKey(), "PLobby");

  // The catalogue handed to FriendSet is taken only when none is set yet.
  Globals::SetSnvtCatalogDocument(nullptr);
  std::string again;
  CreateProfile()->IProfile_FriendSet(documents.back(), again, nullptr, catalogue, nvo_table, "");
  EXPECT_EQ(Globals::SnvtCatalogDocument, catalogue);
  CreateProfile()->IProfile_FriendSet(documents.back(), again, nullptr, nvo_table, nvo_table, "");
  EXPECT_EQ(Globals::SnvtCatalogDocument, catalogue);

  const auto unnamed = Loaded("<Profile><NVs/><CPs/></Profile>", false);
  EXPECT_EQ(unnamed->IProfile_GlobalKey(), "P");
  EXPECT_EQ(unnamed->IProfile_NVs()->INetworkVariables_Count() + unnamed->IProfile_NumberCPs(), 0);
}

TEST_F(CProfileTest, CountsInputsOutputsAndProperties) {
  const auto profile = Loaded(test::kBundledProfile);
  EXPECT_EQ(profile->IProfile_NumberNVIs(), 8);
  EXPECT_EQ(profile->IProfile_NumberNVOs(), 11);
  EXPECT_EQ(profile->IProfile_NumberCPs(), 10);
  EXPECT_EQ(profile->IProfile_NVs()->INetworkVariables_Count(), 19);

  // A second load appends, with keys running on.
  std::string name;
  profile->IProfile_FriendSet(documents.back(), name, nullptr, catalogue, nvo_table, "");
  EXPECT_EQ(profile->IProfile_NumberNVIs(), 16);
  EXPECT_EQ(profile->IProfile_NumberCPs(), 20);
  EXPECT_EQ(profile->IProfile_NVs()->INetworkVariables_Item("NV20")->INetworkVariable_Name(),
            "nviSpaceTemp");

  // Four zones of the same items plus four device variables and two device properties.
  boxes.boxes.clear();
  const auto zones = Loaded(KOLVANE_SOURCE_DIR "/examples/profile-large.xml");
  EXPECT_EQ(zones->IProfile_Name(), "ZoneController4");
  EXPECT_EQ(zones->IProfile_NumberNVIs(), 4 * 8 + 2);
  EXPECT_EQ(zones->IProfile_NumberNVOs(), 4 * 11 + 2);
  EXPECT_EQ(zones->IProfile_NumberCPs(), 4 * 10 + 2);
  EXPECT_EQ(boxes.boxes.size(), 4u * 4u);
}

TEST_F(CProfileTest, ItemsGetRunningKeysInDocumentOrder) {
  const auto profile = Loaded(test::kBundledProfile);
  const auto nvs = profile->IProfile_NVs();
  const auto setpoint = nvs->INetworkVariables_Item("nv6");
  ASSERT_NE(setpoint, nullptr);
  EXPECT_EQ(setpoint->INetworkVariable_Name(), "nviSetpoint");
  EXPECT_EQ(setpoint->INetworkVariable_GlobalKey(), "PGeneric_Profile\\NVS\\NV6");
  EXPECT_EQ(setpoint->INetworkVariable_PointKey(), "P6");
  EXPECT_EQ(setpoint->INetworkVariable_Index(), 5);
  EXPECT_EQ(setpoint->INetworkVariable_Direction(), 0);
  const auto field = setpoint->INetworkVariable_Fields()->IFields_Item("standby_heat");
  EXPECT_EQ(field->IField_GlobalKey(), "PGeneric_Profile\\NVS\\NV6\\standby_heat");
  EXPECT_EQ(std::dynamic_pointer_cast<IDisplayItem>(field)->IDisplayItem_Key(), "P6.standby_heat");
  EXPECT_EQ(nvs->INetworkVariables_Item("NV19")->INetworkVariable_Name(), "nvoEnergy");

  // The export number read from the document gives way to the position.
  const auto outdoor = NvNamed(*profile, "nviOutdoorTemp");
  EXPECT_EQ(outdoor->INetworkVariable_ConnectionIndex(), 2);
  EXPECT_EQ(NvNamed(*profile, "nvoEnergy")->INetworkVariable_ConnectionIndex(), 18);
  EXPECT_EQ(outdoor->INetworkVariable_XPosition(), 40);
  EXPECT_EQ(outdoor->INetworkVariable_YPosition(), 100);
  // A fractional coordinate is rounded half to even.
  EXPECT_EQ(NvNamed(*profile, "nvoHeatOutput")->INetworkVariable_XPosition(), 400);

  const auto cps = profile->IProfile_CPs();
  const auto occupancy = cps->IConfigProperties_Item("CP7");
  EXPECT_EQ(occupancy->IConfigProperty_Name(), "nciOccSetpoints");
  EXPECT_EQ(occupancy->IConfigProperty_GlobalKey(), "PGeneric_Profile\\CPS\\CP7");
  EXPECT_EQ(occupancy->IConfigProperty_Index(), 6);
  EXPECT_EQ(occupancy->IConfigProperty_ConnectionIndex(), -1);
  EXPECT_EQ(occupancy->IConfigProperty_PointKey(), "");
  EXPECT_EQ(occupancy->IConfigProperty_Fields()->IFields_Item("1")->IField_GlobalKey(),
            "PGeneric_Profile\\CPS\\CP7\\occupied_cool");
  EXPECT_EQ(cps->IConfigProperties_Item("CP2")->IConfigProperty_SNVTType()->ISNVType_ID(),
            "temp_diff_p");  // read from a lower-case <snvttype>
}

TEST_F(CProfileTest, CompatibleListsComeFromTheNvoTable) {
  const auto profile = Loaded(test::kBundledProfile);
  EXPECT_EQ(Identifiers(NvNamed(*profile, "nviSpaceTemp")->INetworkVariable_SNVTCompatibles()),
            "temp_p,temp,temp_f");
  EXPECT_EQ(Identifiers(NvNamed(*profile, "nvoLamp")->INetworkVariable_SNVTCompatibles()),
            "switch");
  EXPECT_EQ(Identifiers(NvNamed(*profile, "nvoHeatOutput")->INetworkVariable_SNVTCompatibles()),
            "lev_percent,lev_cont,lev_cont_f,40000");
  EXPECT_EQ(Identifiers(NvNamed(*profile, "nviFanSpeed")->INetworkVariable_SNVTCompatibles()),
            "lev_percent,lev_cont,lev_cont_f,40000");
  EXPECT_EQ(Identifiers(NvNamed(*profile, "nvoEnergy")->INetworkVariable_SNVTCompatibles()),
            "elec_kwh,elec_kwh_l");

  const auto connectable =
      std::dynamic_pointer_cast<ISubItemConnable>(NvNamed(*profile, "nviSpaceTemp"));
  EXPECT_TRUE(connectable->ISubItemConnable_IsSNVTCompatible("temp_f"));
  EXPECT_FALSE(connectable->ISubItemConnable_IsSNVTCompatible("TEMP_F"));
  EXPECT_FALSE(connectable->ISubItemConnable_IsSNVTCompatible("temp_diff_p"));

  // Another table takes effect at the next rebuild.
  profile->Iprofile_SetXmlDomDocs(
      catalogue, test::SharedDocument(
                     "<NVOTable><SNVT_temp_f><SNVT_temp_p/></SNVT_temp_f></NVOTable>", false));
  profile->Iprofile_RebuildCompatibilityList();
  EXPECT_EQ(Identifiers(NvNamed(*profile, "nviSpaceTemp")->INetworkVariable_SNVTCompatibles()),
            "temp_f");
  EXPECT_EQ(Identifiers(NvNamed(*profile, "nvoLamp")->INetworkVariable_SNVTCompatibles()), "");
}

TEST_F(CProfileTest, PropertiesShowDefaultsValuesAndTheTypeLimits) {
  const auto profile = Loaded(test::kBundledProfile);
  const auto shown = [&](const std::string& name) {
    return DisplayTexts(*CpNamed(*profile, name));
  };
  // Numbers: the limits shown are the catalogue's, not the property's own 10 and 30.
  EXPECT_EQ(shown("nciSetpoint"), "21.5 °C | 21.5 °C | -273.17 °C | 327.66 °C");
  EXPECT_EQ(shown("nciSndDelta"), "0.5 K | 0.5 K | -327.68 K | 327.66 K");
  EXPECT_EQ(shown("nciMinSendTime"), "10 s | 10 s | 0 s | 6553.4 s");
  EXPECT_EQ(shown("nciBypassTime"), "0 min | 0 min | 0 min | 65535 min");
  EXPECT_EQ(shown("nciFanSpeedDef"), "50 % | 50 % | 0 % | 100 %");
  EXPECT_EQ(shown("nciLocation"), "none | none |  | ");
  // An enumeration shows its stored value and the state name of its default.
  EXPECT_EQ(shown("nciHvacType"), "1 | HVT_FAN_COIL |  | ");
  EXPECT_EQ(shown("nciOccSetpoints"),
            "{ 23 °C  25 °C  28 °C  21.5 °C  20 °C  16 °C } | "
            "{ 20 °C  20 °C  20 °C  20 °C  20 °C  20 °C } | "
            "{ -273.17 °C  -273.17 °C  -273.17 °C  -273.17 °C  -273.17 °C  -273.17 °C } | "
            "{ 327.66 °C  327.66 °C  327.66 °C  327.66 °C  327.66 °C  327.66 °C }");
  EXPECT_EQ(shown("nciLampDefault"),
            "{ 100 %  TOGGLE_ON } | { 0 %  TOGGLE_OFF } | { 0 %   } | "
            "{ 100 %   }");

  const auto occupancy = CpNamed(*profile, "nciOccSetpoints");
  EXPECT_EQ(occupancy->IConfigProperty_Value(), "{ 23  25  28  21.5  20  16 }");
  EXPECT_EQ(occupancy->IConfigProperty_DefaultValue(), "{ 23  25  28  21.5  20  16 }");
  const auto setpoint = CpNamed(*profile, "nciSetpoint");
  EXPECT_EQ(setpoint->IConfigProperty_SNVTType()->ISNVType_Min(), "10");
  EXPECT_EQ(setpoint->IConfigProperty_SNVTType()->ISNVType_Max(), "30");
  EXPECT_EQ(setpoint->IConfigProperty_RawValue(), "0866");
}

TEST_F(CProfileTest, DecimalCommaShowsInValuesButNotInRawBytes) {
  const auto profile = NewProfile();
  const test::ScopedDecimalSeparator comma(",");
  documents.push_back(test::SharedDocument(test::kBundledProfile));
  std::string name;
  profile->IProfile_FriendSet(documents.back(), name, nullptr, catalogue, nvo_table, "");
  const auto setpoint = CpNamed(*profile, "nciSetpoint");
  EXPECT_EQ(DisplayTexts(*setpoint), "21,5 °C | 21,5 °C | -273,17 °C | 327,66 °C");
  EXPECT_EQ(setpoint->IConfigProperty_RawValue(), "0866");
  EXPECT_EQ(CpNamed(*profile, "nciOccSetpoints")->IConfigProperty_Value(),
            "{ 23  25  28  21,5  20  16 }");
  setpoint->IConfigProperty_XPosition(12.5);
  pugi::xml_document saved;
  profile->Iprofile_XmlSaveValue(saved.append_child("Device"), saved);
  const pugi::xml_node record = saved.select_node("//ApPoint[@Name='nciSetpoint']").node();
  EXPECT_EQ(std::string(record.attribute("Value").value()), "21,5");
  EXPECT_EQ(std::string(record.child("ExtendedInfo").attribute("Location").value()), "12,5;0");
}

TEST_F(CProfileTest, VariablesShowTheirValuesInDisplayUnits) {
  const auto profile = Loaded(test::kBundledProfile);
  const auto space = NvNamed(*profile, "nvoSpaceTemp");
  space->INetworkVariable_Value("22,25");
  EXPECT_EQ(space->INetworkVariable_Value(), "22.25");
  EXPECT_EQ(DisplayTexts(*space), "22.25 °C |  °C | -273.17 °C | 327.66 °C");
  EXPECT_EQ(space->INetworkVariable_RawValue(), "08B1");

  // Structures start from the catalogue defaults of their fields.
  EXPECT_EQ(NvNamed(*profile, "nviSetpoint")->INetworkVariable_DispValue(),
            "{ 20 °C  20 °C  20 °C  20 °C  20 °C  20 °C }");
  EXPECT_EQ(NvNamed(*profile, "nvoLamp")->INetworkVariable_DispValue(), "{ 0 %  TOGGLE_OFF }");
  EXPECT_EQ(NvNamed(*profile, "nvoUnitStatus")->INetworkVariable_DispValue(),
            "{ HVAC_AUTO  0 %  0 %  0 %  0 %  0 %  0 - }");
}

TEST_F(CProfileTest, LoadingWarnsOfEveryAssumedDefault) {
  Loaded(test::kBundledProfile);
  const std::string no_default = test::kNoDefault;
  EXPECT_EQ(BoxTexts(), (std::vector<std::string>{
                            "nciLocation" + no_default + "none assumed.",
                            "nciBypassTime" + no_default + "0 assumed.",
                            "nciLampDefault.value" + no_default + "0 assumed.",
                            "nciLampDefault.state" + no_default + "0 assumed.",
                        }));
}

}  // namespace
}  // namespace kolvane
