// Saving the values of a profile and loading a generic item list.

#include "ProfileTestSupport.h"

namespace kolvane {
namespace {

using test::CpNamed;
using test::NvNamed;

class CProfileSaveTest : public test::ProfileFixture {
 protected:
  // The bundled profile after a few edits and the removal of nvoCO2 and nciMaxSendTime.
  std::shared_ptr<IProfile> Edited() {
    auto profile = Loaded(test::kBundledProfile);
    NvNamed(*profile, "nvoSpaceTemp")->INetworkVariable_Value("22.25");
    NvNamed(*profile, "nviSetpoint")->INetworkVariable_Value("23 25 28 21 19 16");
    NvNamed(*profile, "nvoHeatOutput")->INetworkVariable_Value("45,5");
    NvNamed(*profile, "nvoAlarmText")->INetworkVariable_Value("  Filter dirty  ");
    const auto setpoint = CpNamed(*profile, "nciSetpoint");
    setpoint->IConfigProperty_Value("22");
    setpoint->IConfigProperty_XPosition(700.25);
    setpoint->IConfigProperty_YPosition(80);
    Globals::NeedSaveFlag = Globals::DisplayIncompatibleFlag = false;
    profile->IProfile_NVs()->INetworkVariables_Remove(NvNamed(*profile, "nvoCO2"));
    profile->IProfile_CPs()->IConfigProperties_Remove(CpNamed(*profile, "nciMaxSendTime"));
    return profile;
  }
};

TEST_F(CProfileSaveTest, BothFormsWriteOneRecordPerItemVariablesFirst) {
  const auto profile = Edited();
  EXPECT_TRUE(profile->IProfile_NeedSave());
  EXPECT_TRUE(profile->IProfile_DisplayIncompatible());
  const auto alarm = NvNamed(*profile, "nvoAlarmText");
  EXPECT_EQ(alarm->INetworkVariable_Index(), 15);
  EXPECT_EQ(alarm->INetworkVariable_ConnectionIndex(), 16);
  EXPECT_EQ(CpNamed(*profile, "nciLocation")->IConfigProperty_Index(), 3);
  EXPECT_EQ(profile->IProfile_NumberNVOs(), 10);
  EXPECT_EQ(profile->IProfile_NumberCPs(), 9);

  pugi::xml_document stored;
  EXPECT_EQ(profile->Iprofile_XmlSaveValue(stored.append_child("Device"), stored), 0);
  EXPECT_FALSE(profile->IProfile_NeedSave());
  EXPECT_FALSE(profile->IProfile_DisplayIncompatible());
  EXPECT_TRUE(
      test::MatchesExpectedFile(test::IndentedXml(stored.document_element()), "profile-saved.xml"));

  Globals::NeedSaveFlag = Globals::DisplayIncompatibleFlag = true;
  pugi::xml_document interoperable;
  EXPECT_EQ(profile->Iprofile_SaveValueForInteroperability(interoperable.append_child("Device"),
                                                           interoperable),
            0);
  EXPECT_FALSE(profile->IProfile_NeedSave());
  EXPECT_FALSE(profile->IProfile_DisplayIncompatible());
  EXPECT_TRUE(test::MatchesExpectedFile(test::IndentedXml(interoperable.document_element()),
                                        "profile-saved-interop.xml"));
}

TEST_F(CProfileSaveTest, EverySaveAppendsItsOwnElement) {
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("Device");
  EXPECT_EQ(NewProfile()->Iprofile_XmlSaveValue(root, document), 0);
  EXPECT_EQ(test::XmlText(root), "<Device><ApplicationProfile/></Device>");

  const auto profile = Loaded(test::kBundledProfile);
  profile->Iprofile_XmlSaveValue(root, document);
  profile->Iprofile_SaveValueForInteroperability(root, document);
  std::vector<size_t> records;
  for (pugi::xml_node application : root.children("ApplicationProfile")) {
    records.push_back(std::distance(application.begin(), application.end()));
  }
  EXPECT_EQ(records, (std::vector<size_t>{0, 29, 29}));
  EXPECT_EQ(root.last_child().first_child().attribute("ItemKey").as_string(),
            std::string("PGeneric_Profile\\NVS\\NV1"));
}

TEST_F(CProfileSaveTest, GenericListTakesItemsWithPermanentAsProperties) {
  documents.push_back(test::SharedDocument(R"(<Items>
      <ApPoint Key="P4" Name="nviTemp" Direction="In" Type="temp_p">
        <ExtendedInfo Location="10;20" ExportIndex="3"/></ApPoint>
      <!-- a comment is no item -->
      <ApPoint Key="P5" Name="nciDelay" Direction="In" Type="time_sec" Value="30" Permanent="0">
        <ExtendedInfo Location="50;60" ExportIndex="4"/></ApPoint>
      <ApPoint Key="P6" Name="nvoFlow" Direction="Out" Type="flow"/>
    </Items>)",
                                           false));
  const auto profile = NewProfile();
  auto parent = std::make_shared<test::FakeHost>();
  profile->IProfile_XmlLoad(documents.back()->document_element(), parent);
  EXPECT_EQ(profile->IProfile_Name(), "GenericProfile");
  EXPECT_EQ(profile->IProfile_GlobalKey(), "PGenericProfile");
  EXPECT_EQ(profile->IProfile_Parent(), parent);
  EXPECT_EQ(profile->IProfile_NumberNVIs(), 1);
  EXPECT_EQ(profile->IProfile_NumberNVOs(), 1);
  EXPECT_EQ(profile->IProfile_NumberCPs(), 1);

  const auto temp = NvNamed(*profile, "nviTemp");
  ASSERT_NE(temp, nullptr);
  EXPECT_EQ(temp->INetworkVariable_PointKey(), "P4");
  EXPECT_EQ(temp->INetworkVariable_YPosition(), 20);
  EXPECT_EQ(test::Identifiers(temp->INetworkVariable_SNVTCompatibles()), "temp_p,temp,temp_f");
  const auto delay = CpNamed(*profile, "nciDelay");
  ASSERT_NE(delay, nullptr);
  EXPECT_EQ(delay->IConfigProperty_Value(), "30");
  EXPECT_EQ(delay->IConfigProperty_PointKey(), "P5");
  EXPECT_EQ(delay->IConfigProperty_XPosition(), 50);
  EXPECT_EQ(delay->IConfigProperty_GlobalKey(), "PGeneric_Profile\\CPS\\CP1");
  EXPECT_EQ(NvNamed(*profile, "nvoFlow")->INetworkVariable_GlobalKey(),
            "PGeneric_Profile\\NVS\\NV2");
  EXPECT_TRUE(boxes.boxes.empty());
}

// Every saved record carries "Permanent", so all of them come back as properties.
TEST_F(CProfileSaveTest, SavedRecordsReadBackAsProperties) {
  const auto profile = Edited();
  pugi::xml_document saved;
  profile->Iprofile_SaveValueForInteroperability(saved.append_child("Device"), saved);
  boxes.boxes.clear();

  const auto reread = NewProfile();
  reread->IProfile_XmlLoad(saved.document_element().child("ApplicationProfile"), nullptr);
  EXPECT_EQ(reread->IProfile_NumberNVIs() + reread->IProfile_NumberNVOs(), 0);
  EXPECT_EQ(reread->IProfile_NumberCPs(),
            profile->IProfile_NVs()->INetworkVariables_Count() + profile->IProfile_NumberCPs());
  const auto space = CpNamed(*reread, "nvoSpaceTemp");
  ASSERT_NE(space, nullptr);
  EXPECT_EQ(space->IConfigProperty_Value(), "22.25");
  EXPECT_EQ(space->IConfigProperty_PointKey(), "P2");
  EXPECT_EQ(space->IConfigProperty_XPosition(), 400);
  EXPECT_EQ(CpNamed(*reread, "nciSetpoint")->IConfigProperty_DispValue(), "22 °C");
  EXPECT_EQ(CpNamed(*reread, "nciSetpoint")->IConfigProperty_YPosition(), 80);
  EXPECT_TRUE(boxes.boxes.empty());
}

}  // namespace
}  // namespace kolvane
