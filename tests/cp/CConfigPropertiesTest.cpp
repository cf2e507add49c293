#include "cp/CConfigProperties.h"

#include "CpTestSupport.h"

namespace kolvane {
namespace {

class CConfigPropertiesTest : public test::CpFixture {};

constexpr char kSetpoint[] =
    "<nciSetpoint><SNVTType>temp_p</SNVTType><Default>21.5</Default><Min>10</Min><Max>30</Max>"
    "</nciSetpoint>";

TEST_F(CConfigPropertiesTest, KeysAndIndexesSurviveRemoval) {
  EXPECT_EQ(properties.IConfigProperties_GlobalKey(), "PGeneric_Profile\\CPS");
  EXPECT_EQ(properties.IConfigProperties_ExtendedKey(), "PGeneric_Profile\\CPS");
  EXPECT_EQ(properties.IConfigProperties_CDBUsage(), 0);
  EXPECT_EQ(properties.IConfigProperties_DDBUsage(), 0);
  EXPECT_EQ(properties.IConfigProperties_SDBUsage(), 0);

  std::vector<std::shared_ptr<CConfigProperty>> added;
  for (int i = 0; i < 3; ++i) {
    flags.Clear();
    added.push_back(Add(kSetpoint));
    ASSERT_NE(added.back(), nullptr);
    EXPECT_TRUE(Globals::NeedSaveFlag);
    const std::string key = "PGeneric_Profile\\CPS\\CP" + std::to_string(i + 1);
    EXPECT_EQ(properties.Items().KeyAt(i + 1), "CP" + std::to_string(i + 1));
    EXPECT_EQ(added[i]->IConfigProperty_GlobalKey(), key);
    EXPECT_EQ(added[i]->IConfigProperty_ExtendedKey(), key);
    EXPECT_EQ(added[i]->IConfigProperty_Index(), i);
    EXPECT_EQ(added[i]->IConfigProperty_ConnectionIndex(), -1);
  }
  EXPECT_EQ(profile->changes, 3);
  for (int i = 0; i < 3; ++i) added[i]->IConfigProperty_ConnectionIndex(10 * (i + 1));

  flags.Clear();
  properties.IConfigProperties_Remove(added[1]);
  EXPECT_TRUE(Globals::NeedSaveFlag);
  EXPECT_TRUE(Globals::DisplayIncompatibleFlag);
  EXPECT_EQ(profile->changes, 4);
  ASSERT_EQ(properties.IConfigProperties_Count(), 2);
  EXPECT_EQ(properties.Items().KeyAt(1), "CP1");
  EXPECT_EQ(properties.Items().KeyAt(2), "CP3");
  EXPECT_EQ(added[0]->IConfigProperty_Index(), 0);
  EXPECT_EQ(added[2]->IConfigProperty_Index(), 1);
  EXPECT_EQ(added[0]->IConfigProperty_ConnectionIndex(), 10);
  EXPECT_EQ(added[2]->IConfigProperty_ConnectionIndex(), 30);
  EXPECT_EQ(added[2]->IConfigProperty_GlobalKey(), "PGeneric_Profile\\CPS\\CP3");

  const std::shared_ptr<IConfigProperty> third = added[2];
  EXPECT_EQ(properties.IConfigProperties_Item("CP3"), third);
  EXPECT_EQ(properties.IConfigProperties_Item("cp3"), third);
  EXPECT_EQ(properties.IConfigProperties_Item("2"), third);
  EXPECT_EQ(test::ErrorNumberOf([&] {
              EXPECT_EQ(properties.IConfigProperties_Item("0"), nullptr);
              EXPECT_EQ(properties.IConfigProperties_Item("nope"), nullptr);
              EXPECT_EQ(properties.IConfigProperties_Item("CP2"), nullptr);
            }),
            0);
  EXPECT_EQ(properties.IConfigProperties_NewEnum(),
            (std::vector<std::shared_ptr<IConfigProperty>>{added[0], added[2]}));

  // A property of another collection: nothing moves, the profile still hears of it.
  CConfigProperties other;
  const auto stranger = other.IConfigProperties_AddNewCP("nciStranger", "count");
  properties.IConfigProperties_Remove(stranger);
  EXPECT_EQ(profile->changes, 5);
  EXPECT_EQ(properties.IConfigProperties_Count(), 2);
  EXPECT_EQ(added[2]->IConfigProperty_Index(), 1);
  EXPECT_EQ(added[2]->IConfigProperty_ConnectionIndex(), 30);

  // Keys are never reused; a new property takes the last index.
  boxes.boxes.clear();
  flags.Clear();
  const auto fresh = properties.IConfigProperties_AddNewCP("nciCount", "count");
  ASSERT_NE(fresh, nullptr);
  EXPECT_TRUE(boxes.boxes.empty());
  EXPECT_TRUE(Globals::NeedSaveFlag);
  EXPECT_EQ(profile->changes, 6);
  EXPECT_EQ(properties.Items().KeyAt(3), "CP4");
  EXPECT_EQ(fresh->IConfigProperty_GlobalKey(), "PGeneric_Profile\\CPS\\CP4");
  EXPECT_EQ(fresh->IConfigProperty_Index(), 2);
  EXPECT_EQ(fresh->IConfigProperty_ConnectionIndex(), -1);
  EXPECT_EQ(fresh->IConfigProperty_SNVTType()->ISNVType_ID(), "count");
  EXPECT_EQ(fresh->IConfigProperty_DefaultValue(), "0");
  EXPECT_EQ(fresh->IConfigProperty_Value(), "0");
  EXPECT_EQ(fresh->IConfigProperty_SNVTType()->ISNVType_Min(), "0");
  EXPECT_EQ(fresh->IConfigProperty_SNVTType()->ISNVType_Max(), "65535");
}

TEST_F(CConfigPropertiesTest, InstanceNamesStayUnique) {
  constexpr char kCount[] = "<Setpoint><SNVTType>count</SNVTType><Value>1</Value></Setpoint>";
  const auto first = Add(kCount);
  const auto second = Add(kCount);
  ASSERT_TRUE(first && second);
  // Loaded properties are not instances: their names stay as given.
  EXPECT_EQ(second->IConfigProperty_Name(), "Setpoint");

  first->Instance(true);
  second->Instance(true);
  properties.FixName(*second);
  EXPECT_EQ(second->IConfigProperty_Name(), "Setpoint_1");
  properties.FixName(*first);
  EXPECT_EQ(first->IConfigProperty_Name(), "Setpoint");
  const auto third = Add(kCount);
  ASSERT_NE(third, nullptr);
  third->Instance(true);
  properties.FixName(*third);
  EXPECT_EQ(third->IConfigProperty_Name(), "Setpoint_2");
  EXPECT_EQ(profile->renames,
            (std::vector<std::pair<std::string, std::string>>{
                {"PGeneric_Profile\\CPS\\CP2", "Setpoint_1"},
                {"PGeneric_Profile\\CPS\\CP3", "Setpoint_2"}}));

  // Without a global key the profile is not told.
  const auto loose = std::make_shared<CConfigProperty>();
  loose->IConfigProperty_Name("Setpoint_2");
  loose->Instance(true);
  properties.FixName(*loose);
  EXPECT_EQ(loose->IConfigProperty_Name(), "Setpoint_2_1");
  EXPECT_EQ(profile->renames.size(), 2u);

  // A property that is no instance keeps its name.
  third->Instance(false);
  third->IConfigProperty_Name("Setpoint");
  properties.FixName(*third);
  EXPECT_EQ(third->IConfigProperty_Name(), "Setpoint");
}

TEST_F(CConfigPropertiesTest, AddsFromExportedPointRecord) {
  Add(kSetpoint);
  const pugi::xml_node record = Element(
      R"(<ApPoint Type="temp_p" Value="22.5" Key="K7">)"
      R"(<ExtendedInfo Location="120;45.5" ExportIndex="4"/></ApPoint>)");
  std::string name = "nciExported";
  boxes.boxes.clear();
  flags.Clear();
  const auto exported = properties.AddFromExport(name, record, profile);
  ASSERT_NE(exported, nullptr);
  EXPECT_EQ(name, "nciExported");
  EXPECT_TRUE(boxes.boxes.empty());
  EXPECT_TRUE(Globals::NeedSaveFlag);
  EXPECT_EQ(profile->changes, 2);
  EXPECT_EQ(exported->IConfigProperty_Name(), "nciExported");
  EXPECT_EQ(exported->IConfigProperty_SNVTType()->ISNVType_ID(), "temp_p");
  EXPECT_EQ(exported->IConfigProperty_Value(), "22.5");
  EXPECT_EQ(exported->IConfigProperty_PointKey(), "K7");
  EXPECT_EQ(exported->IConfigProperty_XPosition(), 120);
  EXPECT_EQ(exported->IConfigProperty_YPosition(), 46);
  EXPECT_EQ(exported->IConfigProperty_Index(), 1);
  EXPECT_EQ(exported->IConfigProperty_ConnectionIndex(), -1);
  EXPECT_EQ(exported->IConfigProperty_GlobalKey(), "PGeneric_Profile\\CPS\\CP2");
  EXPECT_EQ(exported->Profile(), profile);
}

}  // namespace
}  // namespace kolvane
