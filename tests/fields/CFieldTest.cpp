#include "fields/CField.h"

#include "conversion/ValueCodec.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

constexpr char kExtraTypes[] = R"(
  <SNVT_mix><NAME>mix</NAME><TYPE>Struct</TYPE><Fields><temp>temp_p</temp>
    <mode>switch_state</mode><text>str_asc</text><bits>state</bits><pair>pair</pair>
    <odd>odd</odd><hollow>hollow</hollow><ratio>temp_f</ratio></Fields></SNVT_mix>
  <SNVT_pair><NAME>pair</NAME><TYPE>Struct</TYPE>
    <Fields><a>temp_p</a><b>lev_percent</b></Fields></SNVT_pair>
  <SNVT_odd><NAME>odd</NAME><TYPE>Strange</TYPE></SNVT_odd>
  <SNVT_hollow><NAME>hollow</NAME><TYPE>Struct</TYPE><Fields/></SNVT_hollow>
  <SNVT_labelled><NAME>labelled</NAME><TYPE>Struct</TYPE>
    <Fields><label>str_asc</label></Fields></SNVT_labelled>
  <SNVT_u8><TYPE>UnsignedNumeric</TYPE><DEFAULT>3</DEFAULT><LENGTH>1</LENGTH></SNVT_u8>
  <SNVT_u16><TYPE>UnsignedNumeric</TYPE><DEFAULT>4</DEFAULT><LENGTH>2</LENGTH></SNVT_u16>
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
  <SNVT_twice><NAME>twice</NAME><TYPE>Struct</TYPE>
    <Fields><a>u8</a><left>twice</left><right>twice</right></Fields></SNVT_twice>
  <SNVT_ping><NAME>ping</NAME><TYPE>Struct</TYPE><Fields><p>pong</p><q>pong</q></Fields></SNVT_ping>
  <SNVT_pong><NAME>pong</NAME><TYPE>Struct</TYPE><Fields><p>ping</p><q>ping</q></Fields></SNVT_pong>
)";

// "value|shown value|shown default|shown minimum|shown maximum" of a field.
std::string Texts(const CField& field) {
  return field.IField_Value() + "|" + field.IField_DispValue() + "|" + field.IField_DispDefault() +
         "|" + field.IField_DispMin() + "|" + field.IField_DispMax();
}

// The bundled catalogue plus the types above; the fields of "mix" for a configuration property,
// defaults all through.
class CFieldTest : public CatalogueFixture {
 protected:
  std::shared_ptr<CField> Field(const std::string& path) const {
    return NotNull(FieldAt(fields, path), path);
  }

  // Builds type_name's fields from value for the owner; returns the position after them.
  int32_t Build(CFields& built, const std::string& type_name, const std::string& value) {
    built.SetParent(owner);
    int32_t position = 0;
    built.BuildFromType(position, type_name, 3, value, false);
    return position;
  }

  ScopedCatalogue extra{BundledCatalogueWith(kExtraTypes)};
  std::shared_ptr<FakeOwner> owner = std::make_shared<FakeOwner>(3);
  std::shared_ptr<CFields> fields = BuildFields(owner, "mix");
};

TEST_F(CFieldTest, ValueTextsByKind) {
  Field("temp")->IField_Value("21,5");
  Field("mode")->IField_Value(" TOGGLE_ON ");
  Field("text")->IField_Value("  a.b  ");
  Field("bits")->IField_Value(" 5 ");
  Field("pair.a")->IField_Value("12");
  Field("pair.b")->IField_Value("7");
  // Numbers are read with either separator; an enumeration stays as it is, a text is trimmed.
  const std::pair<const char*, const char*> cases[] = {
      {"temp", "21.5|21.5 °C|20 °C|-273.17 °C|327.66 °C"},
      {"mode", " TOGGLE_ON | TOGGLE_ON |TOGGLE_OFF||"},
      {"text", "a.b|a.b|none||"},
      {"bits", "5|5|0|0|65535"},
      {"pair", "{ 12  7 }|{ 12 °C  7 % }|{ 20 °C  0 % }||"},
      {"hollow", "{}|{}|{}||"}};
  for (const auto& [path, texts] : cases) EXPECT_EQ(Texts(*Field(path)), texts) << path;

  ScopedDecimalSeparator comma(",");  // only numbers are localised
  EXPECT_EQ(Texts(*Field("temp")), "21,5|21,5 °C|20 °C|-273,17 °C|327,66 °C");
  EXPECT_EQ(Field("text")->IField_Value() + "|" + Field("pair")->IField_Value(), "a.b|{ 12  7 }");
}

TEST_F(CFieldTest, EachFieldKeepsTheDialogOfItsKind) {
  // clang-format off
  const std::pair<const char*, const char*> dialogs[] = {
      {"temp", "Numeric Value"}, {"ratio", "Numeric Value"}, {"text", "Text Value"},
      {"mode", "Enumeration Value"}, {"pair", "Structure Value"}, {"hollow", "Structure Value"},
      {"bits", "Bit Field Value"}};
  // clang-format on
  for (const auto& [path, caption] : dialogs) {
    EXPECT_EQ(NotNull(Field(path)->EditDialog(), path)->Caption(), caption);
  }
  EXPECT_EQ(Field("odd")->EditDialog(), nullptr);
  EXPECT_NE(Field("temp")->EditDialog(), Field("pair.a")->EditDialog());
}

TEST_F(CFieldTest, LoadTakesTheLastMatchAndSaveWritesValueAndLimits) {
  const pugi::xml_node in = Element(R"(<CP>
    <temp><Value>1</Value></temp>
    <Temp><Value>99</Value></Temp>
    <temp><value>2</value><!-- c --><VALUE>3,5</VALUE></temp>
    <text><Value> x,y </Value></text>
    <pair><a><Value>4</Value></a><b><Value>8</Value></b></pair>
    <pair><a><Value>5</Value></a></pair>
    <mode/>
    <bits><Value>4</Value><Value/></bits>
  </CP>)");
  fields->LoadValuesFromXml(in);
  EXPECT_EQ(Field("temp")->IField_Value(), "3.5");
  EXPECT_EQ(Field("pair")->IField_Value(), "{ 5  0 }");
  EXPECT_EQ(Field("mode")->IField_Value(), "TOGGLE_OFF");
  // A value element without text leaves the value read before it.
  EXPECT_EQ(Field("bits")->IField_Value(), "4");

  // A structure written twice fills the element it wrote first.
  auto out = std::make_shared<pugi::xml_document>();
  pugi::xml_node values = out->append_child("Values");
  for (const char* path : {"temp", "text", "mode", "pair", "pair"}) {
    Field(path)->SaveValueToXml(*out, values);
  }
  const std::string a = "<a><Value>5</Value><Min>-273.17</Min><Max>327.66</Max></a>";
  const std::string b = "<b><Value>0</Value><Min>-163.84</Min><Max>163.83</Max></b>";
  EXPECT_EQ(XmlText(values),
            "<Values><temp><Value>3.5</Value><Min>-273.17</Min><Max>327.66</Max></temp>"
            "<text><Value> x,y </Value></text><mode><Value>TOGGLE_OFF</Value></mode>"
            "<pair>" +
                a + b + a + b + "</pair></Values>");

  pugi::xml_node exported = out->append_child("Export");
  for (const char* path : {"temp", "pair", "pair"}) Field(path)->ExportToXml(*out, exported);
  const std::string pair =
      "<pair><a><Default>5</Default><Min>-273.17</Min><Max>327.66</Max></a>"
      "<b><Default>0</Default><Min>-163.84</Min><Max>163.83</Max></b></pair>";
  EXPECT_EQ(XmlText(exported),
            "<Export><temp><Default>3.5</Default><Min>-273.17</Min><Max>327.66</Max></temp>" +
                pair + pair + "</Export>");

  ScopedDecimalSeparator comma(",");
  fields->LoadValuesFromXml(in);
  EXPECT_EQ(Field("temp")->IField_Value(), "3,5");
}

TEST_F(CFieldTest, ConnectionCount) {
  const auto temp = Field("temp"), pair = Field("pair");
  temp->ISubItemConnable_IsConnected(false);  // count -1: a disconnect only clears from 1
  EXPECT_TRUE(temp->IField_IsConnected());
  temp->ISubItemConnable_IsConnected(true);  // 0, but a connection was just made
  EXPECT_TRUE(temp->IField_IsConnected());
  temp->ISubItemConnable_IsConnected(true);
  temp->ISubItemConnable_IsConnected(false);  // 0
  EXPECT_FALSE(temp->IField_IsConnected());
  // A structure field counts its own connections but shows none.
  for (const bool connect : {true, true, false}) pair->ISubItemConnable_IsConnected(connect);
  EXPECT_TRUE(pair->IField_IsConnected() && !pair->IDisplayItem_IsConnected());
}

TEST_F(CFieldTest, ItemTypeFollowsTheOwnerAtTheTop) {
  const auto temp = Field("temp"), inner = Field("pair.a");
  EXPECT_EQ(std::pair(temp->IField_NodeType(), inner->IField_NodeType()), std::pair(3, 5));
  const auto room = BuildFields(owner, "40003");
  const auto deep = FieldAt(room, "room.fan.value");
  for (const auto& field : {temp, inner, deep}) {
    EXPECT_EQ(field->IDisplayItem_ItemType(), 3);
    EXPECT_TRUE(field->IDisplayItem_IsWritable());
  }

  // Below a network variable: 4, or 5 (not writable) while it fills in missing defaults.
  const auto nv = std::make_shared<FakeOwner>(2);
  const auto nv_fields = BuildFields(nv, "mix");
  for (const char* path : {"temp", "pair.a"}) {
    const auto field = FieldAt(nv_fields, path);
    nv->field_defaults = false;
    EXPECT_EQ(field->IDisplayItem_ItemType(), 4) << path;
    EXPECT_TRUE(field->IDisplayItem_IsWritable()) << path;
    nv->field_defaults = true;
    EXPECT_EQ(field->IDisplayItem_ItemType(), 5) << path;
    EXPECT_FALSE(field->IDisplayItem_IsWritable()) << path;
  }

  // Listed when the host allows it and the owner is listed; a structure field never.
  EXPECT_FALSE(temp->IDisplayItem_IsDisplayable());
  temp->IField_IsDisplayUsable(true);
  inner->IField_IsDisplayUsable(true);
  EXPECT_TRUE(temp->IDisplayItem_IsDisplayable() && inner->IDisplayItem_IsDisplayable());
  EXPECT_FALSE(Field("pair")->IDisplayItem_IsDisplayable());
  owner->displayable = false;
  EXPECT_FALSE(temp->IDisplayItem_IsDisplayable() || inner->IDisplayItem_IsDisplayable());
}

using CFieldsTest = CFieldTest;

TEST_F(CFieldsTest, NestedStructureStartsWhereItsLevelStarted) {
  auto built = std::make_shared<CFields>();
  EXPECT_EQ(Build(*built, "T", "{ 7  { 1  2 }  9 }"), 6);
  EXPECT_EQ(built->IFields_Length(), 6);
  std::vector<std::pair<int32_t, int32_t>> placed;  // (offset, index) of x, s, s.p, s.q, y
  for (const char* path : {"x", "s", "s.p", "s.q", "y"}) {
    const auto field = NotNull(FieldAt(built, path), path);
    placed.emplace_back(field->IField_Offset(), field->IField_Index());
  }
  EXPECT_EQ(placed,
            (std::vector<std::pair<int32_t, int32_t>>{{0, 1}, {0, 2}, {0, 1}, {2, 2}, {4, 3}}));
  EXPECT_EQ(FieldAt(built, "s")->IField_SNVTType()->ISNVType_Length(), 3);
  // The comment takes no value: y gets the third text.
  EXPECT_EQ(FieldAt(built, "x")->IField_Value() + "|" + FieldAt(built, "y")->IField_Value(), "7|9");

  built = std::make_shared<CFields>();
  EXPECT_EQ(Build(*built, "abc", ""), 5);
  EXPECT_EQ(std::vector({FieldAt(built, "a")->IField_Offset(), FieldAt(built, "b")->IField_Offset(),
                         FieldAt(built, "c")->IField_Offset()}),
            std::vector({0, 2, 3}));
}

// An empty structure field has no first field whose offset it could give: it gives its own
// rather than fail a host that lists offsets (kept deliberately, see docs/design.md).
TEST_F(CFieldsTest, EmptyStructureFieldGivesItsOwnOffset) {
  EXPECT_EQ(Field("hollow")->IField_Fields()->IFields_Count(), 0);
  // The 36 bytes of this level's leaves before it, after the 4 the nested pair moved the start.
  EXPECT_EQ(Field("hollow")->IField_Offset(), 40);
}

TEST_F(CFieldsTest, ItemFindsTheKeyBeforeThePosition) {
  const auto named = BuildFields(owner, "named", "5 6");
  auto name_of = [&](const std::string& index) {
    const auto field = named->IFields_Item(index);
    return field ? field->IField_Name() : "<none>";
  };
  EXPECT_EQ(name_of("2"), "2");
  EXPECT_EQ(name_of("1"), "2");
  EXPECT_EQ(name_of("X"), "x");
  EXPECT_EQ(name_of(" 2"), "x");  // no such key: its leading number is a position
  for (const char* missing : {"9", "0", "-1", "abc", ""}) EXPECT_EQ(name_of(missing), "<none>");
  // The structure text looks fields up by the text of their position, so "2" is met twice.
  EXPECT_EQ(codec::StructureText(*named, [](const IField& f) { return f.IField_Value(); }),
            "{ 5  5 }");
}

TEST_F(CFieldsTest, BuildErrorsReachTheCaller) {
  EXPECT_EQ(ErrorNumberOf([&] { BuildFields(owner, "abc", "{ 1  2 }"); }), 9);
  // The fields before the failing one stay built.
  for (const auto& [type_name, value, error, built] :
       {std::tuple{"abc", "1 2", 9, 2}, std::tuple{"dup", "", 457, 1}}) {
    const auto partial = std::make_shared<CFields>();
    EXPECT_EQ(ErrorNumberOf([&] { Build(*partial, type_name, value); }), error);
    EXPECT_EQ(partial->IFields_Count(), built) << type_name;
    if (built == 2) {
      EXPECT_EQ(partial->IFields_Item("b")->IField_Value(), "2");
    }
  }
  ScopedComponent no_utility("Moraface.Utility", nullptr);
  EXPECT_EQ(ErrorNumberOf([&] { BuildFields(owner, "abc", "1 2 3"); }), 429);
}

TEST_F(CFieldsTest, RawTextsAndTypeDefaults) {
  auto lamp = BuildFields(owner, "switch");
  EXPECT_EQ(lamp->IFields_Item("value")->IField_Value() + "|" +
                lamp->IFields_Item("state")->IField_Value(),
            "0|TOGGLE_OFF");
  lamp = BuildFields(owner, "switch", "{ 100  TOGGLE_ON }");
  EXPECT_EQ(lamp->IFields_Item("state")->IField_Value(), "TOGGLE_ON");
  EXPECT_EQ(lamp->RawText(), "C801");  // 100 % in half percent steps, state 1
  // lev_cont has no invalid value ("" gives 0); an enumeration's is 255.
  EXPECT_EQ(lamp->InvalidRawText(), "00FF");

  const auto setpoints = BuildFields(owner, "temp_setpt", "20 21 22 23 24 25");
  EXPECT_EQ(setpoints->RawText(), "07D00834089808FC096009C4");
  EXPECT_EQ(setpoints->InvalidRawText(), "7FFF7FFF7FFF7FFF7FFF7FFF");  // 327.67 °C each

  // Defaults all through: FAN_AUTO, OC_OCCUPIED, 20 °C, switch 0 / TOGGLE_OFF, 6 x 20 °C.
  const auto room = BuildFields(owner, "40003");
  EXPECT_EQ(room->RawText(), "000007D00000" + std::string("07D007D007D007D007D007D0"));
  EXPECT_EQ(FieldAt(room, "room")->RawText(), room->RawText().substr(2));
}

TEST_F(CFieldsTest, MissingDefaultsAreReplacedAndReported) {
  boxes.boxes.clear();  // the report of the unknown kind of "odd"
  // A configuration property's fields warn when asked to.
  const auto room = BuildFields(std::make_shared<FakeOwner>(3, "nciRoom"), "40003", "", true);
  BuildFields(std::make_shared<FakeOwner>(3, "nciText"), "labelled", "", true);
  EXPECT_EQ(boxes.boxes, (Boxes{DefaultBox("nciRoom.room.fan.value", "0"),
                                DefaultBox("nciRoom.room.fan.state", "0"),
                                DefaultBox("nciText.label", "none")}));
  EXPECT_EQ(FieldAt(room, "room.fan.value")->IField_DispDefault(), "0 %");
  EXPECT_EQ(FieldAt(room, "room.fan.state")->IField_DispDefault(), "TOGGLE_OFF");
}

TEST_F(CFieldsTest, KeysFollowTheOwnerChain) {
  const auto room = BuildFields(owner, "40003");
  const auto value = NotNull(FieldAt(room, "room.fan.value"));
  EXPECT_EQ(value->IField_GlobalKey(), "G\\Owner\\room\\fan\\value");
  EXPECT_EQ(value->IDisplayItem_Key(), "Owner.room.fan.value");
  EXPECT_EQ(FieldAt(room, "room")->IDisplayItem_Key(), "Owner.room");

  room->SetParentKeys("New");
  room->SetGlobalKeys("K");
  EXPECT_EQ(value->IDisplayItem_Key(), "New.room.fan.value");
  EXPECT_EQ(FieldAt(room, "fan_mode")->IDisplayItem_Key(), "New.fan_mode");
  EXPECT_EQ(value->IField_GlobalKey(), "K\\room\\fan\\value");
}

// A type met again on its own nesting path is not expanded again: with two self-typed fields
// (or two types that contain each other twice) expansion used to double at every level.
TEST_F(CFieldsTest, SelfContainingStructuresStopWhereTheTypeRecurs) {
  const auto loop = BuildFields(owner, "loop", "{ 3  {} }");
  const auto self = loop->IFields_Item("self");
  EXPECT_EQ(self->IField_Fields()->IFields_Count(), 2);
  EXPECT_EQ(self->IField_Fields()->IFields_Item("a")->IField_Value(), "3");
  // The next "self" is a structure field with no fields of its own.
  const auto deepest = self->IField_Fields()->IFields_Item("self");
  EXPECT_EQ(deepest->IField_Fields()->IFields_Count(), 0);
  EXPECT_EQ(deepest->IField_Value(), "{}");

  const auto twice = BuildFields(owner, "twice");
  for (const char* side : {"left", "right"}) {
    const auto sub = twice->IFields_Item(side)->IField_Fields();
    EXPECT_EQ(sub->IFields_Count(), 3) << side;
    EXPECT_EQ(sub->IFields_Item("left")->IField_Fields()->IFields_Count(), 0) << side;
  }
  // The owner here has no type, so the path starts at the first field: ping.q is a pong, its p a
  // ping, whose pongs are met again and stay empty.
  const auto ping = BuildFields(owner, "ping");
  const auto inner_ping = ping->IFields_Item("q")->IField_Fields()->IFields_Item("p")->IField_Fields();
  EXPECT_EQ(inner_ping->IFields_Count(), 2);
  EXPECT_EQ(inner_ping->IFields_Item("q")->IField_Fields()->IFields_Count(), 0);
}

// Distinct types nested past 32 levels stop there, with a message once per build.
TEST_F(CFieldsTest, NestingIsBoundedWithAMessage) {
  std::string types;
  for (int level = 0; level < 40; ++level) {
    const std::string me = "d" + std::to_string(level);
    types += "<SNVT_" + me + "><NAME>" + me + "</NAME><TYPE>Struct</TYPE><Fields><a>u8</a><next>d" +
             std::to_string(level + 1) + "</next></Fields></SNVT_" + me + ">";
  }
  ScopedCatalogue deep(BundledCatalogueWith(types));
  MessageBoxRecorder boxes;
  const auto built = BuildFields(owner, "d0");
  EXPECT_EQ(boxes.boxes, (Boxes{{"Error: SNVT_d0 nests deeper than 32 levels", vbOKOnly, ""}}));
  int levels = 0;
  for (auto fields = std::static_pointer_cast<IFields>(built);
       fields && fields->IFields_Count() > 0;
       fields = fields->IFields_Item("next")->IField_Fields()) {
    ++levels;
  }
  EXPECT_EQ(levels, 33);
}

// A catalogue whose types multiply without repeating is cut at a bound, with a message, instead of
// holding up the load: 30 levels of two fields each would be about two thousand million fields.
TEST_F(CFieldsTest, ExpansionOfOneStructureIsBounded) {
  std::string types;
  for (int level = 0; level < 30; ++level) {
    const std::string below = level == 29 ? "u8" : "w" + std::to_string(level + 1);
    types += "<SNVT_w" + std::to_string(level) + "><NAME>w" + std::to_string(level) +
             "</NAME><TYPE>Struct</TYPE><Fields><a>" + below + "</a><b>" + below +
             "</b></Fields></SNVT_w" + std::to_string(level) + ">";
  }
  ScopedCatalogue wide(BundledCatalogueWith(types));
  MessageBoxRecorder boxes;
  std::shared_ptr<CFields> built;
  EXPECT_EQ(ErrorNumberOf([&] { built = BuildFields(owner, "w0"); }), ErrorNumber::kOutOfStackSpace);
  EXPECT_EQ(boxes.boxes, (Boxes{{"Error: SNVT_w0 has more than 1000 fields", vbOKOnly, ""}}));
  // A new build counts afresh.
  boxes.boxes.clear();
  EXPECT_EQ(BuildFields(owner, "w25")->IFields_Count(), 2);
  EXPECT_TRUE(boxes.boxes.empty());
}

}  // namespace
}  // namespace kolvane::test
