#pragma once

// Fixture helpers shared by the unit tests.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <optional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <pugixml.hpp>

#include "dialogs/Form.h"
#include "fields/CField.h"
#include "fields/CFields.h"
#include "fields/FieldOwner.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/HostServices.h"
#include "foundation/ProfileOwner.h"
#include "host/BuiltInComponents.h"
#include "interfaces/IDisplayItem.h"
#include "interfaces/ISubItemConnable.h"
#include "interfaces/IUnitConverter.h"
#include "interfaces/IUnknown.h"
#include "types/CSNVTType.h"

namespace kolvane::test {

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

// Why a test that needs the decimal-comma locale fails without it.
inline constexpr char kMissingLocale[] = "locale de_DE.UTF-8 is missing: run scripts/setup.sh";

// Makes an XML text (or the file at that path), comments kept, the type catalogue while alive.
struct ScopedCatalogue {
  explicit ScopedCatalogue(const std::string& xml, bool is_path = false) {
    const unsigned options = pugi::parse_default | pugi::parse_comments;
    const auto result = is_path ? document->load_file(xml.c_str(), options)
                                : document->load_string(xml.c_str(), options);
    EXPECT_TRUE(result) << result.description();
    HandIn();
  }
  ~ScopedCatalogue() { Globals::SetSnvtCatalogDocument(nullptr); }
  void HandIn() { Globals::SetSnvtCatalogDocument(document); }
  const std::shared_ptr<pugi::xml_document> document = std::make_shared<pugi::xml_document>();
};

// A type loaded from the catalogue.
inline CSNVTType LoadedType(const std::string& identifier) {
  CSNVTType type;
  type.Load(identifier);
  return type;
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

// Sets an environment variable while alive.
struct ScopedEnv {
  ScopedEnv(const char* name, const char* value) : name(name) {
    if (const char* old = std::getenv(name)) saved = old;
    setenv(name, value, 1);
  }
  ~ScopedEnv() { saved ? setenv(name.c_str(), saved->c_str(), 1) : unsetenv(name.c_str()); }
  std::string name;
  std::optional<std::string> saved;
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

// Counts the yields to the host while alive.
struct YieldCounter {
  YieldCounter() : previous(SetYieldHandler([this] { ++count; })) {}
  ~YieldCounter() { SetYieldHandler(std::move(previous)); }
  int count = 0;
  YieldHandler previous;
};

// Acts as the user: records the caption of every form it runs and runs the queued steps, one
// per form shown, in order; with no step left a form returns at once.
class ScriptedFormHost final : public FormHost {
 public:
  using Step = std::function<void(Form&)>;
  void RunModal(Form& form) override {
    captions.push_back(form.Caption());
    if (steps.empty()) return;
    Step step = std::move(steps.front());
    steps.pop_front();
    step(form);
  }
  std::deque<Step> steps;
  std::vector<std::string> captions;
};

// Installs a ScriptedFormHost while alive, then restores the previous host.
struct ScopedFormHost {
  ScopedFormHost() : previous(SetFormHost(host)) {}
  ~ScopedFormHost() { SetFormHost(std::move(previous)); }
  const std::shared_ptr<ScriptedFormHost> host = std::make_shared<ScriptedFormHost>();
  std::shared_ptr<FormHost> previous;
};

// Stands for the network variable (item type 2) or configuration property (3) owning fields.
class FakeOwner final : public ISubItemConnable,
                        public IDisplayItem,
                        public internal::FieldOwner {
 public:
  explicit FakeOwner(int32_t item_type, std::string name = "Owner")
      : item_type(item_type), name(name), global_key("G\\" + name), key(std::move(name)) {}

  void ISubItemConnable_IsConnected(bool) override {}
  void ISubItemConnable_HasPriority(bool) override {}
  void ISubItemConnable_IncrementalConnIndex(int32_t) override {}
  void ISubItemConnable_ConnectedType(const std::string&) override {}
  int32_t ISubItemConnable_ItemType() const override { return item_type; }
  std::string ISubItemConnable_GlobalKey() const override { return global_key; }
  std::string ISubItemConnable_Name() const override { return name; }
  std::shared_ptr<ISNVType> ISubItemConnable_SNVTType() const override { return nullptr; }
  bool ISubItemConnable_IsSNVTCompatible(const std::string&) override { return false; }

  std::string IDisplayItem_DisplayText() const override { return name; }
  void IDisplayItem_DisplayText(const std::string&) override {}
  std::string IDisplayItem_Key() const override { return key; }
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
  std::string name, global_key, key;
  bool displayable = true;
  bool field_defaults = false;
  std::shared_ptr<IUnitConverter> converter =
      std::dynamic_pointer_cast<IUnitConverter>(CreateObject("UnitManager.Converter"));
};

// The fields of structure type type_name for owner, built from position (advanced) and keyed
// below the owner's global key.
inline std::shared_ptr<CFields> BuildFields(const std::shared_ptr<FakeOwner>& owner,
                                            const std::string& type_name,
                                            const std::string& value_text, bool warn,
                                            int32_t& position) {
  auto fields = std::make_shared<CFields>();
  fields->SetParent(owner);
  fields->BuildFromType(position, type_name, owner->item_type, value_text, warn);
  fields->SetGlobalKeys(owner->global_key);
  return fields;
}

inline std::shared_ptr<CFields> BuildFields(const std::shared_ptr<FakeOwner>& owner,
                                            const std::string& type_name,
                                            const std::string& value_text = "",
                                            bool warn = false) {
  int32_t position = 0;
  return BuildFields(owner, type_name, value_text, warn, position);
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

// The bundled catalogue's text with extra type elements added at its end.
inline std::string BundledCatalogueWith(const std::string& extra_types) {
  std::ifstream file(KOLVANE_SOURCE_DIR "/examples/snvts.xml", std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  text.insert(text.rfind("</SNVTS>"), extra_types);
  return text;
}

// node as raw XML text, no indentation.
inline std::string XmlText(pugi::xml_node node) {
  std::ostringstream out;
  node.print(out, "", pugi::format_raw);
  return out.str();
}

// Stands for the profile owning the collections; counts the compatible-list rebuilds asked of it.
class FakeProfile final : public IUnknown, public internal::ProfileOwner {
 public:
  void RebuildCompatibilityLists() override { ++rebuilds; }
  int rebuilds = 0;
};

// Clears Globals::NeedSaveFlag and DisplayIncompatibleFlag while alive, then restores them.
struct ScopedSaveFlags {
  ScopedSaveFlags()
      : need_save(Globals::NeedSaveFlag), display_incompatible(Globals::DisplayIncompatibleFlag) {
    Clear();
  }
  ~ScopedSaveFlags() {
    Globals::NeedSaveFlag = need_save;
    Globals::DisplayIncompatibleFlag = display_incompatible;
  }
  void Clear() { Globals::NeedSaveFlag = Globals::DisplayIncompatibleFlag = false; }
  bool need_save, display_incompatible;
};

// An XML text (or the file at that path) parsed into a document of its own.
struct ParsedXml {
  explicit ParsedXml(const std::string& xml, bool is_path = false) {
    const auto result =
        is_path ? document.load_file(xml.c_str()) : document.load_string(xml.c_str());
    EXPECT_TRUE(result) << result.description();
  }
  // The document element.
  pugi::xml_node Root() const { return document.document_element(); }
  pugi::xml_document document;
};

// The bundled type catalogue and NVO table.
inline constexpr char kBundledCatalogue[] = KOLVANE_SOURCE_DIR "/examples/snvts.xml";
inline constexpr char kBundledNvoTable[] = KOLVANE_SOURCE_DIR "/examples/nvotable.xml";

}  // namespace kolvane::test
