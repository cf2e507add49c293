#include "conversion/ValueCodec.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

// Shows every conversion, so that display units and the type's own units tell apart.
class MarkingConverter final : public IUnitConverter {
 public:
  std::string ToDisplayUnits(const std::string&, const std::string& value) override {
    return "[" + value + "]";
  }
  std::string FromDisplayUnits(const std::string&, const std::string& value) override {
    return value;
  }
  std::string DisplayMinimum(const std::string& id) override { return "min-" + id; }
  std::string DisplayMaximum(const std::string& id) override { return "max-" + id; }
  std::string DisplayUnits(const std::string&) override { return "°F"; }
  std::string DefaultValue(const std::string&) override { return ""; }
  double TextToNumber(const std::string&) override { return 0; }
};

std::shared_ptr<ITypeOverride> Override(const std::string& type,
                                        std::vector<std::pair<int16_t, std::string>> states) {
  auto result = std::make_shared<CTypeOverride>();
  result->ITypeOverride_OverridingType(type);
  auto set = std::make_shared<CStates>();
  for (auto& [value, name] : states) {
    auto state = StateOf(value, name);
    set->IStates_Add(state);
  }
  result->ITypeOverride_States(set);
  return result;
}

// "plain|shown|shown default|shown minimum|shown maximum" texts of an item.
std::string Texts(const codec::ItemTexts& item) {
  return codec::PlainValue(item) + "|" + codec::DisplayValue(item) + "|" +
         codec::DisplayDefault(item) + "|" + codec::DisplayLimit(item, false) + "|" +
         codec::DisplayLimit(item, true);
}

using ValueCodecTest = CatalogueFixture;

TEST_F(ValueCodecTest, NumbersShowInDisplayUnitsAndDefaultsInTheirOwn) {
  // The limits shown are the converter's, not the item's own 5 and 30.
  codec::ItemTexts item{
      "21.5", "20.5", "5", "30", TypeOf("temp_p"), nullptr, std::make_shared<MarkingConverter>()};
  EXPECT_EQ(Texts(item), "21.5|[21.5] °F|20.5 °C|min-temp_p °F|max-temp_p °F");
  {
    ScopedDecimalSeparator comma(",");
    EXPECT_EQ(Texts(item), "21,5|[21,5] °F|20,5 °C|min-temp_p °F|max-temp_p °F");
    item.value = "12,5";
    EXPECT_EQ(codec::DisplayValue(item), "[12,5] °F");
  }
  item.value = "Invalid";
  EXPECT_EQ(codec::PlainValue(item) + "|" + codec::DisplayValue(item), "Invalid|Invalid");

  item.converter = nullptr;
  item.value = "1.5";
  EXPECT_EQ(codec::PlainValue(item), "1.5");
  EXPECT_EQ(ErrorNumberOf([&] { codec::DisplayValue(item); }), 91);
  EXPECT_EQ(ErrorNumberOf([&] { codec::DisplayLimit(item, true); }), 91);
  item.type = nullptr;
  EXPECT_EQ(ErrorNumberOf([&] { codec::PlainValue(item); }), 91);
  EXPECT_EQ(ErrorNumberOf([&] { codec::DisplayDefault(item); }), 91);
}

TEST_F(ValueCodecTest, OtherKindsAndStructures) {
  ScopedDecimalSeparator comma(",");
  // An enumeration shows as stored and its default by name; other limits are localised.
  const codec::ItemTexts state{" OC_BYPASS ",       "1",     " 0.5 ", "3",
                               TypeOf("occupancy"), nullptr, nullptr};
  EXPECT_EQ(Texts(state), " OC_BYPASS | OC_BYPASS |OC_UNOCCUPIED|0,5|3");
  // A text is trimmed and localised like a number; it has no limits.
  const codec::ItemTexts text{" a.b ", " d.e ", "", "", TypeOf("str_asc"), nullptr, nullptr};
  EXPECT_EQ(Texts(text), "a,b|a,b|d,e||");

  codec::ItemTexts empty{"", "", "", "", TypeOf("switch"), std::make_shared<CFields>(), nullptr};
  EXPECT_EQ(Texts(empty), "{}|{}|{}|{}|{}");
  empty.fields = nullptr;
  EXPECT_EQ(ErrorNumberOf([&] { codec::PlainValue(empty); }), 91);

  // The state shows no limit: its blanks stay inside the braces.
  ScopedDecimalSeparator point(".");
  const auto owner = std::make_shared<FakeOwner>(3);
  const auto fields = BuildFields(owner, "switch", "{ 12.5  TOGGLE_ON }");
  const codec::ItemTexts lamp{"", "", "", "", TypeOf("switch"), fields, nullptr};
  EXPECT_EQ(Texts(lamp),
            "{ 12.5  TOGGLE_ON }|{ 12.5 %  TOGGLE_ON }|{ 0 %  TOGGLE_OFF }|"
            "{ 0 %   }|{ 100 %   }");
}

TEST_F(ValueCodecTest, PointRecordInBothForms) {
  codec::PointRecord record;
  record.key = "P7";
  record.global_key = "G\\nciSet";
  record.name = "nciSet";
  record.direction = "In";
  record.type_id = "temp_p";
  record.value = "21.5";
  record.x = 120;
  record.y = 45.5;
  record.export_index = 3;
  pugi::xml_document document;
  pugi::xml_node parent = document.append_child("Points");
  EXPECT_EQ(XmlText(codec::WritePointRecord(document, parent, record, false)),
            R"(<ApPoint Key="P7" Name="nciSet" Direction="In" Type="temp_p" Value="21.5" )"
            R"(Permanent="1"><ExtendedInfo Location="120;45.5" ExportIndex="3"/></ApPoint>)");
  ScopedDecimalSeparator comma(",");
  record.type_override = Override("temp_f", {{0, "IGNORED"}});
  EXPECT_EQ(XmlText(codec::WritePointRecord(document, parent, record, true)),
            R"(<ApPoint Key="P7" ItemKey="G\nciSet" Name="nciSet" Direction="In" Type="temp_p" )"
            R"(Value="21.5" Permanent="1"><ExtendedInfo Location="120;45,5" ExportIndex="3">)"
            R"(<TypeOverride Type="temp_f"/></ExtendedInfo></ApPoint>)");
  EXPECT_EQ(std::distance(parent.children().begin(), parent.children().end()), 2);
}

TEST_F(ValueCodecTest, OverridesOfTheItemAndOfNestedFields) {
  const auto owner = std::make_shared<FakeOwner>(3);
  const auto fields = BuildFields(owner, "40003");
  const auto occupancy = Override("occupancy", {{0, "OC_OCCUPIED"}, {1, "OC_UNOCCUPIED"}});
  FieldAt(fields, "fan_mode")->IOverridableItem_TypeOverride(Override("lev_percent", {}));
  FieldAt(fields, "room.space_temp")->IOverridableItem_TypeOverride(Override("temp_f", {}));
  FieldAt(fields, "room.fan.state")->IOverridableItem_TypeOverride(occupancy);

  codec::PointRecord record;
  record.key = "K";
  record.name = "nciRoom";
  record.direction = "In";
  record.type_id = "40003";
  record.value = "{}";
  record.type_override = occupancy;
  record.fields = fields;
  pugi::xml_document document;
  const pugi::xml_node point =
      codec::WritePointRecord(document, document.append_child("Points"), record, false);
  const std::string states =
      R"(<States><State Value="0" Name="OC_OCCUPIED"/><State Value="1" Name="OC_UNOCCUPIED"/>)"
      R"(</States>)";
  EXPECT_EQ(
      XmlText(point.child("ExtendedInfo")),
      R"(<ExtendedInfo Location="0;0" ExportIndex="0">)"
      R"(<TypeOverride Type="occupancy">)" +
          states + "</TypeOverride>" +
          R"(<TypeOverride Type="Struct"><Fields><Field Name="fan_mode" Type="lev_percent"/>)"
          R"(</Fields></TypeOverride>)"
          R"(<TypeOverride Type="Struct"><Fields><Field Name="room.space_temp" Type="temp_f"/>)"
          R"(</Fields></TypeOverride>)"
          R"(<TypeOverride Type="Struct"><Fields><Field Name="room.fan.state" Type="occupancy">)" +
          states + "</Field></Fields></TypeOverride></ExtendedInfo>");
}

// An enumeration override without states is a failed record, raised to the caller, and the
// record is not left half-written in the document; the save goes on with the next item.
TEST_F(ValueCodecTest, EnumerationOverrideWithoutStatesFailsItsRecord) {
  auto bare = std::make_shared<CTypeOverride>();
  bare->ITypeOverride_OverridingType("Enum");
  codec::PointRecord record;
  record.key = "P1";
  record.type_id = "occupancy";
  record.type_override = bare;
  pugi::xml_document document;
  pugi::xml_node points = document.append_child("Points");
  EXPECT_EQ(ErrorNumberOf([&] { codec::WritePointRecord(document, points, record, false); }),
            ErrorNumber::kObjectNotSet);
  EXPECT_EQ(XmlText(points), "<Points/>");

  // Through a profile: that variable's record is skipped, the others are written.
  ScopedCatalogue bundled(kBundledCatalogue, true);
  const auto profile = CreateProfile();
  profile->Iprofile_SetXmlDomDocs(Globals::SnvtCatalogDocument, nullptr);
  const auto first = profile->IProfile_NVs()->INetworkVariables_AddNV("nviA", 0, "occupancy");
  profile->IProfile_NVs()->INetworkVariables_AddNV("nviB", 0, "temp_p");
  std::dynamic_pointer_cast<IOverridableItem>(first)->IOverridableItem_TypeOverride(bare);
  pugi::xml_document saved;
  EXPECT_EQ(profile->Iprofile_XmlSaveValue(saved.append_child("Device"), saved), 0);
  EXPECT_EQ(saved.select_nodes("//ApPoint").size(), 1u);
  EXPECT_STREQ(saved.select_node("//ApPoint").node().attribute("Name").value(), "nviB");
}

}  // namespace
}  // namespace kolvane::test
