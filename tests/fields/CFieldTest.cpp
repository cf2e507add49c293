#include "fields/CField.h"

#include "dialogs/frmCPModif1.h"
#include "dialogs/frmCPModif2.h"
#include "dialogs/frmCPModif3.h"
#include "dialogs/frmCPModif4.h"
#include "dialogs/frmCPModif5.h"
#include "fields/CFields.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

using test::FakeOwner;

constexpr char kExtraTypes[] = R"(
  <SNVT_mix><NAME>mix</NAME><TYPE>Struct</TYPE><Fields><temp>temp_p</temp>
    <mode>switch_state</mode><text>str_asc</text><bits>state</bits><pair>pair</pair>
    <odd>odd</odd><hollow>hollow</hollow><ratio>temp_f</ratio></Fields></SNVT_mix>
  <SNVT_pair><NAME>pair</NAME><TYPE>Struct</TYPE>
    <Fields><a>temp_p</a><b>lev_percent</b></Fields></SNVT_pair>
  <SNVT_odd><NAME>odd</NAME><TYPE>Strange</TYPE></SNVT_odd>
  <SNVT_hollow><NAME>hollow</NAME><TYPE>Struct</TYPE><Fields/></SNVT_hollow>
)";

// The fields of "mix" for a configuration property, defaults all through.
class CFieldTest : public ::testing::Test {
 protected:
  std::shared_ptr<CField> Field(const std::string& path) const {
    auto field = test::FieldAt(fields, path);
    EXPECT_NE(field, nullptr) << path;
    return field;
  }

  test::MessageBoxRecorder boxes;  // takes the report of the unknown kind
  test::ScopedDecimalSeparator point{"."};
  test::ScopedCatalogue catalogue{test::BundledCatalogueWith(kExtraTypes)};
  std::shared_ptr<FakeOwner> owner = std::make_shared<FakeOwner>(3);
  std::shared_ptr<CFields> fields = test::BuildFields(owner, "mix");
};

TEST_F(CFieldTest, ValueTextsByKind) {
  const auto temp = Field("temp");
  temp->IField_Value("21,5");
  EXPECT_EQ(temp->IField_Value(), "21.5");
  EXPECT_EQ(temp->IField_DispValue(), "21.5 °C");
  EXPECT_EQ(temp->IField_DispDefault(), "20 °C");
  EXPECT_EQ(temp->IField_DefaultValue(), "20");
  EXPECT_EQ(temp->IField_DispMin() + "|" + temp->IField_DispMax(), "-273.17 °C|327.66 °C");

  const auto mode = Field("mode");
  mode->IField_Value(" TOGGLE_ON ");
  EXPECT_EQ(mode->IField_Value(), " TOGGLE_ON ");
  EXPECT_EQ(mode->IField_DispValue(), " TOGGLE_ON ");
  EXPECT_EQ(mode->IField_DispDefault(), "TOGGLE_OFF");
  EXPECT_EQ(mode->IField_DispMin() + "|" + mode->IField_DispMax(), "|");

  const auto text = Field("text"), bits = Field("bits");
  text->IField_Value("  a.b  ");
  bits->IField_Value(" 5 ");
  EXPECT_EQ(
      text->IField_Value() + "|" + text->IField_DispValue() + "|" + text->IField_DispDefault(),
      "a.b|a.b|none");
  EXPECT_EQ(bits->IField_Value() + "|" + bits->IField_DispDefault() + "|" + bits->IField_DispMin() +
                "|" + bits->IField_DispMax(),
            "5|0|0|65535");

  const auto pair = Field("pair");
  Field("pair.a")->IField_Value("12");
  Field("pair.b")->IField_Value("7");
  EXPECT_EQ(pair->IField_Value(), "{ 12  7 }");
  EXPECT_EQ(pair->IField_DispValue(), "{ 12 °C  7 % }");
  EXPECT_EQ(pair->IField_DispDefault(), "{ 20 °C  0 % }");

  const auto hollow = Field("hollow");
  EXPECT_EQ(hollow->IField_Fields()->IFields_Count(), 0);
  EXPECT_EQ(hollow->IField_Value() + hollow->IField_DispValue() + hollow->IField_DispDefault(),
            "{}{}{}");

  test::ScopedDecimalSeparator comma(",");
  EXPECT_EQ(temp->IField_Value(), "21,5");
  EXPECT_EQ(temp->IField_DispValue(), "21,5 °C");
  EXPECT_EQ(temp->IField_DispMin(), "-273,17 °C");
  EXPECT_EQ(text->IField_Value(), "a.b");  // only numbers are localised
  EXPECT_EQ(pair->IField_Value(), "{ 12  7 }");
}

template <class Dialog>
bool EditsWith(const std::shared_ptr<CField>& field) {
  return std::dynamic_pointer_cast<Dialog>(field->EditDialog()) != nullptr;
}

TEST_F(CFieldTest, EachFieldKeepsTheDialogOfItsKind) {
  EXPECT_TRUE(EditsWith<frmCPModif1>(Field("temp")));
  EXPECT_TRUE(EditsWith<frmCPModif1>(Field("ratio")));
  EXPECT_TRUE(EditsWith<frmCPModif2>(Field("text")));
  EXPECT_TRUE(EditsWith<frmCPModif3>(Field("mode")));
  EXPECT_TRUE(EditsWith<frmCPModif4>(Field("pair")));
  EXPECT_TRUE(EditsWith<frmCPModif4>(Field("hollow")));
  EXPECT_TRUE(EditsWith<frmCPModif5>(Field("bits")));
  EXPECT_EQ(Field("odd")->EditDialog(), nullptr);
  EXPECT_NE(Field("temp")->EditDialog(), Field("pair.a")->EditDialog());
}

TEST_F(CFieldTest, LoadTakesTheLastMatchAndSaveWritesValueAndLimits) {
  pugi::xml_document in;
  ASSERT_TRUE(in.load_string(R"(<CP>
    <temp><Value>1</Value></temp>
    <Temp><Value>99</Value></Temp>
    <temp><value>2</value><!-- c --><VALUE>3,5</VALUE></temp>
    <text><Value> x,y </Value></text>
    <pair><a><Value>4</Value></a><b><Value>8</Value></b></pair>
    <pair><a><Value>5</Value></a></pair>
    <mode/>
  </CP>)",
                             pugi::parse_default | pugi::parse_comments));
  fields->LoadValuesFromXml(in.child("CP"));
  EXPECT_EQ(Field("temp")->IField_Value(), "3.5");
  EXPECT_EQ(Field("pair")->IField_Value(), "{ 5  0 }");
  EXPECT_EQ(Field("mode")->IField_Value(), "TOGGLE_OFF");
  EXPECT_EQ(Field("bits")->IField_Value(), "0");

  auto out = std::make_shared<pugi::xml_document>();
  pugi::xml_node values = out->append_child("Values");
  for (const char* path : {"temp", "text", "mode", "pair", "pair"}) {
    Field(path)->SaveValueToXml(*out, values);
  }
  const std::string a = "<a><Value>5</Value><Min>-273.17</Min><Max>327.66</Max></a>";
  const std::string b = "<b><Value>0</Value><Min>-163.84</Min><Max>163.83</Max></b>";
  EXPECT_EQ(test::XmlText(values),
            "<Values><temp><Value>3.5</Value><Min>-273.17</Min><Max>327.66</Max></temp>"
            "<text><Value> x,y </Value></text><mode><Value>TOGGLE_OFF</Value></mode>"
            "<pair>" +
                a + b + a + b + "</pair></Values>");

  pugi::xml_node exported = out->append_child("Export");
  for (const char* path : {"temp", "pair", "pair"}) Field(path)->ExportToXml(*out, exported);
  const std::string pair =
      "<pair><a><Default>5</Default><Min>-273.17</Min><Max>327.66</Max></a>"
      "<b><Default>0</Default><Min>-163.84</Min><Max>163.83</Max></b></pair>";
  EXPECT_EQ(test::XmlText(exported),
            "<Export><temp><Default>3.5</Default><Min>-273.17</Min><Max>327.66</Max></temp>" +
                pair + pair + "</Export>");

  test::ScopedDecimalSeparator comma(",");
  fields->LoadValuesFromXml(in.child("CP"));
  EXPECT_EQ(Field("temp")->IField_Value(), "3,5");
}

TEST_F(CFieldTest, ConnectionCountAndInertMembers) {
  const auto temp = Field("temp"), pair = Field("pair");
  temp->ISubItemConnable_IsConnected(false);  // count -1
  EXPECT_TRUE(temp->IField_IsConnected());
  temp->ISubItemConnable_IsConnected(true);  // 0, but a connection was just made
  EXPECT_TRUE(temp->IField_IsConnected());
  temp->ISubItemConnable_IsConnected(true);
  temp->ISubItemConnable_IsConnected(false);  // 0
  EXPECT_FALSE(temp->IField_IsConnected());
  pair->ISubItemConnable_IsConnected(true);
  pair->ISubItemConnable_IsConnected(true);
  pair->ISubItemConnable_IsConnected(false);
  EXPECT_TRUE(pair->IField_IsConnected());
  pair->ISubItemConnable_IsConnected(false);
  EXPECT_FALSE(pair->IField_IsConnected());
  EXPECT_FALSE(pair->IDisplayItem_IsConnected());
  EXPECT_FALSE(temp->ISubItemConnable_IsSNVTCompatible("temp_p"));

  temp->IField_Value("22.5");
  for (const auto& field : {temp, pair}) {
    const std::string before =
        field->IField_Value() + "|" + field->IField_GlobalKey() + "|" + field->IDisplayItem_Key();
    field->IField_Load();
    field->IField_Save();
    field->IField_Import();
    field->IField_Export();
    field->IField_SetValue();
    EXPECT_EQ(
        field->IField_Value() + "|" + field->IField_GlobalKey() + "|" + field->IDisplayItem_Key(),
        before);
  }
}

TEST_F(CFieldTest, ItemTypeFollowsTheOwnerAtTheTop) {
  const auto temp = Field("temp"), inner = Field("pair.a");
  EXPECT_EQ(temp->IField_NodeType(), 3);
  EXPECT_EQ(inner->IField_NodeType(), 5);
  EXPECT_EQ(temp->IDisplayItem_ItemType(), 3);
  EXPECT_EQ(inner->IDisplayItem_ItemType(), 3);
  EXPECT_TRUE(inner->IDisplayItem_IsWritable());
  const auto room = test::BuildFields(owner, "40003");
  const auto deep = test::FieldAt(room, "room.fan.value");
  EXPECT_EQ(deep->IDisplayItem_ItemType(), 3);
  EXPECT_TRUE(deep->IDisplayItem_IsWritable());

  const auto nv = std::make_shared<FakeOwner>(2);
  const auto nv_fields = test::BuildFields(nv, "mix");
  const auto nv_temp = test::FieldAt(nv_fields, "temp");
  const auto nv_inner = test::FieldAt(nv_fields, "pair.a");
  EXPECT_EQ(nv_temp->IDisplayItem_ItemType(), 4);
  EXPECT_EQ(nv_inner->IDisplayItem_ItemType(), 4);
  EXPECT_TRUE(nv_inner->IDisplayItem_IsWritable());
  nv->field_defaults = true;
  EXPECT_EQ(nv_temp->IDisplayItem_ItemType(), 5);
  EXPECT_EQ(nv_inner->IDisplayItem_ItemType(), 5);
  EXPECT_FALSE(nv_temp->IDisplayItem_IsWritable());
  EXPECT_FALSE(nv_inner->IDisplayItem_IsWritable());

  EXPECT_FALSE(temp->IDisplayItem_IsDisplayable());
  temp->IField_IsDisplayUsable(true);
  inner->IField_IsDisplayUsable(true);
  EXPECT_TRUE(temp->IDisplayItem_IsDisplayable());
  EXPECT_TRUE(inner->IDisplayItem_IsDisplayable());
  EXPECT_FALSE(Field("pair")->IDisplayItem_IsDisplayable());
  owner->displayable = false;
  EXPECT_FALSE(temp->IDisplayItem_IsDisplayable());
  EXPECT_FALSE(inner->IDisplayItem_IsDisplayable());
}

}  // namespace
}  // namespace kolvane
