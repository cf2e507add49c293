#pragma once

// Fixture helpers shared by the unit tests; the public API (Kolvane.h) comes with them.

#include <gtest/gtest.h>
#include <unistd.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <stdexcept>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include <pugixml.hpp>

#include "fields/CField.h"
#include "fields/CFields.h"
#include "foundation/Globals.h"
#include "foundation/ProfileOwner.h"
#include "Kolvane.h"
#include "host/BuiltInComponents.h"
#include "types/CSNVTType.h"

namespace kolvane::test {

// The bundled type catalogue and NVO table.
inline constexpr char kBundledCatalogue[] = KOLVANE_SOURCE_DIR "/examples/snvts.xml";
// An NVO table with lists of several types (the bundled one mostly lists a type itself).
inline constexpr char kTestNvoTable[] = KOLVANE_SOURCE_DIR "/tests/data/nvotable.xml";
// The room controller the tests load: the bundled example with two properties left without a
// default, so that loading warns of the defaults it assumes.
inline constexpr char kRoomProfile[] = KOLVANE_SOURCE_DIR "/tests/data/profile-room.xml";
// Why a test that needs the decimal-comma locale fails without it.
inline constexpr char kMissingLocale[] = "locale de_DE.UTF-8 is missing: run scripts/setup.sh";

// The error number f raises: 0 when it runs through, -1 for an exception that is not an Error.
template <class F>
int32_t ErrorNumberOf(F&& f) {
  try {
    f();
  } catch (const Error& e) {
    return e.number();
  } catch (...) {
    return -1;
  }
  return 0;
}

// The whole file as text.
inline std::string FileText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// An XML text (or the file at that path) parsed with its comments.
inline std::shared_ptr<pugi::xml_document> Parsed(const std::string& xml, bool is_path = false) {
  auto document = std::make_shared<pugi::xml_document>();
  const unsigned options = pugi::parse_default | pugi::parse_comments;
  const auto result = is_path ? document->load_file(xml.c_str(), options)
                              : document->load_string(xml.c_str(), options);
  EXPECT_TRUE(result) << result.description() << ": " << xml;
  return document;
}

// Makes an XML text (or the file at that path) the type catalogue while alive.
struct ScopedCatalogue {
  explicit ScopedCatalogue(const std::string& xml, bool is_path = false)
      : document(Parsed(xml, is_path)) {
    HandIn();
  }
  ~ScopedCatalogue() { Globals::SetSnvtCatalogDocument(nullptr); }
  void HandIn() { Globals::SetSnvtCatalogDocument(document); }
  const std::shared_ptr<pugi::xml_document> document;
};

// The bundled catalogue's text with extra type elements added before its own, so that an extra
// type of a name the catalogue has is the one found.
inline std::string BundledCatalogueWith(const std::string& extra_types) {
  std::string text = FileText(kBundledCatalogue);
  const size_t root = text.find("<SNVTS>");
  text.insert(root + 7, extra_types);
  return text;
}

// A type loaded from the catalogue.
inline std::shared_ptr<CSNVTType> TypeOf(const std::string& identifier) {
  auto type = std::make_shared<CSNVTType>();
  type->Load(identifier);
  return type;
}

// A state of an enumeration.
inline std::shared_ptr<iState> StateOf(int16_t value, const std::string& name) {
  auto state = std::make_shared<CState>();
  state->iState_Value(value);
  state->iState_Name(name);
  return state;
}

// Records the message boxes (text, style, title) shown while alive, answering `answer`.
struct MessageBoxRecorder {
  using Box = std::tuple<std::string, int32_t, std::string>;
  explicit MessageBoxRecorder(int32_t answer = vbOK)
      : previous(SetMessageBoxHandler([this, answer](auto& text, int32_t style, auto& title) {
          boxes.emplace_back(text, style, title);
          return answer;
        })) {}
  ~MessageBoxRecorder() { SetMessageBoxHandler(std::move(previous)); }
  std::vector<Box> boxes;
  MessageBoxHandler previous;
};
using Boxes = std::vector<MessageBoxRecorder::Box>;

// The warning loading shows for the missing default of item (or field path) name.
inline MessageBoxRecorder::Box DefaultBox(const std::string& name, const std::string& assumed) {
  return {name + ": Default value not defined into the XML file of the profile; " + assumed +
              " assumed.",
          vbCritical, "Warning"};
}

// A fresh folder under the temporary folder, removed with its contents.
struct TempFolder {
  TempFolder() { std::filesystem::create_directories(path); }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  // Writes content byte for byte to the file name in the folder; returns its path.
  std::string Write(const std::string& name, const std::string& content) const {
    std::ofstream(path + "/" + name, std::ios::binary) << content;
    return path + "/" + name;
  }
  const std::string path =
      std::filesystem::temp_directory_path() /
      ("kolvane-test-" + std::to_string(getpid()) + "-" + std::to_string(std::random_device()()));
};

// Makes separator the user's decimal separator (and the other one the alternate) while alive.
struct ScopedDecimalSeparator {
  explicit ScopedDecimalSeparator(const std::string& separator)
      : decimal(Globals::DecimalSeparator), alternate(Globals::AlternateSeparator) {
    Globals::DecimalSeparator = separator;
    Globals::AlternateSeparator = separator == "," ? "." : ",";
  }
  ~ScopedDecimalSeparator() {
    Globals::DecimalSeparator = decimal;
    Globals::AlternateSeparator = alternate;
  }
  std::string decimal, alternate;
};

// US customary display units from the bundled unit table, for as long as the object lives.
struct ScopedUsUnits {
  ScopedUsUnits() : previous(SetUnitSystem(UnitSystem::kUSCustomary)) {
    SetUnitTable(Parsed(KOLVANE_SOURCE_DIR "/examples/units.xml", true));
  }
  ~ScopedUsUnits() {
    SetUnitSystem(previous);
    SetUnitTable(nullptr);
  }
  UnitSystem previous;
};

// Registers factory under progId (an empty one unregisters it) while alive; afterwards the
// built-in component of that ProgID is registered again, or none when it has no built-in.
struct ScopedComponent {
  ScopedComponent(std::string id, ClassFactory factory) : progId(std::move(id)) {
    RegisterClass(progId, std::move(factory));
  }
  ~ScopedComponent() {
    ClassFactory built_in;
    for (auto& [id, factory] : internal::BuiltInComponents()) {
      if (id == progId) built_in = factory;
    }
    RegisterClass(progId, built_in);
  }
  std::string progId;
};

// Acts as the user: records the caption of every form it runs and runs the queued steps, one
// per form shown, in order; with no step left a form returns at once.
struct ScriptedFormHost final : FormHost {
  void RunModal(Form& form) override {
    captions.push_back(form.Caption());
    if (steps.empty()) return;
    const auto step = std::move(steps.front());
    steps.pop_front();
    step(form);
  }
  std::deque<std::function<void(Form&)>> steps;
  std::vector<std::string> captions;
};

// Installs a ScriptedFormHost while alive, then restores the previous host.
struct ScopedFormHost {
  ScopedFormHost() : previous(SetFormHost(host)) {}
  ~ScopedFormHost() { SetFormHost(std::move(previous)); }
  const std::shared_ptr<ScriptedFormHost> host = std::make_shared<ScriptedFormHost>();
  std::shared_ptr<FormHost> previous;
};

// Types keys into box as a toolkit does: press sees each key and may change or drop it (0); a
// kept printable key or Backspace edits the text (the selection, else the character before the
// caret), then change runs. Returns the keys kept, as press left them.
inline std::string TypeKeys(TextBox& box, const std::string& keys,
                            const std::function<void(int16_t&)>& press,
                            const std::function<void()>& change) {
  std::string kept;
  for (const char key : keys) {
    int16_t code = static_cast<unsigned char>(key);
    press(code);
    if (code != 0) kept += static_cast<char>(code);
    if (code == 0 || (code < ' ' && code != '\b')) continue;
    const bool back = code == '\b';
    const int32_t caret = std::min(box.SelStart, static_cast<int32_t>(box.Text.size()));
    const int32_t start = caret - (back && box.SelLength == 0 && caret > 0 ? 1 : 0);
    // The key as press left it replaces the selection; Backspace removes it.
    box.Text.replace(start, caret + box.SelLength - start, std::string(!back, kept.back()));
    box.SelStart = start + (back ? 0 : 1);
    box.SelLength = 0;
    change();
  }
  return kept;
}

// Stands for the network variable (item type 2) or configuration property (3) owning fields;
// its global key is "G\" + name, its display key the name.
class FakeOwner final : public ISubItemConnable, public IDisplayItem, public internal::FieldOwner {
 public:
  explicit FakeOwner(int32_t item_type, std::string name = "Owner")
      : item_type(item_type), name(std::move(name)) {}

  void ISubItemConnable_IsConnected(bool) override {}
  void ISubItemConnable_HasPriority(bool) override {}
  void ISubItemConnable_IncrementalConnIndex(int32_t) override {}
  void ISubItemConnable_ConnectedType(const std::string&) override {}
  int32_t ISubItemConnable_ItemType() const override { return item_type; }
  std::string ISubItemConnable_GlobalKey() const override { return "G\\" + name; }
  std::string ISubItemConnable_Name() const override { return name; }
  std::shared_ptr<ISNVType> ISubItemConnable_SNVTType() const override { return nullptr; }
  bool ISubItemConnable_IsSNVTCompatible(const std::string&) override { return false; }

  std::string IDisplayItem_DisplayText() const override { return name; }
  void IDisplayItem_DisplayText(const std::string&) override {}
  std::string IDisplayItem_Key() const override { return name; }
  int32_t IDisplayItem_ItemType() const override { return item_type == 3 ? 0 : 1; }
  int32_t IDisplayItem_Icon() const override { return 0; }
  bool IDisplayItem_IsWritable() const override { return true; }
  bool IDisplayItem_IsTrendable() const override { return false; }
  std::string IDisplayItem_Reference() const override { return ""; }
  bool IDisplayItem_IsConnected() const override { return false; }
  bool IDisplayItem_IsDisplayable() const override { return displayable; }
  std::shared_ptr<ISNVType> IDisplayItem_SNVTType() const override { return nullptr; }
  std::shared_ptr<IFields> IDisplayItem_Fields() const override { return nullptr; }

  std::shared_ptr<IUnitConverter> UnitsManager() const override { return converter; }
  bool FieldDefaultsFlag() const override { return field_defaults; }

  int32_t item_type;
  std::string name;
  bool displayable = true;
  bool field_defaults = false;
  std::shared_ptr<IUnitConverter> converter =
      std::dynamic_pointer_cast<IUnitConverter>(CreateObject("UnitManager.Converter"));
};

// The fields of structure type type_name for owner, keyed below the owner's global key.
inline std::shared_ptr<CFields> BuildFields(const std::shared_ptr<FakeOwner>& owner,
                                            const std::string& type_name,
                                            const std::string& value_text = "", bool warn = false) {
  auto fields = std::make_shared<CFields>();
  fields->SetParent(owner);
  int32_t position = 0;
  fields->BuildFromType(position, type_name, owner->item_type, value_text, warn);
  fields->SetGlobalKeys(owner->ISubItemConnable_GlobalKey());
  return fields;
}

// The field at a dotted path ("room.fan.value") of fields, as a CField; nullptr when missing.
inline std::shared_ptr<CField> FieldAt(const std::shared_ptr<IFields>& fields,
                                       const std::string& path) {
  std::shared_ptr<IFields> level = fields;
  std::shared_ptr<IField> field;
  std::istringstream parts(path);
  for (std::string part; std::getline(parts, part, '.');) {
    field = level ? level->IFields_Item(part) : nullptr;
    if (!field) return nullptr;
    level = field->IField_Fields();
  }
  return std::dynamic_pointer_cast<CField>(field);
}

// node as raw XML text, no indentation.
inline std::string XmlText(pugi::xml_node node) {
  std::ostringstream out;
  node.print(out, "", pugi::format_raw);
  return out.str();
}

// Stands for the profile owning the collections; counts what the collections tell it.
class FakeProfile final : public IUnknown, public internal::ProfileOwner {
 public:
  void RebuildCompatibilityLists() override { ++rebuilds; }
  void ConfigPropertiesChanged() override { ++changes; }
  void ConfigPropertyRenamed(const std::string& global_key, const std::string& name) override {
    renames.emplace_back(global_key, name);
  }
  int rebuilds = 0, changes = 0;
  std::vector<std::pair<std::string, std::string>> renames;
};

// Bundled catalogue, message boxes recorded, "." as decimal separator, the save flags
// (Globals::NeedSaveFlag, DisplayIncompatibleFlag) cleared and restored afterwards.
class CatalogueFixture : public ::testing::Test {
 protected:
  CatalogueFixture() { ClearFlags(); }
  ~CatalogueFixture() override {
    Globals::NeedSaveFlag = need_save;
    Globals::DisplayIncompatibleFlag = display_incompatible;
  }
  static void ClearFlags() { Globals::NeedSaveFlag = Globals::DisplayIncompatibleFlag = false; }

  // The element xml (comments kept), alive as long as the fixture.
  pugi::xml_node Element(const std::string& xml) {
    return documents.emplace_back(Parsed(xml))->document_element();
  }

  const bool need_save = Globals::NeedSaveFlag;
  const bool display_incompatible = Globals::DisplayIncompatibleFlag;
  MessageBoxRecorder boxes;
  ScopedDecimalSeparator point{"."};
  ScopedCatalogue catalogue{kBundledCatalogue, true};
  std::vector<std::shared_ptr<pugi::xml_document>> documents;
};

// item, which must not be null: a null one ends the test as failed (by an exception).
template <class Pointer>
Pointer NotNull(Pointer item, const std::string& what = "") {
  if (!item) throw std::runtime_error("unexpected null " + what);
  return item;
}

// A CatalogueFixture that also has the bundled NVO table and restores the profile document.
class ProfileFixture : public CatalogueFixture {
 protected:
  ~ProfileFixture() override { Globals::ProfileDocument = profile_document; }

  // A new profile with the bundled documents handed in ("." again as decimal separator).
  std::shared_ptr<IProfile> NewProfile() {
    auto profile = CreateProfile();
    Globals::DecimalSeparator = ".";
    Globals::AlternateSeparator = ",";
    profile->Iprofile_SetXmlDomDocs(catalogue.document, nvo_table);
    return profile;
  }

  // profile loaded (again) from a profile document; its name is read from the document.
  std::shared_ptr<IProfile> Load(std::shared_ptr<IProfile> profile, const std::string& xml,
                                 bool is_path = true) {
    documents.push_back(Parsed(xml, is_path));
    std::string name;
    profile->IProfile_FriendSet(documents.back(), name, nullptr, catalogue.document, nvo_table, "");
    return profile;
  }
  std::shared_ptr<IProfile> Loaded(const std::string& xml = kRoomProfile, bool is_path = true) {
    return Load(NewProfile(), xml, is_path);
  }

  const std::shared_ptr<pugi::xml_document> profile_document = Globals::ProfileDocument;
  const std::shared_ptr<pugi::xml_document> nvo_table = Parsed(kTestNvoTable, true);
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

// The identifiers of a compatible list joined by ",", read without the utility; "(none)" for no
// list.
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
