#include "fields/CFields.h"

#include "conversion/ValueCodec.h"
#include "fields/CField.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

using test::BuildFields;
using test::ErrorNumberOf;
using test::FakeOwner;
using test::FieldAt;

constexpr char kCatalogue[] = R"(<SNVTS>
  <SNVT_u8><NAME>u8</NAME><TYPE>UnsignedNumeric</TYPE><DEFAULT>3</DEFAULT><LENGTH>1</LENGTH>
    <A_COEF>1</A_COEF><B_COEF>0</B_COEF><C_COEF>0</C_COEF></SNVT_u8>
  <SNVT_u16><NAME>u16</NAME><TYPE>UnsignedNumeric</TYPE><DEFAULT>4</DEFAULT><LENGTH>2</LENGTH>
    <A_COEF>1</A_COEF><B_COEF>0</B_COEF><C_COEF>0</C_COEF></SNVT_u16>
  <SNVT_S><NAME>S</NAME><TYPE>Struct</TYPE><Fields><p>u16</p><q>u8</q></Fields></SNVT_S>
  <SNVT_T><NAME>T</NAME><TYPE>Struct</TYPE>
    <Fields><x>u8</x><!-- nested --><s>S</s><y>u16</y></Fields></SNVT_T>
  <SNVT_abc><NAME>abc</NAME><TYPE>Struct</TYPE><Fields><a>u16</a><b>u8</b><c>u16</c></Fields>
    </SNVT_abc>
  <SNVT_named><NAME>named</NAME><TYPE>Struct</TYPE><Fields><n:2>u8</n:2><x>u16</x></Fields>
    </SNVT_named>
  <SNVT_dup><NAME>dup</NAME><TYPE>Struct</TYPE><Fields><a>u8</a><a>u16</a></Fields></SNVT_dup>
  <SNVT_loop><NAME>loop</NAME><TYPE>Struct</TYPE><Fields><a>u8</a><self>loop</self></Fields>
    </SNVT_loop>
</SNVTS>)";

std::string Bundled() { return KOLVANE_SOURCE_DIR "/examples/snvts.xml"; }

TEST(CFieldsTest, NestedStructureStartsWhereItsLevelStarted) {
  test::ScopedCatalogue catalogue(kCatalogue);
  const auto owner = std::make_shared<FakeOwner>(3);
  int32_t position = 0;
  auto fields = BuildFields(owner, "T", "{ 7  { 1  2 }  9 }", false, position);
  EXPECT_EQ(position, 6);
  EXPECT_EQ(fields->IFields_Length(), 6);
  ASSERT_EQ(fields->IFields_Count(), 3);
  std::vector<std::pair<int32_t, int32_t>> placed;  // (offset, index) of x, s, s.p, s.q, y
  for (const char* path : {"x", "s", "s.p", "s.q", "y"}) {
    const auto field = FieldAt(fields, path);
    ASSERT_NE(field, nullptr) << path;
    placed.emplace_back(field->IField_Offset(), field->IField_Index());
  }
  EXPECT_EQ(placed,
            (std::vector<std::pair<int32_t, int32_t>>{{0, 1}, {0, 2}, {0, 1}, {2, 2}, {4, 3}}));
  EXPECT_EQ(FieldAt(fields, "s")->IField_SNVTType()->ISNVType_Length(), 3);
  // The comment takes no value: y gets the third text.
  EXPECT_EQ(FieldAt(fields, "x")->IField_Value(), "7");
  EXPECT_EQ(FieldAt(fields, "y")->IField_Value(), "9");

  position = 0;
  fields = BuildFields(owner, "abc", "", false, position);
  EXPECT_EQ(position, 5);
  EXPECT_EQ(fields->IFields_Length(), 5);
  EXPECT_EQ(
      std::vector({FieldAt(fields, "a")->IField_Offset(), FieldAt(fields, "b")->IField_Offset(),
                   FieldAt(fields, "c")->IField_Offset()}),
      std::vector({0, 2, 3}));
}

TEST(CFieldsTest, ItemFindsTheKeyBeforeThePosition) {
  test::ScopedCatalogue catalogue(kCatalogue);
  const auto fields = BuildFields(std::make_shared<FakeOwner>(3), "named", "5 6");
  auto name_of = [&](const std::string& index) {
    const auto field = fields->IFields_Item(index);
    return field ? field->IField_Name() : "<none>";
  };
  EXPECT_EQ(name_of("2"), "2");
  EXPECT_EQ(name_of("1"), "2");
  EXPECT_EQ(name_of("X"), "x");
  EXPECT_EQ(name_of(" 2"), "x");  // no such key: its leading number is a position
  for (const char* missing : {"9", "0", "-1", "abc", ""}) EXPECT_EQ(name_of(missing), "<none>");
  // The structure text looks fields up by the text of their position, so "2" is met twice.
  EXPECT_EQ(codec::StructureText(*fields, [](const IField& f) { return f.IField_Value(); }),
            "{ 5  5 }");
}

TEST(CFieldsTest, BuildErrorsReachTheCaller) {
  test::ScopedCatalogue catalogue(kCatalogue);
  const auto owner = std::make_shared<FakeOwner>(3);
  EXPECT_EQ(ErrorNumberOf([&] { BuildFields(owner, "abc", "{ 1  2 }"); }), 9);
  // The fields before the failing one stay built.
  auto fields = std::make_shared<CFields>();
  fields->SetParent(owner);
  int32_t position = 0;
  EXPECT_EQ(ErrorNumberOf([&] { fields->BuildFromType(position, "abc", 3, "1 2", false); }), 9);
  ASSERT_EQ(fields->IFields_Count(), 2);
  EXPECT_EQ(fields->IFields_Item("b")->IField_Value(), "2");
  fields = std::make_shared<CFields>();
  fields->SetParent(owner);
  EXPECT_EQ(ErrorNumberOf([&] { fields->BuildFromType(position, "dup", 3, "", false); }), 457);
  EXPECT_EQ(fields->IFields_Count(), 1);
  test::ScopedComponent no_utility("Moraface.Utility", nullptr);
  EXPECT_EQ(ErrorNumberOf([&] { BuildFields(owner, "abc", "1 2 3"); }), 429);
}

TEST(CFieldsTest, ValueTextsAndTypeDefaults) {
  test::ScopedCatalogue catalogue(Bundled(), true);
  const auto owner = std::make_shared<FakeOwner>(3);
  auto values = [](const std::shared_ptr<CFields>& fields) {
    return fields->IFields_Item("value")->IField_Value() + "|" +
           fields->IFields_Item("state")->IField_Value();
  };
  EXPECT_EQ(values(BuildFields(owner, "switch")), "0|TOGGLE_OFF");
  EXPECT_EQ(values(BuildFields(owner, "switch", "12 TOGGLE_ON")), "12|TOGGLE_ON");

  auto fields = BuildFields(owner, "switch", "{ 100  TOGGLE_ON }");
  EXPECT_EQ(values(fields), "100|TOGGLE_ON");
  EXPECT_EQ(fields->RawText(), "C801");  // 100 % in half percent steps, state 1
  // lev_cont has no invalid value ("" gives 0); an enumeration's is 255.
  EXPECT_EQ(fields->InvalidRawText(), "00FF");

  fields = BuildFields(owner, "temp_setpt", "20 21 22 23 24 25");
  EXPECT_EQ(fields->RawText(), "07D00834089808FC096009C4");
  EXPECT_EQ(fields->InvalidRawText(), "7FFF7FFF7FFF7FFF7FFF7FFF");  // 327.67 °C each

  // Defaults all through: FAN_AUTO, OC_OCCUPIED, 20 °C, switch 0 / TOGGLE_OFF, 6 x 20 °C.
  fields = BuildFields(owner, "40003");
  EXPECT_EQ(fields->RawText(), "000007D00000" + std::string("07D007D007D007D007D007D0"));
  EXPECT_EQ(FieldAt(fields, "room")->RawText(), fields->RawText().substr(2));
}

TEST(CFieldsTest, MissingDefaultsAreReplacedAndReported) {
  test::ScopedCatalogue catalogue(
      test::BundledCatalogueWith("<SNVT_labelled><NAME>labelled</NAME><TYPE>Struct</TYPE>"
                                 "<Fields><label>str_asc</label></Fields></SNVT_labelled>"));
  const std::string tail = ": Default value not defined into the XML file of the profile; ";
  using Box = test::MessageBoxRecorder::Box;
  {
    test::MessageBoxRecorder boxes;
    const auto fields = BuildFields(std::make_shared<FakeOwner>(3, "nciRoom"), "40003", "", true);
    EXPECT_EQ(boxes.boxes,
              (std::vector<Box>{{"nciRoom.room.fan.value" + tail + "0 assumed.", 16, "Warning"},
                                {"nciRoom.room.fan.state" + tail + "0 assumed.", 16, "Warning"}}));
    EXPECT_EQ(FieldAt(fields, "room.fan.value")->IField_DispDefault(), "0 %");
    EXPECT_EQ(FieldAt(fields, "room.fan.state")->IField_DispDefault(), "TOGGLE_OFF");
    EXPECT_EQ(FieldAt(fields, "room.space_temp")->IField_DispDefault(), "20 °C");
  }
  {
    test::MessageBoxRecorder boxes;
    const auto fields =
        BuildFields(std::make_shared<FakeOwner>(3, "nciText"), "labelled", "", true);
    EXPECT_EQ(boxes.boxes,
              (std::vector<Box>{{"nciText.label" + tail + "none assumed.", 16, "Warning"}}));
    EXPECT_EQ(FieldAt(fields, "label")->IField_DispDefault(), "none");
  }
  {
    test::MessageBoxRecorder boxes;
    const auto fields = BuildFields(std::make_shared<FakeOwner>(3, "nciRoom"), "40003");
    EXPECT_TRUE(boxes.boxes.empty());
    EXPECT_EQ(FieldAt(fields, "room.fan.state")->IField_DispDefault(), "TOGGLE_OFF");
  }
  {
    test::MessageBoxRecorder boxes;
    const auto nv = std::make_shared<FakeOwner>(2, "nvoRoom");
    auto fields = BuildFields(nv, "40003", "", true);
    EXPECT_TRUE(boxes.boxes.empty());
    EXPECT_EQ(FieldAt(fields, "room.fan.state")->IField_DispDefault(), "");
    EXPECT_EQ(FieldAt(fields, "room.fan.value")->IField_DispDefault(), " %");
    nv->field_defaults = true;
    fields = BuildFields(nv, "40003", "", true);
    ASSERT_EQ(boxes.boxes.size(), 2u);
    EXPECT_EQ(std::get<0>(boxes.boxes[1]), "nvoRoom.room.fan.state" + tail + "0 assumed.");
    EXPECT_EQ(FieldAt(fields, "room.fan.state")->IField_DispDefault(), "TOGGLE_OFF");
  }
}

TEST(CFieldsTest, KeysFollowTheOwnerChain) {
  test::ScopedCatalogue catalogue(Bundled(), true);
  const auto owner = std::make_shared<FakeOwner>(3);
  const auto fields = BuildFields(owner, "40003");
  const auto value = FieldAt(fields, "room.fan.value");
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->IField_GlobalKey(), "G\\Owner\\room\\fan\\value");
  EXPECT_EQ(value->IField_ExtendedKey(), value->IField_GlobalKey());
  EXPECT_EQ(value->ISubItemConnable_GlobalKey(), value->IField_GlobalKey());
  EXPECT_EQ(value->IDisplayItem_Key(), "Owner.room.fan.value");
  EXPECT_EQ(FieldAt(fields, "room")->IDisplayItem_Key(), "Owner.room");

  fields->SetParentKeys("New");
  fields->SetGlobalKeys("K");
  EXPECT_EQ(value->IDisplayItem_Key(), "New.room.fan.value");
  EXPECT_EQ(FieldAt(fields, "fan_mode")->IDisplayItem_Key(), "New.fan_mode");
  EXPECT_EQ(value->IField_GlobalKey(), "K\\room\\fan\\value");
}

TEST(CFieldsTest, SelfContainingStructureStopsAfter32Levels) {
  test::ScopedCatalogue catalogue(kCatalogue);
  const auto owner = std::make_shared<FakeOwner>(3);
  EXPECT_EQ(ErrorNumberOf([&] { BuildFields(owner, "loop"); }), 0);
  const auto fields = BuildFields(owner, "loop", "{ 3  {} }");
  std::shared_ptr<IField> self = fields->IFields_Item("self"), deepest;
  int levels = 0;
  while (self) {
    deepest = self;
    ASSERT_NE(self->IField_Fields(), nullptr);
    if (self->IField_Fields()->IFields_Count() == 0) break;
    EXPECT_EQ(self->IField_Fields()->IFields_Item("a")->IField_Value(), "3");
    self = self->IField_Fields()->IFields_Item("self");
    ++levels;
  }
  EXPECT_EQ(levels, 32);
  // The deepest one is still a structure field, with an empty collection.
  ASSERT_NE(deepest, nullptr);
  EXPECT_EQ(deepest->IField_Fields()->IFields_Count(), 0);
  EXPECT_EQ(deepest->IField_Value(), "{}");
}

}  // namespace
}  // namespace kolvane
