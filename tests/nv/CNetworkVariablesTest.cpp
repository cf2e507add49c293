#include "nv/CNetworkVariables.h"

#include "nv/CNetworkVariable.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

constexpr char kProfile[] = R"(<NVS>
  <nviTemp Type="temp_p" Direction="In" Key="P1"><ExtendedInfo Location="1;2" ExportIndex="7"/></nviTemp>
  <nvoRoom Type="40003" Direction="Out" Key="P2"><ExtendedInfo ExportIndex="8"/></nvoRoom>
  <nvoLamp Type="switch" Direction="Out" Key="P3"><ExtendedInfo ExportIndex="9"/></nvoLamp>
</NVS>)";

class CNetworkVariablesTest : public ::testing::Test {
 protected:
  // Loads the profile's variables into the collection, in document order.
  std::vector<std::shared_ptr<CNetworkVariable>> LoadAll() {
    std::vector<std::shared_ptr<CNetworkVariable>> loaded;
    for (pugi::xml_node element : profile_xml.Root().children()) {
      loaded.push_back(variables.AddFromXml(element.name(), element, profile));
      EXPECT_NE(loaded.back(), nullptr) << element.name();
    }
    return loaded;
  }

  test::MessageBoxRecorder boxes;
  test::ScopedDecimalSeparator point{"."};
  test::ScopedCatalogue catalogue{test::kBundledCatalogue, true};
  test::ScopedSaveFlags flags;
  test::ParsedXml profile_xml{kProfile};
  std::shared_ptr<test::FakeProfile> profile = std::make_shared<test::FakeProfile>();
  CNetworkVariables variables;
};

TEST_F(CNetworkVariablesTest, KeysAndIndexesSurviveRemoval) {
  EXPECT_EQ(variables.INetworkVariables_GlobalKey(), "PGeneric_Profile\\NVS");
  EXPECT_EQ(variables.INetworkVariables_ExtendedKey(), "PGeneric_Profile\\NVS");
  EXPECT_EQ(std::vector<int32_t>(
                {variables.INetworkVariables_CDBUsage(), variables.INetworkVariables_DDBUsage(),
                 variables.INetworkVariables_SDBUsage(), variables.INetworkVariables_ExecTime()}),
            std::vector<int32_t>(4, 0));

  const auto loaded = LoadAll();
  ASSERT_EQ(variables.INetworkVariables_Count(), 3);
  for (int32_t i = 0; i < 3; ++i) {
    const std::string key = "PGeneric_Profile\\NVS\\NV" + std::to_string(i + 1);
    EXPECT_EQ(variables.Items().KeyAt(i + 1), "NV" + std::to_string(i + 1));
    EXPECT_EQ(loaded[i]->INetworkVariable_GlobalKey(), key);
    EXPECT_EQ(loaded[i]->INetworkVariable_ExtendedKey(), key);
    EXPECT_EQ(loaded[i]->INetworkVariable_Index(), i);
    EXPECT_EQ(loaded[i]->INetworkVariable_ConnectionIndex(), i);
  }
  EXPECT_EQ(loaded[0]->INetworkVariable_Name(), "nviTemp");
  EXPECT_EQ(loaded[1]->INetworkVariable_PointKey(), "P2");
  const auto value = test::FieldAt(loaded[1]->INetworkVariable_Fields(), "room.fan.value");
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->IField_GlobalKey(), "PGeneric_Profile\\NVS\\NV2\\room\\fan\\value");
  EXPECT_EQ(value->IDisplayItem_Key(), "P2.room.fan.value");

  variables.INetworkVariables_Remove(loaded[1]);
  ASSERT_EQ(variables.INetworkVariables_Count(), 2);
  EXPECT_EQ(loaded[0]->INetworkVariable_Index(), 0);
  EXPECT_EQ(loaded[2]->INetworkVariable_Index(), 1);
  EXPECT_EQ(loaded[2]->INetworkVariable_ConnectionIndex(), 2);
  EXPECT_EQ(loaded[2]->INetworkVariable_GlobalKey(), "PGeneric_Profile\\NVS\\NV3");
  EXPECT_EQ(variables.INetworkVariables_Item("NV2"), nullptr);
  EXPECT_EQ(variables.INetworkVariables_Item("2"), loaded[2]);

  const auto fourth = variables.AddFromXml("nviTemp2", profile_xml.Root().first_child(), profile);
  ASSERT_NE(fourth, nullptr);
  EXPECT_EQ(variables.Items().KeyAt(3), "NV4");
  EXPECT_EQ(fourth->INetworkVariable_GlobalKey(), "PGeneric_Profile\\NVS\\NV4");
  EXPECT_EQ(fourth->INetworkVariable_Index(), 2);
  EXPECT_EQ(fourth->INetworkVariable_ConnectionIndex(), 2);
  const auto listed = variables.INetworkVariables_NewEnum();
  EXPECT_EQ(listed, (std::vector<std::shared_ptr<INetworkVariable>>{loaded[0], loaded[2], fourth}));
}

TEST_F(CNetworkVariablesTest, ItemFindsByKeyInAnyCaseOrByPosition) {
  const auto loaded = LoadAll();
  std::shared_ptr<INetworkVariable> found;
  for (const std::string key : {"NV2", "nv2", "2"}) {
    EXPECT_EQ(test::ErrorNumberOf([&] { found = variables.INetworkVariables_Item(key); }), 0);
    EXPECT_EQ(found, loaded[1]) << key;
  }
  for (const std::string key : {"x", "0", "4", "NV9", ""}) {
    found = loaded[0];
    EXPECT_EQ(test::ErrorNumberOf([&] { found = variables.INetworkVariables_Item(key); }), 0)
        << key;
    EXPECT_EQ(found, nullptr) << key;
  }
}

TEST_F(CNetworkVariablesTest, AddingAndRemovingMarkTheProfileAndAskForRebuilds) {
  variables.SetProfile(profile);
  const auto loaded = variables.AddFromXml("nviTemp", profile_xml.Root().first_child(), profile);
  ASSERT_NE(loaded, nullptr);
  EXPECT_FALSE(Globals::NeedSaveFlag);
  EXPECT_EQ(profile->rebuilds, 0);
  EXPECT_EQ(loaded->INetworkVariable_ConnectionIndex(), 0);

  const auto added = variables.INetworkVariables_AddNV("nvoLamp", 1, "switch");
  ASSERT_NE(added, nullptr);
  EXPECT_TRUE(Globals::NeedSaveFlag);
  EXPECT_EQ(profile->rebuilds, 1);
  EXPECT_EQ(
      added->INetworkVariable_Name() + " " + added->INetworkVariable_SNVTType()->ISNVType_ID(),
      "nvoLamp switch");
  EXPECT_EQ(added->INetworkVariable_Direction(), 1);
  EXPECT_EQ(added->INetworkVariable_Index(), variables.INetworkVariables_Count() - 1);
  EXPECT_EQ(added->INetworkVariable_ConnectionIndex(), -1);
  EXPECT_EQ(added->INetworkVariable_GlobalKey(), "PGeneric_Profile\\NVS\\NV2");
  EXPECT_FALSE(Globals::DisplayIncompatibleFlag);

  flags.Clear();
  variables.INetworkVariables_Remove(loaded);
  EXPECT_TRUE(Globals::NeedSaveFlag);
  EXPECT_TRUE(Globals::DisplayIncompatibleFlag);
  EXPECT_EQ(profile->rebuilds, 2);
  ASSERT_EQ(variables.INetworkVariables_Count(), 1);
  EXPECT_EQ(added->INetworkVariable_Index(), 0);
  EXPECT_EQ(added->INetworkVariable_ConnectionIndex(), -1);

  // A variable the collection does not hold: nothing removed, the rest happens all the same.
  flags.Clear();
  variables.INetworkVariables_Remove(loaded);
  EXPECT_TRUE(Globals::NeedSaveFlag);
  EXPECT_TRUE(Globals::DisplayIncompatibleFlag);
  EXPECT_EQ(profile->rebuilds, 3);
  EXPECT_EQ(variables.INetworkVariables_Count(), 1);
  EXPECT_EQ(added->INetworkVariable_Index(), 0);
}

}  // namespace
}  // namespace kolvane
