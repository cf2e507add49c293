// What a host does with a profile besides loading and saving: adding items, generating the
// device interface, and loading a damaged document.

#include "ProfileTestSupport.h"

namespace kolvane {
namespace {

using test::CpNamed;
using test::NvNamed;

class CProfileHostTest : public test::ProfileFixture {
 protected:
  // Adds an item with no available types; returns its name and point key as "name@key".
  static std::string Add(IProfile& profile, int32_t kind, const std::string& type,
                         const std::string& name, const std::string& key = "") {
    const auto item = profile.Iprofile_AddNetworkItem(kind, type, name, 1, nullptr, key);
    if (const auto variable = std::dynamic_pointer_cast<INetworkVariable>(item)) {
      return variable->INetworkVariable_Name() + "@" + variable->INetworkVariable_PointKey();
    }
    if (const auto property = std::dynamic_pointer_cast<IConfigProperty>(item)) {
      return property->IConfigProperty_Name() + "@" + property->IConfigProperty_PointKey();
    }
    return item ? "?" : "null";
  }
};

TEST_F(CProfileHostTest, AddedItemsGetUniqueNamesAndNewPointKeys) {
  const auto profile = NewProfile();
  EXPECT_EQ(Add(*profile, 2, "temp_p", "A"), "A@P1");
  EXPECT_EQ(Add(*profile, 3, "time_sec", "A"), "A_1@P2");
  EXPECT_EQ(Add(*profile, 2, "switch", "A"), "A_2@P3");
  EXPECT_EQ(Add(*profile, 2, "temp_p", "nviSpaceTemperatureZone01"), "nviSpaceTemperatureZ@P4");
  // The uncut name is the one checked, so a second long name may give the same cut name.
  EXPECT_EQ(Add(*profile, 2, "temp_p", "nviSpaceTemperatureZone02"), "nviSpaceTemperatureZ@P5");
  EXPECT_EQ(Add(*profile, 7, "temp_p", "B"), "null");
  EXPECT_EQ(test::ErrorNumberOf([&] { Add(*profile, 2, "temp_p", "123"); }), 5);
  EXPECT_EQ(profile->IProfile_NumberNVOs(), 4);
  EXPECT_EQ(profile->IProfile_NumberCPs(), 1);

  // A long name that is taken is cut to make room for its suffix.
  EXPECT_EQ(Add(*profile, 3, "temp_p", "nviSpaceTemperatureZ"), "nviSpaceTemperatur_1@P6");

  // An added input is typed, not yet exported, and offered its outputs at once.
  const auto types = std::make_shared<CNVOCompatibleSNVTs>();
  const auto added = std::dynamic_pointer_cast<INetworkVariable>(
      profile->Iprofile_AddNetworkItem(2, "temp_p", "nviTemp", 0, types, "P40"));
  ASSERT_NE(added, nullptr);
  EXPECT_EQ(added->INetworkVariable_Direction(), 0);
  EXPECT_EQ(added->INetworkVariable_ConnectionIndex(), -1);
  EXPECT_EQ(added->INetworkVariable_Index(), 4);
  EXPECT_EQ(added->INetworkVariable_GlobalKey(), "PGeneric_Profile\\NVS\\NV5");
  EXPECT_EQ(added->INetworkVariable_AvailableTypes(), types);
  EXPECT_EQ(test::Identifiers(added->INetworkVariable_SNVTCompatibles()), "temp_p,temp,temp_f");
  EXPECT_EQ(added->INetworkVariable_Fields(), nullptr);
  EXPECT_EQ(NvNamed(*profile, "A_2")->INetworkVariable_Fields()->IFields_Count(), 2);
  EXPECT_TRUE(boxes.boxes.empty());
}

TEST_F(CProfileHostTest, NewPointKeysFollowTheHighestInUse) {
  const auto profile = NewProfile();
  EXPECT_EQ(Add(*profile, 2, "temp_p", "first", "P3"), "first@P3");
  EXPECT_EQ(Add(*profile, 3, "time_sec", "second", "P7"), "second@P7");
  EXPECT_EQ(Add(*profile, 2, "lux", "third"), "third@P8");
  EXPECT_EQ(Add(*profile, 3, "count", "fourth"), "fourth@P9");

  // Keys of a loaded profile count as well.
  EXPECT_EQ(Add(*Loaded(test::kBundledProfile), 2, "temp_p", "nvoExtra"), "nvoExtra@P20");
}

// Records what the profile hands the generator.
class RecordingGenerator final : public IXIFAndTypesGen {
 public:
  explicit RecordingGenerator(int32_t status) : status_(status) {}
  void Source(const std::string& value) override { calls.push_back("Source=" + value); }
  void OutputFolder(const std::string& value) override { calls.push_back("Output=" + value); }
  void XifFile(const std::string& value) override { calls.push_back("Xif=" + value); }
  void TypesFolder(const std::string& value) override { calls.push_back("Types=" + value); }
  void ResourceCatalogue(const std::string& value) override { calls.push_back("Cat=" + value); }
  int32_t Generate() override {
    calls.push_back("Generate");
    return status_;
  }
  std::vector<std::string> calls;

 private:
  int32_t status_;
};

TEST_F(CProfileHostTest, GeneratorGetsFoldersBesideTheCatalogue) {
  struct RestoreFolder {
    ~RestoreFolder() { SetComponentFolder(""); }
  } restore;
  const test::TempFolder temp;
  const std::string component = temp.path + "/bin/lib";
  std::filesystem::create_directories(component);
  SetComponentFolder(component);
  const auto profile = Loaded(test::kBundledProfile);
  EXPECT_EQ(profile->Iprofile_XIFandTypegenerate("Room"), 429);

  auto generator = std::make_shared<RecordingGenerator>(0);
  const test::ScopedComponent registered("TarnXIFandTypesGen.XIFAndTypesGen",
                                         [&] { return generator; });
  const auto expected = [](const std::string& base) {
    return std::vector<std::string>{
        "Source=Profile",          "Output=" + base + "LON", "Xif=" + base + "LON/Room.xif",
        "Types=" + base + "Types", "Cat=LDRF.CAT",           "Generate"};
  };
  EXPECT_EQ(profile->Iprofile_XIFandTypegenerate("Room"), 0);
  EXPECT_EQ(generator->calls, expected(component + "/../../../"));

  temp.Write("snvts.xml", "<SNVTS/>");
  generator = std::make_shared<RecordingGenerator>(3);
  EXPECT_EQ(profile->Iprofile_XIFandTypegenerate("Room"), 3);
  EXPECT_EQ(generator->calls, expected(component + "/../../"));
}

TEST_F(CProfileHostTest, DamagedDocumentLoadsWhatItCan) {
  const auto profile = Loaded(KOLVANE_SOURCE_DIR "/tests/data/profile-bad.xml");
  EXPECT_EQ(profile->IProfile_Name(), "Broken");
  // The stray text among the variables and among the properties becomes an item of its own.
  EXPECT_EQ(profile->IProfile_NumberNVIs(), 3);
  EXPECT_EQ(profile->IProfile_NumberNVOs(), 3);
  EXPECT_EQ(profile->IProfile_NumberCPs(), 4);
  EXPECT_NE(NvNamed(*profile, ""), nullptr);

  const auto untyped = NvNamed(*profile, "nviNoType");
  EXPECT_EQ(untyped->INetworkVariable_SNVTType()->ISNVType_GenType(), "");
  EXPECT_EQ(untyped->INetworkVariable_PointKey(), "P1");
  const auto undirected = NvNamed(*profile, "nvoNoDirection");
  EXPECT_EQ(undirected->INetworkVariable_Direction(), 1);
  EXPECT_EQ(undirected->INetworkVariable_XPosition(), 0);
  EXPECT_EQ(undirected->INetworkVariable_ConnectionIndex(), 1);
  EXPECT_EQ(test::Identifiers(undirected->INetworkVariable_SNVTCompatibles()),
            "temp_p,temp,temp_f");
  const auto unknown = NvNamed(*profile, "nviUnknown");
  EXPECT_EQ(unknown->INetworkVariable_SNVTType()->ISNVType_ID(), "temp_kelvin");
  EXPECT_EQ(unknown->INetworkVariable_PointKey(), "");
  EXPECT_EQ(test::Identifiers(unknown->INetworkVariable_SNVTCompatibles()), "");
  EXPECT_EQ(NvNamed(*profile, "nviLowerIn")->INetworkVariable_Direction(), 1);
  EXPECT_EQ(NvNamed(*profile, "nviGood")->INetworkVariable_YPosition(), 40);
  EXPECT_EQ(CpNamed(*profile, "nciGood")->IConfigProperty_Value(), "45");
  EXPECT_EQ(CpNamed(*profile, "nciOldType")->IConfigProperty_SNVTType()->ISNVType_ID(), "");

  const std::string no_type = ": SNVT Type not defined into the XML file of the profile";
  EXPECT_EQ(BoxTexts(),
            (std::vector<std::string>{"nciNoType" + no_type, no_type, "nciOldType" + no_type}));

  // Every item shows its texts and saves without an error.
  for (const auto& variable : profile->IProfile_NVs()->INetworkVariables_NewEnum()) {
    EXPECT_EQ(test::ErrorNumberOf([&] { test::DisplayTexts(*variable); }), 0)
        << variable->INetworkVariable_Name();
  }
  for (const auto& property : profile->IProfile_CPs()->IConfigProperties_NewEnum()) {
    EXPECT_EQ(test::ErrorNumberOf([&] { test::DisplayTexts(*property); }), 0)
        << property->IConfigProperty_Name();
  }
  pugi::xml_document saved;
  profile->Iprofile_XmlSaveValue(saved.append_child("Device"), saved);
  EXPECT_EQ(std::distance(saved.document_element().first_child().begin(),
                          saved.document_element().first_child().end()),
            10);
}

}  // namespace
}  // namespace kolvane
