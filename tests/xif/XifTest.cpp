// Device interface files: the real samples read, written back record for record, and broken
// files refused with the line of their fault.

#include "xif/DeviceInterface.h"

#include "conversion/RawBytes.h"
#include "xif/XifImport.h"

#include <filesystem>
#include <set>

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

using namespace xif;

const std::string kSamples = KOLVANE_SOURCE_DIR "/tests/data/xif/";

std::vector<std::string> SampleNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(kSamples)) {
    const std::string name = entry.path().filename().string();
    if (name != "SOURCES.md") names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

DeviceInterface Sample(const std::string& name) { return ReadDeviceInterface(FileText(kSamples + name)); }

TEST(XifTest, EverySampleIsReadAndWrittenBackByteForByte) {
  const auto names = SampleNames();
  ASSERT_EQ(names.size(), 15u);
  for (const std::string& name : names) {
    const std::string text = FileText(kSamples + name);
    try {
      EXPECT_EQ(WriteDeviceInterface(ReadDeviceInterface(text)), text) << name;
    } catch (const XifError& error) {
      ADD_FAILURE() << name << ": " << error.what();
    }
  }
}

// The compiler's file: program ID fields, functional block arrays, bit fields over several
// bytes, a changeable type, configuration files with read-only entries, values per variable.
TEST(XifTest, CompilerFileWithFilesAndValues) {
  const DeviceInterface device = Sample("izot__smartserver-iot__6kEvbMultiSensor.XIF");
  EXPECT_EQ(device.version, "4.501");
  EXPECT_EQ(device.style.newline, "\n");
  EXPECT_EQ(device.program_id.Text(), "9F:FF:FF:05:01:84:04:60");
  EXPECT_EQ(device.program_id.Format(), 9);
  EXPECT_EQ(device.program_id.Manufacturer(), 0xFFFFFu);
  EXPECT_EQ(device.program_id.DeviceClass(), 0x0501);
  EXPECT_EQ(device.program_id.Usage(), 0x84);
  EXPECT_EQ(device.program_id.Channel(), 0x04);
  EXPECT_EQ(device.program_id.Model(), 0x60);
  EXPECT_EQ(device.header[0].size(), 45u);
  ASSERT_TRUE(device.node_doc.parsed);
  EXPECT_EQ(device.node_doc.version, "3.4");
  ASSERT_EQ(device.node_doc.blocks.size(), 6u);
  EXPECT_EQ(device.node_doc.blocks[1].profile_key, 4);
  EXPECT_EQ(device.node_doc.blocks[1].array_count, 2);
  EXPECT_EQ(device.node_doc.blocks[1].name, "Lamp");
  EXPECT_EQ(device.node_doc.blocks[4].name, "TempSensor");  // across two string lines
  EXPECT_EQ(device.node_doc.BlockIndexCount(), 8);
  ASSERT_EQ(device.variables.size(), 22u);
  const Variable& status = device.variables[4];
  EXPECT_EQ(status.name, "nvoStatus");
  EXPECT_EQ(status.type_index, 93);
  EXPECT_EQ(status.Size(), 6);  // 2 bytes, then 24 one-bit fields in 3 bytes, then a byte
  EXPECT_TRUE(status.flags.Output());
  EXPECT_TRUE(status.flags.Synchronous());
  const VariableDoc member = status.ParsedDoc();
  EXPECT_EQ(member.form, VariableDoc::Form::kMember);
  EXPECT_EQ(member.block, 0);
  EXPECT_TRUE(member.standard_member);
  EXPECT_EQ(member.member, 2);
  EXPECT_TRUE(device.variables[21].ParsedDoc().changeable_type);
  const VariableDoc property = device.variables[0].ParsedDoc();
  EXPECT_EQ(property.form, VariableDoc::Form::kProperty);
  EXPECT_EQ(property.property.flags, 0xA0);
  EXPECT_EQ(property.property.index, 25);
  // NVVAL split over the configuration variables by their element sizes.
  const auto values = device.VariableValues();
  ASSERT_FALSE(values.empty());
  EXPECT_EQ(values.front().first->name, "nciNetConfig");
  EXPECT_EQ(values.front().second, std::vector<uint8_t>({0x01}));
  // The template's entries with their value or read-only bytes.
  const auto properties = device.FileProperties();
  ASSERT_EQ(properties.size(), 5u);
  EXPECT_EQ(properties[0].descriptor.index, 64);
  EXPECT_EQ(properties[0].bytes, std::vector<uint8_t>({0x00, 0x32}));
  EXPECT_TRUE(properties[1].read_only);
  EXPECT_EQ(properties[1].bytes, std::vector<uint8_t>({0x04}));
  EXPECT_EQ(properties[2].bytes, std::vector<uint8_t>({0x01}));
  EXPECT_EQ(properties[4].bytes, std::vector<uint8_t>({0x00, 0x0A}));
}

// The other generators' hard parts, one sample each.
TEST(XifTest, HardPartsOfTheOtherGenerators) {
  {  // III: CRLF, "0xHH HH" values, one blank before the element count, a property array
    const DeviceInterface device = Sample("izot__smartserver-iot__uiTestTarget2.xif");
    EXPECT_EQ(device.style.newline, "\r\n");
    EXPECT_EQ(device.style.type_count_width, 1);
    const Variable& scenes = device.variables.at(13);
    EXPECT_EQ(scenes.name, "cpSceneTable");
    EXPECT_EQ(scenes.array_count, 4);
    EXPECT_EQ(scenes.type_index, 223);  // not a standard type this catalogue knows
    EXPECT_EQ(scenes.TotalSize(), 12);
    const auto values = device.VariableValues();
    EXPECT_EQ(values.back().second,
              std::vector<uint8_t>({1, 0xC8, 0, 2, 0x96, 0, 3, 0x64, 0, 4, 0x32, 0}));
  }
  {  // APC 3.01: no variables, one tag, an older node string kept as text
    const DeviceInterface device = Sample("izot__smartserver-iot__X410w02.xif");
    EXPECT_TRUE(device.variables.empty());
    ASSERT_EQ(device.tags.size(), 1u);
    EXPECT_EQ(device.tags[0].name, "tag1");
    EXPECT_TRUE(device.tags[0].flags.Bindable());
    EXPECT_FALSE(device.node_doc.parsed);
    EXPECT_EQ(device.node_doc.text, "@.41010204");
  }
  {  // APC 2.72: template 1.0 with range modifiers and comments, grouped "0x0000" values
    const DeviceInterface device = Sample("izot__smartserver-iot__Vav2-101801.xif");
    EXPECT_EQ(device.version, "3.1");
    const ConfigFile* layout = device.File("template");
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->version, "1.0");
    EXPECT_EQ(layout->entries[0].range, "0:600");
    EXPECT_EQ(layout->entries.back().range, "-1.5:1.5");
    const auto properties = device.FileProperties();
    EXPECT_EQ(properties[3].bytes, std::vector<uint8_t>({0x00, 0xFD}));
    EXPECT_EQ(properties.back().bytes, std::vector<uint8_t>({0x00, 0x00}));
    EXPECT_FALSE(device.values.empty());
  }
  {  // LONNCC 4.03: dimensions over "~" ranges, list selects, a device property
    const DeviceInterface device = Sample("izot__smartserver-iot__VLT_FC100.XIF");
    const ConfigFile* layout = device.File("template");
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->entries[0].applies_to, 0);
    EXPECT_EQ(layout->entries[1].Selected(), std::vector<int>({38, 39, 40, 41, 45, 46, 47}));
    EXPECT_EQ(layout->entries[3].Selected(), std::vector<int>({38, 39, 40, 41}));
    EXPECT_EQ(layout->entries[3].dimension, 4);
    EXPECT_TRUE(device.File("readOnly"));
  }
  {  // LID, hand-edited: "-" ranges in property strings
    const DeviceInterface device = Sample("izot__smartserver-iot__FLON-01.xif");
    EXPECT_EQ(device.variables.size(), 173u);
    bool ranged = false;
    for (const Variable& variable : device.variables) {
      const VariableDoc doc = variable.ParsedDoc();
      if (doc.form == VariableDoc::Form::kProperty && doc.property.select == "105-140") {
        EXPECT_EQ(doc.property.Selected().size(), 36u);
        ranged = true;
      }
    }
    EXPECT_TRUE(ranged);
  }
  {  // LONNCC 5.01: a float as its five bit-field lines, variables without a string
    const DeviceInterface device = Sample("aguegu__lonworks-demo__cover.XIF");
    const auto angle = std::find_if(device.variables.begin(), device.variables.end(),
                                    [](const Variable& v) { return v.name == "nvoAngle"; });
    ASSERT_NE(angle, device.variables.end());
    EXPECT_EQ(angle->type_index, 49);
    EXPECT_EQ(angle->Size(), 4);
    EXPECT_TRUE(angle->doc.empty());
    EXPECT_EQ(angle->ParsedDoc().form, VariableDoc::Form::kNone);
  }
}

// Every notation of value bytes the generators use reads as one stream.
TEST(XifTest, ByteNotations) {
  const std::pair<std::vector<std::string>, std::vector<uint8_t>> cases[] = {
      {{"\\x0D \\xAC", "\t\\x00 \\x01"}, {0x0D, 0xAC, 0x00, 0x01}},
      {{"0x0B B8 ", "0x00 "}, {0x0B, 0xB8, 0x00}},
      {{"# nciX = {1};", "0x00 0x02"}, {0x00, 0x02}},
      {{"0x7F,0xFF,"}, {0x7F, 0xFF}},
      {{"0x0000,0x202020"}, {0, 0, 0x20, 0x20, 0x20}},
      {{"\\x00,\\x00 #VAR nciX"}, {}},
      {{""}, {}},
  };
  for (const auto& [lines, bytes] : cases) {
    const auto read = ParseBytes(lines);
    if (lines.front().find("#VAR") != std::string::npos) {
      EXPECT_FALSE(read) << lines.front();  // a comment after the bytes is no byte
      continue;
    }
    ASSERT_TRUE(read) << lines.front();
    EXPECT_EQ(*read, bytes) << lines.front();
  }
  EXPECT_FALSE(ParseBytes({"0xABC"}));
  EXPECT_FALSE(ParseBytes({"\\xZZ"}));
  // A string wrapped at 60 characters is never cut inside an escape.
  const std::string text = std::string(58, 'a') + "\\x80" + std::string(10, 'b');
  const auto pieces = WrapDoc(text);
  ASSERT_EQ(pieces.size(), 2u);
  EXPECT_EQ(pieces[0], std::string(58, 'a'));
  EXPECT_EQ(pieces[0] + pieces[1], text);
}

// A file cut short at any line, counts that contradict the records, values that do not add up
// and text that is no device interface file each give one error naming a line.
TEST(XifTest, BrokenFilesGiveOneErrorWithTheirLine) {
  const std::string text = FileText(kSamples + "izot__smartserver-iot__6kEvbMultiSensor.XIF");
  std::vector<size_t> ends;  // offsets just past each line
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n') ends.push_back(i + 1);
  }
  int refused = 0;
  for (size_t k = 0; k + 1 < ends.size(); ++k) {
    const std::string cut = text.substr(0, ends[k]);
    try {
      (void)ReadDeviceInterface(cut);
      // Only a cut that leaves whole records and sections may read: then every count agrees.
      ADD_FAILURE() << "cut after line " << k + 1 << " was read";
    } catch (const XifError& error) {
      EXPECT_GE(error.line(), 1);
      EXPECT_LE(error.line(), static_cast<int>(k) + 2) << error.what();
      ++refused;
    }
  }
  EXPECT_EQ(refused, static_cast<int>(ends.size()) - 1);

  const auto error_of = [](const std::string& broken) -> std::string {
    try {
      (void)ReadDeviceInterface(broken);
    } catch (const XifError& error) {
      return error.what();
    }
    return "read";
  };
  std::string counts = text;
  counts.replace(counts.find("2 15 1 22 0"), 11, "2 15 1 21 0");
  EXPECT_EQ(error_of(counts),
            "line 6: the header counts 21 network variables, the file holds 22");
  std::string values = text;
  values.replace(values.find("\\x0D \\xAC"), 9, "\\x0D");
  EXPECT_EQ(error_of(values),
            "line 194: NVVAL holds 23 bytes; the configuration variables take 24");
  std::string index = text;
  index.replace(index.find("VAR nviRequest 1"), 16, "VAR nviRequest 7");
  EXPECT_EQ(error_of(index), "line 20: network variable nviRequest has index 7, expected 1");
  EXPECT_EQ(error_of("<Profile/>"), "line 1: not a device interface file: the first line names "
                                    "no XIF version");
  EXPECT_EQ(error_of(""), "line 1: the file ends where the first line should be");
  EXPECT_EQ(error_of(std::string("File: x XIF Version 4.501\n\x01\x02\n")).rfind("line 3", 0), 0u);
}

// Every sample imports into a profile the library loads without a message (but for texts the
// device holds empty, which a default cannot say and the import notes), whose properties hold
// the bytes the file gives, and whose variables have the types the file's indices name.
TEST(XifImportTest, EverySampleImportsWithTheValuesOfItsBytes) {
  ScopedDecimalSeparator point(".");
  ScopedCatalogue catalogue(kBundledCatalogue, true);
  const auto scpts = Parsed(KOLVANE_SOURCE_DIR "/examples/scpts.xml", true);
  const auto nvo_table = Parsed(KOLVANE_SOURCE_DIR "/examples/nvotable.xml", true);
  int values = 0;
  int variables = 0;
  for (const std::string& name : SampleNames()) {
    const DeviceInterface device = Sample(name);
    const ImportedProfile imported = ImportDeviceInterface(device, catalogue.document, *scpts, name);
    std::set<std::string> empty_texts;
    for (const std::string& note : imported.notes) {
      if (note.find("empty text") != std::string::npos) empty_texts.insert(note.substr(0, note.find(':')));
    }
    MessageBoxRecorder boxes;
    const auto profile = CreateProfile();
    const auto types = CatalogueWithCarriedTypes(catalogue.document, *imported.document);
    profile->Iprofile_SetXmlDomDocs(types, nvo_table);
    std::string profile_name;
    profile->IProfile_FriendSet(imported.document, profile_name, nullptr, types, nvo_table, "");
    for (const auto& box : boxes.boxes) {
      const std::string& text = std::get<0>(box);
      EXPECT_TRUE(empty_texts.count(text.substr(0, text.find(':')))) << name << ": " << text;
    }
    // The properties come in the file's order: configuration variables, then file entries.
    std::vector<std::vector<uint8_t>> expected;
    for (const auto& [variable, bytes] : device.VariableValues()) expected.push_back(bytes);
    for (const FileProperty& property : device.FileProperties()) expected.push_back(property.bytes);
    const auto properties = profile->IProfile_CPs()->IConfigProperties_NewEnum();
    ASSERT_EQ(properties.size(), expected.size()) << name;
    for (size_t i = 0; i < properties.size(); ++i) {
      if (empty_texts.count(properties[i]->IConfigProperty_Name())) continue;
      std::string hex;
      for (const uint8_t byte : expected[i]) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", byte);
        hex += digits;
      }
      const RawBytes bytes = CheckedRawBytes(properties[i]);
      EXPECT_EQ(bytes.raw, hex) << name << " " << properties[i]->IConfigProperty_Name() << " "
                                << bytes.problem;
      ++values;
    }
    for (const auto& nv : profile->IProfile_NVs()->INetworkVariables_NewEnum()) {
      const auto type = nv->INetworkVariable_SNVTType();
      EXPECT_FALSE(type->ISNVType_GenType().empty()) << name << " " << nv->INetworkVariable_Name();
      ++variables;
    }
  }
  std::cout << values << " property values and " << variables << " network variables checked\n";
  EXPECT_GT(values, 150);
}

}  // namespace
}  // namespace kolvane::test
