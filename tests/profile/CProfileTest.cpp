// A profile as a host uses it: loading the bundled room-controller profile, what is read of it,
// adding items, generating the device interface, loading a damaged document and saving values.

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

using CProfileTest = ProfileFixture;

TEST_F(CProfileTest, NewProfileNeedsSavingAndReportsWhatItLacks) {
  const auto profile = CreateProfile();
  EXPECT_TRUE(profile->IProfile_NeedSave());
  profile->IProfile_ViewDatasheet("ignored");
  EXPECT_EQ(profile->Iprofile_XmlLoadValue(), 0);
  EXPECT_EQ(boxes.boxes,
            (Boxes{{"DataSheet not available", 0, ""}, {"REMOVED: Iprofile_XmlLoadValue", 0, ""}}));
}

TEST_F(CProfileTest, FriendSetReadsTheNameAndGivesItBack) {
  const auto profile = NewProfile();
  const auto document = documents.emplace_back(Parsed(kRoomProfile, true));
  std::string name;
  profile->IProfile_FriendSet(document, name, nullptr, catalogue.document, nvo_table, "ignored");
  EXPECT_EQ(name + " " + profile->IProfile_Name() + " " + profile->IProfile_GlobalKey(),
            "RoomController RoomController PRoomController");
  EXPECT_EQ(Globals::ProfileDocument, document);
  // A new name leaves the global key as it was.
  profile->IProfile_Name("Renamed");
  EXPECT_EQ(profile->IProfile_Name() + " " + profile->IProfile_GlobalKey(),
            "Renamed PRoomController");

  // A name handed in wins over the document's.
  std::string given = "Lobby";
  const auto named = NewProfile();
  named->IProfile_FriendSet(document, given, nullptr, catalogue.document, nvo_table, "");
  EXPECT_EQ(given + " " + named->IProfile_GlobalKey(), "Lobby PLobby");

  // The catalogue handed to FriendSet is taken only when none is set yet.
  Globals::SetSnvtCatalogDocument(nullptr);
  for (const auto& offered : {catalogue.document, nvo_table}) {
    std::string again;
    CreateProfile()->IProfile_FriendSet(document, again, nullptr, offered, nvo_table, "");
    EXPECT_EQ(Globals::SnvtCatalogDocument, catalogue.document);
  }

  const auto unnamed = Loaded("<Profile><NVs/><CPs/></Profile>", false);
  EXPECT_EQ(unnamed->IProfile_GlobalKey(), "P");
  EXPECT_EQ(unnamed->IProfile_NVs()->INetworkVariables_Count() + unnamed->IProfile_NumberCPs(), 0);
}

TEST_F(CProfileTest, CountsItemsAndWarnsOfEveryAssumedDefault) {
  const auto profile = Loaded();
  // A structured property's fields take its warning flag, which a load clears: no boxes for them.
  EXPECT_EQ(boxes.boxes,
            (Boxes{DefaultBox("nciLocation", "none"), DefaultBox("nciBypassTime", "0")}));
  EXPECT_EQ(std::tuple(profile->IProfile_NumberNVIs(), profile->IProfile_NumberNVOs(),
                       profile->IProfile_NumberCPs()),
            std::tuple(8, 11, 10));

  // A second load appends, with keys running on.
  Load(profile, kRoomProfile);
  EXPECT_EQ(std::pair(profile->IProfile_NumberNVIs(), profile->IProfile_NumberCPs()),
            std::pair(16, 20));
  EXPECT_EQ(profile->IProfile_NVs()->INetworkVariables_Item("NV20")->INetworkVariable_Name(),
            "nviSpaceTemp");

  // Four zones of the same items plus four device variables and two device properties.
  boxes.boxes.clear();
  const auto zones = Loaded(KOLVANE_SOURCE_DIR "/examples/profile-large.xml");
  EXPECT_EQ(std::tuple(zones->IProfile_NumberNVIs(), zones->IProfile_NumberNVOs(),
                       zones->IProfile_NumberCPs()),
            std::tuple(4 * 8 + 2, 4 * 11 + 2, 4 * 10 + 2));
  EXPECT_EQ(boxes.boxes.size(), 4u * 2u);
}

// The VAV example uses many types of the full catalogue: it loads without a message, every item
// gives its display texts and raw bytes, the property bounds are kept, and it saves whole.
TEST_F(CProfileTest, VavExampleLoadsShowsAndSaves) {
  const auto profile = Loaded(KOLVANE_SOURCE_DIR "/examples/profile-vav.xml");
  EXPECT_TRUE(boxes.boxes.empty());
  EXPECT_EQ(std::tuple(profile->IProfile_Name(), profile->IProfile_NumberNVIs(),
                       profile->IProfile_NumberNVOs(), profile->IProfile_NumberCPs()),
            std::tuple(std::string("VavController"), 17, 21, 20));
  for (const auto& variable : profile->IProfile_NVs()->INetworkVariables_NewEnum()) {
    const auto type = variable->INetworkVariable_SNVTType();
    EXPECT_FALSE(type->ISNVType_LUIType().empty()) << variable->INetworkVariable_Name();
    // An enumeration without a value has no raw form (no state is named).
    if (type->ISNVType_GenType() != "Enum") {
      EXPECT_EQ(variable->INetworkVariable_RawValue().size(),
                2 * static_cast<size_t>(type->ISNVType_Length()))
          << variable->INetworkVariable_Name();
    }
    EXPECT_NO_THROW(DisplayTexts(*variable));
  }
  const auto time = NvNamed(*profile, "nviTimeSet");
  time->INetworkVariable_Value("2026 11 24 8 30 0");
  // Reading a structure's value hands its texts to the fields, whose bytes make the raw value.
  EXPECT_EQ(time->INetworkVariable_Value(), "2026 11 24 8 30 0");
  EXPECT_EQ(time->INetworkVariable_RawValue(), "07EA0B18081E00");
  const auto flow = CpNamed(*profile, "nciMinFlow");
  EXPECT_EQ(flow->IConfigProperty_SNVTType()->ISNVType_Max(), "600");
  EXPECT_EQ(flow->IConfigProperty_RawValue(), "0FA0");
  EXPECT_EQ(CpNamed(*profile, "nciSetpoints")->IConfigProperty_Value(),
            "{ 24  26  28  21  19  16 }");
  pugi::xml_document saved;
  profile->Iprofile_XmlSaveValue(saved.append_child("Device"), saved);
  EXPECT_EQ(saved.select_nodes("//ApPoint").size(), 58u);
  EXPECT_TRUE(boxes.boxes.empty());
}

// Every item of the bundled profile opens its own dialog from SetValue.
TEST_F(CProfileTest, SetValueOpensTheDialogOfEachItem) {
  const auto profile = Loaded();
  ScopedFormHost user;
  for (const char* key : {"nciSetpoint", "nciLocation", "nciHvacType", "nciLampDefault"}) {
    for (const auto& cp : profile->IProfile_CPs()->IConfigProperties_NewEnum()) {
      if (cp->IConfigProperty_Name() == key) cp->IConfigProperty_SetValue();
    }
  }
  for (const char* key : {"nviSpaceTemp", "nvoSpaceTemp"}) {
    for (const auto& nv : profile->IProfile_NVs()->INetworkVariables_NewEnum()) {
      if (nv->INetworkVariable_Name() == key) nv->INetworkVariable_SetValue();
    }
  }
  EXPECT_EQ(user.host->captions,
            (std::vector<std::string>{"Numeric Value", "Text Value", "Enumeration Value",
                                      "Structure Value", "Input Options", "Output Options"}));
}

TEST_F(CProfileTest, CompatibleListsComeFromTheNvoTable) {
  const auto profile = Loaded();
  const auto compatibles = [&](const std::string& name) {
    return Identifiers(NvNamed(*profile, name)->INetworkVariable_SNVTCompatibles());
  };
  EXPECT_EQ(compatibles("nvoHeatOutput"), "lev_percent,lev_cont,lev_cont_f,40000");
  EXPECT_EQ(compatibles("nviSpaceTemp"), "temp_p,temp,temp_f");

  // Another table takes effect at the next rebuild.
  profile->Iprofile_SetXmlDomDocs(
      catalogue.document, Parsed("<NVOTable><SNVT_temp_f><SNVT_temp_p/></SNVT_temp_f></NVOTable>"));
  profile->Iprofile_RebuildCompatibilityList();
  EXPECT_EQ(compatibles("nviSpaceTemp"), "temp_f");
  EXPECT_EQ(compatibles("nvoLamp"), "");
}

TEST_F(CProfileTest, ItemsShowValuesDefaultsAndTheTypeLimits) {
  const auto profile = Loaded();
  const auto shown = [&](const std::string& name) {
    return DisplayTexts(*CpNamed(*profile, name));
  };
  EXPECT_EQ(shown("nciLocation"), "none | none |  | ");
  // An enumeration shows its stored value and the state name of its default.
  EXPECT_EQ(shown("nciHvacType"), "1 | HVT_FAN_COIL |  | ");
  // A structure's default is its fields' catalogue defaults, not the value it was loaded with.
  EXPECT_EQ(shown("nciLampDefault"),
            "{ 100 %  TOGGLE_ON } | { 0 %  TOGGLE_OFF } | { 0 %   } | { 100 %   }");

  // A variable has no default.
  const auto space = NvNamed(*profile, "nvoSpaceTemp");
  space->INetworkVariable_Value("22,25");
  EXPECT_EQ(DisplayTexts(*space), "22.25 °C |  °C | -273.17 °C | 327.66 °C");
}

TEST_F(CProfileTest, DecimalCommaShowsInSavedRecords) {
  const auto profile = NewProfile();
  const ScopedDecimalSeparator comma(",");
  Load(profile, kRoomProfile);
  CpNamed(*profile, "nciSetpoint")->IConfigProperty_XPosition(12.5);
  pugi::xml_document saved;
  profile->Iprofile_XmlSaveValue(saved.append_child("Device"), saved);
  const pugi::xml_node record = saved.select_node("//ApPoint[@Name='nciSetpoint']").node();
  EXPECT_EQ(std::string(record.attribute("Value").value()), "21,5");
  EXPECT_EQ(std::string(record.child("ExtendedInfo").attribute("Location").value()), "12,5;0");
}

// Adds an item with no available types; returns its name and point key as "name@key".
std::string Add(IProfile& profile, int32_t kind, const std::string& type, const std::string& name,
                const std::string& key = "") {
  const auto item = profile.Iprofile_AddNetworkItem(kind, type, name, 1, nullptr, key);
  if (const auto variable = std::dynamic_pointer_cast<INetworkVariable>(item)) {
    return variable->INetworkVariable_Name() + "@" + variable->INetworkVariable_PointKey();
  }
  if (const auto property = std::dynamic_pointer_cast<IConfigProperty>(item)) {
    return property->IConfigProperty_Name() + "@" + property->IConfigProperty_PointKey();
  }
  return item ? "?" : "null";
}

using CProfileHostTest = ProfileFixture;

TEST_F(CProfileHostTest, AddedItemsGetUniqueNamesAndNewPointKeys) {
  const auto profile = NewProfile();
  EXPECT_EQ(Add(*profile, 2, "temp_p", "A"), "A@P1");
  EXPECT_EQ(Add(*profile, 3, "time_sec", "A"), "A_1@P2");
  EXPECT_EQ(Add(*profile, 2, "switch", "A"), "A_2@P3");
  EXPECT_EQ(Add(*profile, 2, "temp_p", "nviSpaceTemperatureZone01"), "nviSpaceTemperatureZ@P4");
  // The uncut name is the one checked, so a second long name may give the same cut name.
  EXPECT_EQ(Add(*profile, 2, "temp_p", "nviSpaceTemperatureZone02"), "nviSpaceTemperatureZ@P5");
  EXPECT_EQ(Add(*profile, 7, "temp_p", "B"), "null");
  EXPECT_EQ(ErrorNumberOf([&] { Add(*profile, 2, "temp_p", "123"); }), 5);
  EXPECT_EQ(std::pair(profile->IProfile_NumberNVOs(), profile->IProfile_NumberCPs()),
            std::pair(4, 1));

  // A long name that is taken is cut to make room for its suffix.
  EXPECT_EQ(Add(*profile, 3, "temp_p", "nviSpaceTemperatureZ"), "nviSpaceTemperatur_1@P6");

  // An added input is not yet exported and is offered its outputs at once.
  const auto types = std::make_shared<CNVOCompatibleSNVTs>();
  const auto added = NotNull(std::dynamic_pointer_cast<INetworkVariable>(
      profile->Iprofile_AddNetworkItem(2, "temp_p", "nviTemp", 0, types, "P40")));
  EXPECT_EQ(std::tuple(added->INetworkVariable_Direction(), added->INetworkVariable_Index(),
                       added->INetworkVariable_ConnectionIndex()),
            std::tuple(0, 4, -1));
  EXPECT_EQ(Identifiers(added->INetworkVariable_SNVTCompatibles()), "temp_p,temp,temp_f");
  EXPECT_TRUE(boxes.boxes.empty());
}

TEST_F(CProfileHostTest, NewPointKeysFollowTheHighestInUse) {
  const auto profile = NewProfile();
  EXPECT_EQ(Add(*profile, 2, "temp_p", "first", "P3"), "first@P3");
  EXPECT_EQ(Add(*profile, 3, "time_sec", "second", "P7"), "second@P7");
  EXPECT_EQ(Add(*profile, 2, "lux", "third"), "third@P8");
  EXPECT_EQ(Add(*profile, 3, "count", "fourth"), "fourth@P9");

  // Keys of a loaded profile count as well.
  EXPECT_EQ(Add(*Loaded(), 2, "temp_p", "nvoExtra"), "nvoExtra@P20");
}

// Records what the profile hands the generator.
class RecordingGenerator final : public IXIFAndTypesGen {
 public:
  void Source(const std::string& value) override { calls.push_back("Source=" + value); }
  void OutputFolder(const std::string& value) override { calls.push_back("Output=" + value); }
  void XifFile(const std::string& value) override { calls.push_back("Xif=" + value); }
  void TypesFolder(const std::string& value) override { calls.push_back("Types=" + value); }
  void ResourceCatalogue(const std::string& value) override { calls.push_back("Cat=" + value); }
  void SourceProfile(const std::shared_ptr<IUnknown>& profile) override {
    calls.push_back(profile ? "Profile" : "no profile");
  }
  void Version(const std::string& value) override { calls.push_back("Version=" + value); }
  void Platform(const std::string& value) override { calls.push_back("Platform=" + value); }
  std::vector<std::string> Messages() const override { return {}; }
  int32_t Generate() override {
    calls.push_back("Generate");
    return status;
  }
  int32_t status = 0;
  std::vector<std::string> calls;
};

TEST_F(CProfileHostTest, GeneratorGetsFoldersBesideTheCatalogue) {
  struct RestoreFolder {
    ~RestoreFolder() { SetComponentFolder(""); }
  } restore;
  const TempFolder temp;
  const std::string component = temp.path + "/bin/lib";
  std::filesystem::create_directories(component);
  SetComponentFolder(component);
  const auto profile = Loaded();
  {
    const ScopedComponent none("TarnXIFandTypesGen.XIFAndTypesGen", {});
    EXPECT_EQ(profile->Iprofile_XIFandTypegenerate("Room"), 429);
  }

  const auto generator = std::make_shared<RecordingGenerator>();
  const ScopedComponent registered("TarnXIFandTypesGen.XIFAndTypesGen", [&] { return generator; });
  const auto expected = [](const std::string& base) {
    return std::vector<std::string>{
        "Source=Profile",          "Output=" + base + "LON", "Xif=" + base + "LON/Room.xif",
        "Types=" + base + "Types", "Cat=LDRF.CAT",           "Profile", "Generate"};
  };
  EXPECT_EQ(profile->Iprofile_XIFandTypegenerate("Room"), 0);
  EXPECT_EQ(generator->calls, expected(component + "/../../../"));

  temp.Write("snvts.xml", "<SNVTS/>");
  generator->calls.clear();
  generator->status = 3;
  EXPECT_EQ(profile->Iprofile_XIFandTypegenerate("Room"), 3);
  EXPECT_EQ(generator->calls, expected(component + "/../../"));
}

TEST_F(CProfileHostTest, DamagedDocumentLoadsWhatItCan) {
  const auto profile = Loaded(KOLVANE_SOURCE_DIR "/tests/data/profile-bad.xml");
  EXPECT_EQ(profile->IProfile_Name(), "Broken");
  // The stray text among the variables and among the properties becomes an item of its own.
  EXPECT_EQ(std::tuple(profile->IProfile_NumberNVIs(), profile->IProfile_NumberNVOs(),
                       profile->IProfile_NumberCPs()),
            std::tuple(3, 3, 4));
  EXPECT_NE(NvNamed(*profile, ""), nullptr);

  const auto untyped = NvNamed(*profile, "nviNoType");
  EXPECT_EQ(untyped->INetworkVariable_SNVTType()->ISNVType_GenType() + "|" +
                untyped->INetworkVariable_PointKey(),
            "|P1");
  const auto undirected = NvNamed(*profile, "nvoNoDirection");
  EXPECT_EQ(
      std::tuple(undirected->INetworkVariable_Direction(), undirected->INetworkVariable_XPosition(),
                 undirected->INetworkVariable_ConnectionIndex()),
      std::tuple(1, 0.0, 1));
  EXPECT_EQ(Identifiers(undirected->INetworkVariable_SNVTCompatibles()), "temp_p,temp,temp_f");
  const auto unknown = NvNamed(*profile, "nviUnknown");
  EXPECT_EQ(unknown->INetworkVariable_SNVTType()->ISNVType_ID() + "|" +
                unknown->INetworkVariable_PointKey() + "|" +
                Identifiers(unknown->INetworkVariable_SNVTCompatibles()),
            "temp_kelvin||");
  EXPECT_EQ(NvNamed(*profile, "nviLowerIn")->INetworkVariable_Direction(), 1);
  EXPECT_EQ(NvNamed(*profile, "nviGood")->INetworkVariable_YPosition(), 40);
  EXPECT_EQ(CpNamed(*profile, "nciGood")->IConfigProperty_Value(), "45");
  EXPECT_EQ(CpNamed(*profile, "nciOldType")->IConfigProperty_SNVTType()->ISNVType_ID(), "");

  const auto no_type = [](const std::string& name) -> MessageBoxRecorder::Box {
    return {name + ": SNVT Type not defined into the XML file of the profile", vbCritical,
            "Warning"};
  };
  EXPECT_EQ(boxes.boxes, (Boxes{no_type("nciNoType"), no_type(""), no_type("nciOldType")}));

  // Every item shows its texts and saves without an error.
  for (const auto& variable : profile->IProfile_NVs()->INetworkVariables_NewEnum()) {
    EXPECT_EQ(ErrorNumberOf([&] { DisplayTexts(*variable); }), 0)
        << variable->INetworkVariable_Name();
  }
  for (const auto& property : profile->IProfile_CPs()->IConfigProperties_NewEnum()) {
    EXPECT_EQ(ErrorNumberOf([&] { DisplayTexts(*property); }), 0)
        << property->IConfigProperty_Name();
  }
  pugi::xml_document saved;
  profile->Iprofile_XmlSaveValue(saved.append_child("Device"), saved);
  EXPECT_EQ(std::distance(saved.document_element().first_child().begin(),
                          saved.document_element().first_child().end()),
            10);
}

// node printed with two-blank indentation, as the expected files in tests/data are written.
std::string Indented(pugi::xml_node node) {
  std::ostringstream text;
  node.print(text, "  ", pugi::format_indent);
  return text.str();
}

using CProfileSaveTest = ProfileFixture;

TEST_F(CProfileSaveTest, BothFormsWriteOneRecordPerItemVariablesFirst) {
  // The bundled profile after a few edits and the removal of nvoCO2 and nciMaxSendTime.
  const auto profile = Loaded();
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
  EXPECT_TRUE(profile->IProfile_NeedSave());
  EXPECT_TRUE(profile->IProfile_DisplayIncompatible());

  pugi::xml_document stored;
  EXPECT_EQ(profile->Iprofile_XmlSaveValue(stored.append_child("Device"), stored), 0);
  EXPECT_FALSE(profile->IProfile_NeedSave());
  EXPECT_FALSE(profile->IProfile_DisplayIncompatible());
  EXPECT_EQ(Indented(stored.document_element()),
            FileText(KOLVANE_SOURCE_DIR "/tests/data/profile-saved.xml"));

  Globals::NeedSaveFlag = Globals::DisplayIncompatibleFlag = true;
  pugi::xml_document interoperable;
  EXPECT_EQ(profile->Iprofile_SaveValueForInteroperability(interoperable.append_child("Device"),
                                                           interoperable),
            0);
  EXPECT_FALSE(profile->IProfile_NeedSave());
  EXPECT_FALSE(profile->IProfile_DisplayIncompatible());
  EXPECT_EQ(Indented(interoperable.document_element()),
            FileText(KOLVANE_SOURCE_DIR "/tests/data/profile-saved-interop.xml"));
}

TEST_F(CProfileSaveTest, EverySaveAppendsItsOwnElement) {
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("Device");
  EXPECT_EQ(NewProfile()->Iprofile_XmlSaveValue(root, document), 0);
  EXPECT_EQ(XmlText(root), "<Device><ApplicationProfile/></Device>");

  const auto profile = Loaded();
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
  documents.push_back(Parsed(R"(<Items>
      <ApPoint Key="P4" Name="nviTemp" Direction="In" Type="temp_p">
        <ExtendedInfo Location="10;20" ExportIndex="3"/></ApPoint>
      <!-- a comment is no item -->
      <Item Name="nciDelay" Permanent="0">
        <SNVTType>time_sec</SNVTType><Default>30</Default><Min>5</Min></Item>
      <ApPoint Key="P6" Name="nvoFlow" Direction="Out" Type="flow"/>
    </Items>)"));
  const auto profile = NewProfile();
  auto parent = std::make_shared<FakeHost>();
  profile->IProfile_XmlLoad(documents.back()->document_element(), parent);
  EXPECT_EQ(profile->IProfile_Name() + " " + profile->IProfile_GlobalKey(),
            "GenericProfile PGenericProfile");
  EXPECT_EQ(profile->IProfile_Parent(), parent);
  EXPECT_EQ(std::tuple(profile->IProfile_NumberNVIs(), profile->IProfile_NumberNVOs(),
                       profile->IProfile_NumberCPs()),
            std::tuple(1, 1, 1));

  const auto temp = NotNull(NvNamed(*profile, "nviTemp"));
  EXPECT_EQ(temp->INetworkVariable_PointKey(), "P4");
  EXPECT_EQ(Identifiers(temp->INetworkVariable_SNVTCompatibles()), "temp_p,temp,temp_f");
  // A property of the list is read as a property element: type, default and limits from its
  // children.
  const auto delay = NotNull(CpNamed(*profile, "nciDelay"));
  EXPECT_EQ(delay->IConfigProperty_Value() + " " + delay->IConfigProperty_SNVTType()->ISNVType_ID() +
                " " + delay->IConfigProperty_SNVTType()->ISNVType_Min() + " " +
                delay->IConfigProperty_GlobalKey(),
            "30 time_sec 5 PGeneric_Profile\\CPS\\CP1");
  EXPECT_EQ(NvNamed(*profile, "nvoFlow")->INetworkVariable_GlobalKey(),
            "PGeneric_Profile\\NVS\\NV2");
  EXPECT_TRUE(boxes.boxes.empty());
}

// A host whose yield handler changes the profile at every yield: the walks that yield (load,
// compatibility rebuild, add, remove, save) go on over what they started with and touch no freed
// item (the asan preset turns a use after free into a failure).
using CProfileReentryTest = ProfileFixture;

TEST_F(CProfileReentryTest, HostChangingTheProfileAtEveryYield) {
  const auto profile = Loaded();
  const auto nvs = profile->IProfile_NVs();
  int yields = 0;
  bool busy = false;
  const YieldHandler previous = SetYieldHandler([&] {
    if (busy) return;  // the host's own calls yield too
    busy = true;
    ++yields;
    switch (yields % 4) {
      case 0:
        if (nvs->INetworkVariables_Count() > 2) {
          nvs->INetworkVariables_Remove(nvs->INetworkVariables_NewEnum().front());
        }
        break;
      case 1:
        profile->Iprofile_AddNetworkItem(2, "temp_p", "nviAdded", 0, nullptr, "");
        break;
      case 2:
        if (const auto last = nvs->INetworkVariables_NewEnum().back()) {
          last->INetworkVariable_Value("1");
          last->INetworkVariable_Name("renamed");
        }
        break;
      default:
        profile->Iprofile_SetXmlDomDocs(catalogue.document, Parsed(kTestNvoTable, true));
        break;
    }
    busy = false;
  });
  profile->Iprofile_RebuildCompatibilityList();
  Load(profile, kRoomProfile);
  profile->Iprofile_AddNetworkItem(2, "temp_p", "nviLast", 0, nullptr, "");
  nvs->INetworkVariables_Remove(nvs->INetworkVariables_NewEnum().front());
  pugi::xml_document saved;
  EXPECT_EQ(profile->Iprofile_XmlSaveValue(saved.append_child("Device"), saved), 0);
  SetYieldHandler(previous);
  EXPECT_GT(yields, 100);
  // Every variable left has a list built from the table, and every one was saved.
  for (const auto& variable : nvs->INetworkVariables_NewEnum()) {
    EXPECT_NE(variable->INetworkVariable_SNVTCompatibles(), nullptr);
  }
  const auto points = saved.select_nodes("//ApPoint");
  EXPECT_EQ(static_cast<int32_t>(points.size()),
            nvs->INetworkVariables_Count() + profile->IProfile_NumberCPs());
}

// A catalogue the host reloads in place, without handing it in again, is not read through stale
// nodes: lookups keep the copy taken at the hand-in until the document is handed in again.
TEST_F(CProfileReentryTest, CatalogueReloadedInPlaceIsSeenOnlyWhenHandedInAgain) {
  const auto document = Parsed(R"(<SNVTS><SNVT_t><TYPE>UnsignedNumeric</TYPE><LENGTH>1</LENGTH>
      <MAX>9</MAX></SNVT_t></SNVTS>)");
  Globals::SetSnvtCatalogDocument(document);
  CSNVTType before;
  before.Load("t");
  ASSERT_TRUE(document->load_string(R"(<SNVTS><SNVT_t><TYPE>UnsignedNumeric</TYPE>
      <LENGTH>2</LENGTH><MAX>99</MAX></SNVT_t><SNVT_u><TYPE>Float</TYPE></SNVT_u></SNVTS>)"));
  CSNVTType stale;
  stale.Load("t");
  CSNVTType missing;
  missing.Load("u");
  EXPECT_EQ(stale.ISNVType_Max() + " " + missing.ISNVType_GenType(), "9 ");
  Globals::SetSnvtCatalogDocument(document);
  CSNVTType fresh;
  fresh.Load("t");
  missing.Load("u");
  EXPECT_EQ(fresh.ISNVType_Max() + " " + missing.ISNVType_GenType(), "99 Float");
  // The same holds for a reload before the first lookup and for a document emptied in place.
  document->reset();
  Globals::SetSnvtCatalogDocument(document);
  CSNVTType gone;
  gone.Load("t");
  EXPECT_EQ(gone.ISNVType_GenType(), "");
}

TEST_F(CProfileHostTest, NamesAreCutByCharactersAndKeysPast16BitsRaiseOverflow) {
  const auto profile = NewProfile();
  // 20 characters, 23 bytes: a suffix of 2 keeps 18 characters, never half of an "é".
  const std::string name = "nviTemperatureZonééx";
  EXPECT_EQ(Add(*profile, 2, "temp_p", name), name + "@P1");
  EXPECT_EQ(Add(*profile, 2, "temp_p", name), "nviTemperatureZoné_1@P2");
  EXPECT_EQ(Add(*profile, 2, "temp_p", "nviEinÜberlangerNameMitÄ"), "nviEinÜberlangerName@P3");

  // A key number past 16 bits: error 6, and nothing is added.
  const auto wide = NewProfile();
  EXPECT_EQ(Add(*wide, 3, "temp_p", "big", "P40000"), "big@P40000");
  EXPECT_EQ(ErrorNumberOf([&] { Add(*wide, 2, "temp_p", "next"); }), ErrorNumber::kOverflow);
  EXPECT_EQ(wide->IProfile_NVs()->INetworkVariables_Count(), 0);
  // A failed add gives its key to the next one.
  const auto keyed = NewProfile();
  EXPECT_EQ(Add(*keyed, 2, "temp_p", "a"), "a@P1");
  EXPECT_EQ(Add(*keyed, 9, "temp_p", "b"), "null");
  EXPECT_EQ(Add(*keyed, 2, "temp_p", "c"), "c@P2");
}

// Many adds with one name: each add is checked against every name (the index kept between adds
// is updated, not rebuilt), and a rename made by the host between adds is seen.
TEST_F(CProfileHostTest, UniqueNamesFollowRenamesBetweenAdds) {
  const auto profile = NewProfile();
  for (int i = 0; i < 300; ++i) Add(*profile, 3, "temp_p", "x");
  EXPECT_EQ(Add(*profile, 3, "temp_p", "x"), "x_300@P301");
  const auto first = CpNamed(*profile, "x");
  first->IConfigProperty_Name("y");
  EXPECT_EQ(Add(*profile, 3, "temp_p", "x"), "x@P302");
  EXPECT_EQ(Add(*profile, 3, "temp_p", "y"), "y_1@P303");
  EXPECT_EQ(Add(*profile, 3, "temp_p", "x"), "x_301@P304");
  // A removal frees a suffix again.
  profile->IProfile_CPs()->IConfigProperties_Remove(CpNamed(*profile, "x_7"));
  EXPECT_EQ(Add(*profile, 3, "temp_p", "x"), "x_7@P305");
}

// Nested "Profile" elements: the first Name, NVs and CPs in document order are read, not the
// first the path steps meet.
TEST_F(CProfileTest, FirstMatchInDocumentOrder) {
  const auto profile = Loaded(R"(<Profile>
      <Profile><Name>Inner</Name><NVs><nviInner Type="temp_p" Direction="In" Key="P1"/></NVs></Profile>
      <Name>Outer</Name><NVs><nviOuter Type="temp_p" Direction="In" Key="P2"/></NVs>
    </Profile>)",
                              false);
  EXPECT_EQ(profile->IProfile_Name(), "Inner");
  EXPECT_EQ(profile->IProfile_NVs()->INetworkVariables_Count(), 1);
  EXPECT_NE(NvNamed(*profile, "nviInner"), nullptr);
}

// The NVO table: an input is offered an output whose identifier is one character, and a table
// nested in another element is found as a tag-name lookup finds it.
TEST_F(CProfileTest, CompatibleListsFromOneCharacterOutputsAndNestedTables) {
  const auto profile = NewProfile();
  profile->Iprofile_SetXmlDomDocs(catalogue.document, Parsed(R"(<Tables><NVOTable>
      <SNVT_5><SNVT_temp_p/></SNVT_5><SNVT_temp_p><SNVT_temp_f/><SNVT_lux/></SNVT_temp_p>
    </NVOTable></Tables>)"));
  const auto input = NotNull(std::dynamic_pointer_cast<INetworkVariable>(
      profile->Iprofile_AddNetworkItem(2, "temp_p", "nviTemp", 0, nullptr, "")));
  const auto output = NotNull(std::dynamic_pointer_cast<INetworkVariable>(
      profile->Iprofile_AddNetworkItem(2, "temp_p", "nvoTemp", 1, nullptr, "")));
  // The listing of outputs walks the root's children, here "NVOTable" itself.
  EXPECT_EQ(Identifiers(input->INetworkVariable_SNVTCompatibles()), "");
  EXPECT_EQ(Identifiers(output->INetworkVariable_SNVTCompatibles()), "temp_f,lux");

  profile->Iprofile_SetXmlDomDocs(catalogue.document,
                                  Parsed("<NVOTable><SNVT_5><SNVT_temp_p/></SNVT_5></NVOTable>"));
  profile->Iprofile_RebuildCompatibilityList();
  EXPECT_EQ(Identifiers(input->INetworkVariable_SNVTCompatibles()), "5");
  EXPECT_TRUE(NotNull(std::dynamic_pointer_cast<ISubItemConnable>(input))
                  ->ISubItemConnable_IsSNVTCompatible("5"));
}

}  // namespace
}  // namespace kolvane::test
