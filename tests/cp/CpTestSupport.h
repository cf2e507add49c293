#pragma once

// Fixtures shared by the configuration-property tests.

#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cp/CConfigProperties.h"
#include "cp/CConfigProperty.h"

#include "../TestSupport.h"

namespace kolvane::test {

// Schedule types the bundled catalogue lacks.
inline constexpr char kCpExtraTypes[] = R"(
  <SNVT_40050><NAME>40050</NAME><TYPE>UnsignedNumeric</TYPE><MIN>0</MIN><MAX>255</MAX>
    <LENGTH>1</LENGTH><A_COEF>1</A_COEF><B_COEF>0</B_COEF><C_COEF>0</C_COEF></SNVT_40050>
  <SNVT_40051><NAME>40051</NAME><TYPE>UnsignedNumeric</TYPE><MIN>0</MIN><MAX>255</MAX>
    <LENGTH>1</LENGTH><A_COEF>1</A_COEF><B_COEF>0</B_COEF><C_COEF>0</C_COEF></SNVT_40051>
  <SNVT_40060><NAME>40060</NAME><TYPE>UnsignedNumeric</TYPE><MIN>0</MIN><MAX>255</MAX>
    <LENGTH>1</LENGTH><A_COEF>1</A_COEF><B_COEF>0</B_COEF><C_COEF>0</C_COEF></SNVT_40060>
  <SNVT_40061><NAME>40061</NAME><TYPE>UnsignedNumeric</TYPE><MIN>0</MIN><MAX>255</MAX>
    <LENGTH>1</LENGTH><A_COEF>1</A_COEF><B_COEF>0</B_COEF><C_COEF>0</C_COEF></SNVT_40061>
  <SNVT_40070><NAME>40070</NAME><TYPE>Struct</TYPE>
    <Fields><start>count</start><mode>occupancy</mode></Fields></SNVT_40070>
  <SNVT_40071><NAME>40071</NAME><TYPE>Struct</TYPE>
    <Fields><start>count</start><mode>occupancy</mode></Fields></SNVT_40071>
)";

// Stands for the owning profile; records what the collection tells it.
class CountingProfile final : public IUnknown, public internal::ProfileOwner {
 public:
  void RebuildCompatibilityLists() override {}
  void ConfigPropertiesChanged() override { ++changes; }
  void ConfigPropertyRenamed(const std::string& global_key, const std::string& name) override {
    renames.emplace_back(global_key, name);
  }
  int changes = 0;
  std::vector<std::pair<std::string, std::string>> renames;
};

// Records the mouse pointers set while alive.
struct PointerRecorder {
  PointerRecorder()
      : previous(SetPointerHandler([this](int16_t pointer) { pointers.push_back(pointer); })) {}
  ~PointerRecorder() { SetPointerHandler(std::move(previous)); }
  std::vector<int16_t> pointers;
  PointerHandler previous;
};

// Bundled catalogue plus the extra types, a collection owned by a counting profile, boxes
// recorded, "." as decimal separator and the save flags restored afterwards.
class CpFixture : public ::testing::Test {
 protected:
  CpFixture() { properties.SetProfile(profile); }

  // The element xml (comments kept), alive as long as the fixture.
  pugi::xml_node Element(const std::string& xml) {
    pugi::xml_document& document = documents.emplace_back();
    EXPECT_TRUE(document.load_string(xml.c_str(), pugi::parse_default | pugi::parse_comments));
    return document.document_element();
  }

  // Adds the property written as one element (named after the property) to the collection.
  std::shared_ptr<CConfigProperty> Add(const std::string& xml) {
    const pugi::xml_node root = Element(xml);
    auto added = std::dynamic_pointer_cast<CConfigProperty>(
        properties.IConfigProperties_AddCP(root.name(), nullptr, root));
    EXPECT_NE(added, nullptr) << xml;
    return added;
  }

  MessageBoxRecorder boxes;
  ScopedDecimalSeparator point{"."};
  ScopedCatalogue catalogue{BundledCatalogueWith(kCpExtraTypes)};
  ScopedSaveFlags flags;
  std::deque<pugi::xml_document> documents;
  std::shared_ptr<CountingProfile> profile = std::make_shared<CountingProfile>();
  CConfigProperties properties;
};

// A warning box as loading shows it.
inline MessageBoxRecorder::Box WarningBox(const std::string& text) {
  return {text, vbCritical, "Warning"};
}

// The warning for an assumed default.
inline MessageBoxRecorder::Box DefaultBox(const std::string& name, const std::string& assumed) {
  return WarningBox(name + ": Default value not defined into the XML file of the profile; " +
                    assumed + " assumed.");
}

}  // namespace kolvane::test
