#pragma once

// Fixtures shared by the profile tests: the bundled documents, a loaded profile, item lookups
// by name and whole-document comparison with expected files.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "Kolvane.h"
#include "foundation/Globals.h"

#include "../TestSupport.h"

namespace kolvane::test {

inline constexpr char kBundledProfile[] = KOLVANE_SOURCE_DIR "/examples/profile.xml";
inline constexpr char kWarning[] = "Warning";
inline constexpr char kNoDefault[] =
    ": Default value not defined into the XML file of the profile; ";

// A document parsed with its comments, shared as a host hands documents in.
inline std::shared_ptr<pugi::xml_document> SharedDocument(const std::string& xml,
                                                          bool is_path = true) {
  auto document = std::make_shared<pugi::xml_document>();
  const unsigned options = pugi::parse_default | pugi::parse_comments;
  const auto result = is_path ? document->load_file(xml.c_str(), options)
                              : document->load_string(xml.c_str(), options);
  EXPECT_TRUE(result) << xml << ": " << result.description();
  return document;
}

// The whole file as text.
inline std::string FileText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// node printed with two-blank indentation, as the expected files are written.
inline std::string IndentedXml(pugi::xml_node node) {
  std::ostringstream out;
  node.print(out, "  ", pugi::format_indent);
  return out.str();
}

// Compares text with tests/data/name; on a mismatch the text is left in the temporary folder.
inline ::testing::AssertionResult MatchesExpectedFile(const std::string& text,
                                                      const std::string& name) {
  const std::string expected = FileText(KOLVANE_SOURCE_DIR "/tests/data/" + name);
  if (text == expected) return ::testing::AssertionSuccess();
  const auto actual = std::filesystem::temp_directory_path() / (name + ".actual");
  std::ofstream(actual, std::ios::binary) << text;
  return ::testing::AssertionFailure()
         << "differs from tests/data/" << name << "; written to " << actual.string();
}

// Keeps the shared state the profile changes (documents, flags, separator) and restores it.
struct ScopedProfileGlobals {
  ~ScopedProfileGlobals() {
    Globals::SetSnvtCatalogDocument(catalogue);
    Globals::ProfileDocument = profile_document;
    Globals::NeedSaveFlag = need_save;
    Globals::DisplayIncompatibleFlag = display_incompatible;
  }
  std::shared_ptr<pugi::xml_document> catalogue = Globals::SnvtCatalogDocument;
  std::shared_ptr<pugi::xml_document> profile_document = Globals::ProfileDocument;
  bool need_save = Globals::NeedSaveFlag;
  bool display_incompatible = Globals::DisplayIncompatibleFlag;
  ScopedDecimalSeparator separator{"."};
};

// Bundled catalogue and NVO table, message boxes recorded, "." as decimal separator.
class ProfileFixture : public ::testing::Test {
 protected:
  // A new profile with the bundled documents handed in (the separator detected at creation is
  // replaced by ".").
  std::shared_ptr<IProfile> NewProfile() {
    auto profile = CreateProfile();
    Globals::DecimalSeparator = ".";
    Globals::AlternateSeparator = ",";
    profile->Iprofile_SetXmlDomDocs(catalogue, nvo_table);
    return profile;
  }

  // A new profile loaded from a profile document; its name is read from the document.
  std::shared_ptr<IProfile> Loaded(const std::string& xml, bool is_path = true,
                                   const std::shared_ptr<IUnknown>& parent = nullptr) {
    auto profile = NewProfile();
    documents.push_back(SharedDocument(xml, is_path));
    std::string name;
    profile->IProfile_FriendSet(documents.back(), name, parent, catalogue, nvo_table, "");
    return profile;
  }

  // The texts of the message boxes shown so far, each with style and title when not (16, kWarning).
  std::vector<std::string> BoxTexts() const {
    std::vector<std::string> texts;
    for (const auto& [text, style, title] : boxes.boxes) {
      texts.push_back(style == vbCritical && title == kWarning
                          ? text
                          : text + " [" + std::to_string(style) + ", " + title + "]");
    }
    return texts;
  }

  ScopedProfileGlobals globals;
  MessageBoxRecorder boxes;
  const std::shared_ptr<pugi::xml_document> catalogue = SharedDocument(kBundledCatalogue);
  const std::shared_ptr<pugi::xml_document> nvo_table = SharedDocument(kBundledNvoTable);
  std::vector<std::shared_ptr<pugi::xml_document>> documents;
};

// Stands for the host object that owns a profile.
class FakeHost final : public IUnknown {};

// The network variable called name, or nullptr.
inline std::shared_ptr<INetworkVariable> NvNamed(const IProfile& profile, const std::string& name) {
  for (const auto& variable : profile.IProfile_NVs()->INetworkVariables_NewEnum()) {
    if (variable->INetworkVariable_Name() == name) return variable;
  }
  return nullptr;
}

// The configuration property called name, or nullptr.
inline std::shared_ptr<IConfigProperty> CpNamed(const IProfile& profile, const std::string& name) {
  for (const auto& property : profile.IProfile_CPs()->IConfigProperties_NewEnum()) {
    if (property->IConfigProperty_Name() == name) return property;
  }
  return nullptr;
}

// The identifiers of a compatible list joined by ","; "(none)" for no list.
inline std::string Identifiers(const std::shared_ptr<ICompatibleSNVTs>& list) {
  if (!list) return "(none)";
  std::string text;
  for (const auto& entry : list->ICompatibleSNVTs_NewEnum()) {
    text += (text.empty() ? "" : ",") + entry->ICompatibleSNVT_ID();
  }
  return text;
}

// "value | default | min | max" display texts of an item.
template <class Item>
std::string DisplayTexts(const Item& item) {
  if constexpr (std::is_base_of_v<INetworkVariable, Item>) {
    return item.INetworkVariable_DispValue() + " | " + item.INetworkVariable_DispDefault() + " | " +
           item.INetworkVariable_DispMin() + " | " + item.INetworkVariable_DispMax();
  } else {
    return item.IConfigProperty_DispValue() + " | " + item.IConfigProperty_DispDefault() + " | " +
           item.IConfigProperty_DispMin() + " | " + item.IConfigProperty_DispMax();
  }
}

}  // namespace kolvane::test
