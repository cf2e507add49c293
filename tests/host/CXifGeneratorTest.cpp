// The built-in device interface generator: real devices written back with the same records,
// the examples written and read back with the same items, the host's member, and every limit
// refused before anything is written.

#include "host/CXifGenerator.h"

#include <filesystem>
#include <map>
#include <set>

#include "conversion/RawBytes.h"
#include "foundation/Globals.h"
#include "types/SnvtCatalogue.h"
#include "xif/XifImport.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

using namespace xif;

const std::string kSamples = KOLVANE_SOURCE_DIR "/tests/data/xif/";

class CXifGeneratorTest : public ::testing::Test {
 protected:
  // A profile of document, loaded as a host loads it (carried types joining the catalogue).
  std::shared_ptr<IProfile> Load(const std::shared_ptr<pugi::xml_document>& document) {
    const auto types = CatalogueWithCarriedTypes(catalogue.document, *document);
    auto profile = CreateProfile();
    profile->Iprofile_SetXmlDomDocs(types, nvo_table);
    std::string name;
    profile->IProfile_FriendSet(document, name, nullptr, types, nvo_table, "");
    return profile;
  }

  std::shared_ptr<IProfile> Imported(const DeviceInterface& device) {
    return Load(ImportDeviceInterface(device, catalogue.document, *scpts, "device").document);
  }

  MessageBoxRecorder boxes;
  ScopedDecimalSeparator point{"."};
  ScopedCatalogue catalogue{kBundledCatalogue, true};
  std::shared_ptr<pugi::xml_document> nvo_table =
      Parsed(KOLVANE_SOURCE_DIR "/examples/nvotable.xml", true);
  std::shared_ptr<pugi::xml_document> scpts = Parsed(KOLVANE_SOURCE_DIR "/examples/scpts.xml", true);
};

std::string ElementsText(const std::vector<Element>& elements) {
  std::string text;
  for (const Element& e : elements) {
    text += std::to_string(e.kind) + " " + std::to_string(e.offset) + " " + std::to_string(e.size) +
            " " + std::to_string(e.is_signed) + " " + std::to_string(e.count) + ";";
  }
  return text;
}

// What a record says about a variable: name, flags, type index, element lines, self-documentation.
std::string Said(const Variable& variable) {
  std::string flags;
  for (const int flag : variable.flags.values) flags += std::to_string(flag) + " ";
  return variable.name + " [" + flags + "] " + std::to_string(variable.type_index) + " " +
         ElementsText(variable.elements) + " " + variable.doc;
}

// Every real device imported and generated again has the same variables (names, indices,
// flags, type indices, element lines, strings), the same configuration variables with the same
// bytes, and its configuration file entries as configuration variables with their descriptors
// and bytes.
TEST_F(CXifGeneratorTest, RealDevicesComeBackWithTheirRecordsAndBytes) {
  int devices = 0;
  int records = 0;
  for (const auto& entry : std::filesystem::directory_iterator(kSamples)) {
    const std::string name = entry.path().filename().string();
    if (name == "SOURCES.md") continue;
    const DeviceInterface device = ReadDeviceInterface(FileText(entry.path().string()));
    const ImportedProfile imported = ImportDeviceInterface(device, catalogue.document, *scpts, "device");
    const auto profile = Load(imported.document);
    // A text the device holds empty comes back as its type's default: the import says so.
    std::set<std::string> empty_texts;
    for (const std::string& note : imported.notes) {
      if (note.find("empty text") != std::string::npos) empty_texts.insert(note.substr(0, note.find(':')));
    }
    const DeviceInterface built =
        CXifGenerator::Build(*profile, "device", "4.501", CXifGenerator::BundledPlatform());
    ASSERT_GE(built.variables.size(), device.variables.size()) << name;
    for (size_t i = 0; i < device.variables.size(); ++i) {
      EXPECT_EQ(Said(built.variables[i]), Said(device.variables[i])) << name;
      ++records;
    }
    // The configuration variables' bytes come first in the values, as they did.
    ASSERT_GE(built.values.size(), device.values.size()) << name;
    const auto values = device.VariableValues();
    const auto built_values = built.VariableValues();
    for (size_t i = 0; i < values.size(); ++i) {
      if (empty_texts.count(values[i].first->name)) continue;
      EXPECT_EQ(built_values[i].second, values[i].second) << name << " " << values[i].first->name;
      ++records;
    }
    // The file's properties follow, as configuration variables of the same descriptors and bytes.
    const auto properties = device.FileProperties();
    ASSERT_EQ(built.variables.size(), device.variables.size() + properties.size()) << name;
    std::vector<uint8_t> rest(built.values.begin() + static_cast<long>(device.values.size()),
                              built.values.end());
    size_t at = 0;
    for (size_t i = 0; i < properties.size(); ++i) {
      const Variable& variable = built.variables[device.variables.size() + i];
      EXPECT_TRUE(variable.flags.ConfigurationClass());
      const VariableDoc doc = variable.ParsedDoc();
      ASSERT_EQ(doc.form, VariableDoc::Form::kProperty) << name << " " << variable.name;
      EXPECT_EQ(doc.property.index, properties[i].descriptor.index);
      EXPECT_EQ(doc.property.scope, properties[i].descriptor.scope);
      EXPECT_EQ(doc.property.flags, properties[i].descriptor.flags);
      EXPECT_EQ(doc.property.select, properties[i].descriptor.select);
      const std::vector<uint8_t> bytes(rest.begin() + static_cast<long>(at),
                                       rest.begin() + static_cast<long>(at + properties[i].bytes.size()));
      EXPECT_EQ(bytes, properties[i].bytes) << name << " " << variable.name;
      at += properties[i].bytes.size();
      ++records;
    }
    // What was generated reads back as a device interface file.
    EXPECT_NO_THROW(ReadDeviceInterface(WriteDeviceInterface(built))) << name;
    ++devices;
  }
  EXPECT_EQ(devices, 15);
  EXPECT_GT(records, 800);
}

// The examples written as device interface files and read back give the same items, types
// (a user type, which a file knows only by its layout, the same kind and length) and values.
TEST_F(CXifGeneratorTest, ExamplesComeBackWithTheirItemsAndValues) {
  for (const char* example : {"profile.xml", "profile-vav.xml", "profile-large.xml"}) {
    const auto document = Parsed(std::string(KOLVANE_SOURCE_DIR "/examples/") + example, true);
    const auto profile = Load(document);
    const std::string text = WriteDeviceInterface(
        CXifGenerator::Build(*profile, "example", "4.501", CXifGenerator::BundledPlatform()));
    const auto back = Imported(ReadDeviceInterface(text));
    const auto nvs = profile->IProfile_NVs()->INetworkVariables_NewEnum();
    const auto back_nvs = back->IProfile_NVs()->INetworkVariables_NewEnum();
    ASSERT_EQ(back_nvs.size(), nvs.size()) << example;
    const auto same_type = [&](const std::shared_ptr<ISNVType>& a, const std::shared_ptr<ISNVType>& b) {
      if (!internal::FindSnvtElement(a->ISNVType_ID()).attribute("INDEX").empty()) {
        return a->ISNVType_ID() == b->ISNVType_ID();
      }
      return a->ISNVType_Length() == b->ISNVType_Length();
    };
    for (size_t i = 0; i < nvs.size(); ++i) {
      EXPECT_EQ(back_nvs[i]->INetworkVariable_Name(), nvs[i]->INetworkVariable_Name());
      EXPECT_EQ(back_nvs[i]->INetworkVariable_Direction(), nvs[i]->INetworkVariable_Direction());
      EXPECT_TRUE(same_type(nvs[i]->INetworkVariable_SNVTType(), back_nvs[i]->INetworkVariable_SNVTType()))
          << example << " " << nvs[i]->INetworkVariable_Name();
    }
    const auto cps = profile->IProfile_CPs()->IConfigProperties_NewEnum();
    const auto back_cps = back->IProfile_CPs()->IConfigProperties_NewEnum();
    ASSERT_EQ(back_cps.size(), cps.size()) << example;
    for (size_t i = 0; i < cps.size(); ++i) {
      EXPECT_EQ(back_cps[i]->IConfigProperty_Name(), cps[i]->IConfigProperty_Name());
      EXPECT_TRUE(same_type(cps[i]->IConfigProperty_SNVTType(), back_cps[i]->IConfigProperty_SNVTType()))
          << example << " " << cps[i]->IConfigProperty_Name();
      // An empty text comes back as the default its type assumes; every other value as it was.
      if (cps[i]->IConfigProperty_SNVTType()->ISNVType_GenType() == "Textual" &&
          cps[i]->IConfigProperty_Value().empty()) {
        continue;
      }
      EXPECT_EQ(CheckedRawBytes(back_cps[i]).raw, CheckedRawBytes(cps[i]).raw)
          << example << " " << cps[i]->IConfigProperty_Name();
    }
  }
}

// The host's member finds the folders beside the catalogue, and the built-in generator writes
// the device interface file into LON and the profile's user types into Types.
TEST_F(CXifGeneratorTest, TheHostMemberWritesTheFileWhereTheFoldersAre) {
  struct RestoreFolder {
    ~RestoreFolder() { SetComponentFolder(""); }
  } restore;
  const TempFolder temp;
  const std::string component = temp.path + "/bin/lib";
  std::filesystem::create_directories(component);
  temp.Write("snvts.xml", "<SNVTS/>");
  SetComponentFolder(component);
  const auto profile = Load(Parsed(kRoomProfile, true));
  EXPECT_EQ(profile->Iprofile_XIFandTypegenerate("Room"), 0);
  const std::string xif = temp.path + "/bin/lib/../../LON/Room.xif";
  ASSERT_TRUE(std::filesystem::exists(xif));
  const DeviceInterface device = ReadDeviceInterface(FileText(xif));
  EXPECT_EQ(device.program_id.Text(), "9F:FF:FF:0A:0B:04:04:01");
  EXPECT_EQ(device.variables.size(), 8u + 11u + 10u);
  const std::string types = FileText(temp.path + "/Types/Room.xml");
  EXPECT_NE(types.find("<SNVT_40000"), std::string::npos);
  EXPECT_NE(types.find("<SNVT_40001"), std::string::npos);
  EXPECT_EQ(types.find("<SNVT_temp_p"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(temp.path + "/LON/LDRF.CAT"));
}

// Every limit is refused with error 5 naming it, and nothing is written.
TEST_F(CXifGeneratorTest, LimitsAreRefusedBeforeAnythingIsWritten) {
  const TempFolder temp;
  const auto refusal = [&](const std::string& xml) -> std::string {
    const auto profile = Load(Parsed(xml));
    const auto generator = std::make_shared<CXifGenerator>();
    generator->XifFile(temp.path + "/LON/device.xif");
    generator->SourceProfile(profile);
    try {
      generator->Generate();
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), 5);
      EXPECT_FALSE(std::filesystem::exists(temp.path + "/LON/device.xif"));
      return error.detail();
    }
    return "written";
  };
  const std::string id = "<ProgramID>9FFFFF0A0B040401</ProgramID>";
  EXPECT_EQ(refusal("<Profile><NVs><nviTemperatureOfTheRoom Type='temp_p' Direction='In'/></NVs>" +
                    std::string("</Profile>").insert(0, id)),
            "nviTemperatureOfTheRoom: a name of 23 characters; a device interface file holds 16");
  std::string many = "<Profile>" + id + "<NVs>";
  for (int i = 0; i < 255; ++i) many += "<nv" + std::to_string(i) + " Type='temp_p' Direction='In'/>";
  EXPECT_EQ(refusal(many + "</NVs></Profile>"),
            "255 network variables; the platform holds 254");
  EXPECT_EQ(refusal("<Profile>" + id +
                    "<CPs><nciCount><SNVTType>count_32</SNVTType><Default>Invalid</Default></nciCount>"
                    "</CPs></Profile>"),
            "nciCount: \"Invalid\" is written as FFFF, 2 of the 4 bytes of its type");
  EXPECT_EQ(refusal("<Profile><NVs><nviT Type='temp_p' Direction='In'/></NVs></Profile>"),
            "the profile has no ProgramID: a device interface file binds to devices by it");
  {
    ScopedCatalogue odd(BundledCatalogueWith("<SNVT_40099><NAME>40099</NAME><TYPE>Struct</TYPE>"
                                             "<Fields/></SNVT_40099>"));
    EXPECT_EQ(refusal("<Profile>" + id + "<NVs><nviOdd Type='40099' Direction='In'/></NVs></Profile>"),
              "nviOdd: SNVT_40099 has no index and no layout to describe it");
  }
  EXPECT_EQ(refusal("<Profile>" + id + "<NVs><nviT Type='temp_p' Direction='In'/></NVs></Profile>"),
            "written");
}

}  // namespace
}  // namespace kolvane::test
