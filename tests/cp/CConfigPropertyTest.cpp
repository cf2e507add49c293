#include "cp/CConfigProperty.h"

#include "cp/CConfigProperties.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

// Schedule types the bundled catalogue lacks.
constexpr char kScheduleTypes[] = R"(
  <SNVT_40050><NAME>40050</NAME><TYPE>UnsignedNumeric</TYPE><LENGTH>1</LENGTH></SNVT_40050>
  <SNVT_40051><TYPE>UnsignedNumeric</TYPE></SNVT_40051>
  <SNVT_40060><TYPE>UnsignedNumeric</TYPE></SNVT_40060>
  <SNVT_40061><TYPE>UnsignedNumeric</TYPE></SNVT_40061>
  <SNVT_40070><NAME>40070</NAME><TYPE>Struct</TYPE>
    <Fields><start>count</start><mode>occupancy</mode></Fields></SNVT_40070>
  <SNVT_40071><NAME>40071</NAME><TYPE>Struct</TYPE>
    <Fields><start>count</start><mode>occupancy</mode></Fields></SNVT_40071>
)";
constexpr char kSetpoint[] =
    "<nciSetpoint><SNVTType>temp_p</SNVTType><Default>21.5</Default><Min>10</Min><Max>30</Max>"
    "</nciSetpoint>";
constexpr char kLamp[] =
    "<nciLamp><SNVTType>switch</SNVTType><value><Value>100</Value></value>"
    "<state><Value>TOGGLE_ON</Value></state></nciLamp>";

// "type min..max default/value" of a property.
std::string Summary(const IConfigProperty& property) {
  const auto type = property.IConfigProperty_SNVTType();
  return type->ISNVType_ID() + " " + type->ISNVType_Min() + ".." + type->ISNVType_Max() + " " +
         property.IConfigProperty_DefaultValue() + "/" + property.IConfigProperty_Value();
}

// "global key index export-number" of a property.
std::string Place(const IConfigProperty& property) {
  return property.IConfigProperty_GlobalKey() + " " +
         std::to_string(property.IConfigProperty_Index()) + " " +
         std::to_string(property.IConfigProperty_ConnectionIndex());
}

// The bundled catalogue plus the schedule types, a collection owned by a fake profile.
class CConfigPropertyTest : public CatalogueFixture {
 protected:
  CConfigPropertyTest() { properties.SetProfile(profile); }

  // Adds the property written as one element (named after the property) to the collection.
  std::shared_ptr<CConfigProperty> Add(const std::string& xml) {
    const pugi::xml_node root = Element(xml);
    return NotNull(std::dynamic_pointer_cast<CConfigProperty>(
                       properties.IConfigProperties_AddCP(root.name(), nullptr, root)),
                   xml);
  }

  ScopedCatalogue schedules{BundledCatalogueWith(kScheduleTypes)};
  std::shared_ptr<FakeProfile> profile = std::make_shared<FakeProfile>();
  CConfigProperties properties;
};

TEST_F(CConfigPropertyTest, LoadsBoundsAndDefaultsAndAssumesMissingDefaults) {
  const auto setpoint = Add(kSetpoint);
  // Names matched in any case, comments skipped, the later of Default/Value wins.
  const auto limit =
      Add("<nciLimit><!-- <SNVTType>temp_p</SNVTType> --><snvttype>count</snvttype><min>5</min>"
          "<MAX>900</MAX><Default>7</Default><!-- note --><value>3</value></nciLimit>");
  const auto flt = Add("<nciFloat><SNVTType>temp_f</SNVTType></nciFloat>");
  const auto text = Add("<nciText><SNVTType>str_asc</SNVTType></nciText>");
  const auto mode = Add("<nciMode><SNVTType>occupancy</SNVTType></nciMode>");
  const auto bits = Add("<nciBits><SNVTType>state</SNVTType></nciBits>");
  EXPECT_EQ(boxes.boxes, (Boxes{DefaultBox("nciFloat", "0"), DefaultBox("nciText", "none"),
                                DefaultBox("nciMode", "0"), DefaultBox("nciBits", "0")}));
  EXPECT_EQ(Summary(*setpoint), "temp_p 10..30 21.5/21.5");
  EXPECT_EQ(Summary(*limit), "count 5..900 3/3");
  EXPECT_EQ(Summary(*flt), "temp_f -273.17..3.40282E+38 0/0");  // the type's own bounds
  EXPECT_EQ(text->IConfigProperty_DefaultValue() + "/" + text->IConfigProperty_Value(),
            "none/none");
  EXPECT_EQ(mode->IConfigProperty_Value() + "/" + bits->IConfigProperty_Value(), "0/0");
  for (const auto& assumed : {flt, text, mode, bits}) EXPECT_TRUE(assumed->DefaultWarning());
  EXPECT_FALSE(setpoint->DefaultWarning() || limit->DefaultWarning());

  // An enumeration keeps the bounds of its element.
  boxes.boxes.clear();
  const auto bypass =
      Add("<nciBypass><SNVTType>occupancy</SNVTType><Default>OC_BYPASS</Default><Min>1.5</Min>"
          "<Max>3</Max></nciBypass>");
  EXPECT_TRUE(boxes.boxes.empty() && !bypass->DefaultWarning());
  EXPECT_EQ(bypass->IConfigProperty_RawValue(), "02");
  ScopedDecimalSeparator comma{","};
  EXPECT_EQ(bypass->IConfigProperty_DispValue() + "|" + bypass->IConfigProperty_DispMin() + "|" +
                bypass->IConfigProperty_DispMax(),
            "OC_BYPASS|1,5|3");
}

TEST_F(CConfigPropertyTest, MissingTypeWarnsOnceAndStillLoads) {
  for (const char* xml :
       {"<nciNone><Min>1</Min></nciNone>", "<nciEmpty><SNVTType></SNVTType></nciEmpty>",
        "<nciX><SNVTType>xtemp_p</SNVTType></nciX>"}) {
    boxes.boxes.clear();
    const auto property = Add(xml);
    const std::string name = property->IConfigProperty_Name();
    EXPECT_EQ(boxes.boxes,
              (Boxes{{name + ": SNVT Type not defined into the XML file of the profile", vbCritical,
                      "Warning"}}));
    EXPECT_EQ(property->Editor(), nullptr) << name;
    EXPECT_EQ(property->IConfigProperty_DefaultValue() + property->IConfigProperty_Value(), "");
  }

  // A type name starting with "X" gives way to the fallback.
  boxes.boxes.clear();
  const auto fallback = std::make_shared<CConfigProperty>();
  fallback->LoadFromXml(
      nullptr, Element("<nciFallback><SNVTType>X12</SNVTType><Default>5</Default></nciFallback>"),
      "count");
  EXPECT_EQ(Summary(*fallback), "count 0..65535 5/5");
  EXPECT_TRUE(boxes.boxes.empty());
}

TEST_F(CConfigPropertyTest, StructureTakesFieldValuesFromItsElement) {
  const auto lamp = Add(kLamp);
  // The fields take the property's warning flag, cleared by the load: they assume "0" quietly.
  EXPECT_TRUE(boxes.boxes.empty());
  EXPECT_EQ(lamp->IConfigProperty_DefaultValue() + "/" + lamp->IConfigProperty_Value(),
            "{ 100  TOGGLE_ON }/{ 100  TOGGLE_ON }");
  EXPECT_EQ(lamp->IConfigProperty_RawValue(), "C801");
  lamp->IConfigProperty_PointKey("P9");
  EXPECT_EQ(FieldAt(lamp->IConfigProperty_Fields(), "state")->IDisplayItem_Key(), "P9.state");
}

TEST_F(CConfigPropertyTest, ValueTextsAndWhatMarksTheProfileForSaving) {
  const auto setpoint = Add(kSetpoint);
  ScopedDecimalSeparator comma{","};
  // The limits shown are the type's, in display units, not the property's own.
  EXPECT_EQ(DisplayTexts(*setpoint), "21,5 °C | 21,5 °C | -273,17 °C | 327,66 °C");
  for (const auto& change :
       std::vector<std::function<void()>>{[&] { setpoint->IConfigProperty_Value("22.5"); },
                                          [&] { setpoint->IConfigProperty_XPosition(12.5); },
                                          [&] { setpoint->IConfigProperty_YPosition(7); }}) {
    ClearFlags();
    change();
    EXPECT_TRUE(Globals::NeedSaveFlag);
  }
  EXPECT_EQ(setpoint->IConfigProperty_Value(), "22,5");
  EXPECT_EQ(setpoint->IConfigProperty_RawValue(), "08CA");
  EXPECT_EQ(setpoint->IConfigProperty_DefaultValue(), "21.5");
}

TEST_F(CConfigPropertyTest, WritesItsElementAndReadsItBack) {
  const auto setpoint = Add(kSetpoint);
  const auto flt = Add("<nciFloat><SNVTType>temp_f</SNVTType></nciFloat>");
  setpoint->IConfigProperty_IndexInFile("3");
  setpoint->Sisd("1.2");

  pugi::xml_document document;
  const pugi::xml_node parent = document.append_child("CPS");
  EXPECT_EQ(XmlText(setpoint->WriteXml(document, parent)),
            "<nciSetpoint Index=\"3\"><Visible>1</Visible><SNVTType>temp_p</SNVTType>"
            "<SISD>1.2</SISD><Default>21.5</Default><Min>10</Min><Max>30</Max></nciSetpoint>");
  EXPECT_EQ(XmlText(flt->WriteXml(document, parent)),
            "<nciFloat DefaultWarning=\"1\"><Visible>1</Visible><SNVTType>temp_f</SNVTType>"
            "<Default>0</Default><Min>-273.17</Min><Max>3.40282E+38</Max></nciFloat>");

  boxes.boxes.clear();
  const auto copy = properties.IConfigProperties_AddCP("copy", nullptr, parent.first_child());
  EXPECT_TRUE(boxes.boxes.empty());
  EXPECT_EQ(Summary(*NotNull(copy)), "temp_p 10..30 21.5/21.5");
}

TEST_F(CConfigPropertyTest, DisplayItemAndConnections) {
  const auto setpoint = Add(kSetpoint);
  setpoint->IConfigProperty_PointKey("P7");
  EXPECT_EQ(std::pair(setpoint->IDisplayItem_ItemType(), setpoint->ISubItemConnable_ItemType()),
            std::pair(0, 3));
  EXPECT_EQ(setpoint->IDisplayItem_Key() + "|" + setpoint->IDisplayItem_DisplayText(),
            "P7|nciSetpoint");

  // Listed only while connected.
  setpoint->ISubItemConnable_IsConnected(true);
  EXPECT_TRUE(setpoint->IDisplayItem_IsDisplayable() && setpoint->IConfigProperty_IsConnected());
  setpoint->ISubItemConnable_IsConnected(false);
  EXPECT_FALSE(setpoint->IDisplayItem_IsDisplayable() || setpoint->IConfigProperty_IsConnected());

  // A structure is connected through any of its fields, but not as a display item.
  const auto lamp = Add(kLamp);
  EXPECT_FALSE(lamp->IConfigProperty_IsConnected());
  FieldAt(lamp->IConfigProperty_Fields(), "value")->ISubItemConnable_IsConnected(true);
  EXPECT_TRUE(lamp->IConfigProperty_IsConnected());
  EXPECT_FALSE(lamp->IDisplayItem_IsConnected());
}

TEST_F(CConfigPropertyTest, UserStructuresAreArraysForFirmware) {
  for (const char* id : {"40000", "49998", "400000"})
    EXPECT_TRUE(CConfigProperty::IsUserTypeId(id));
  for (const char* id : {"49999", "39999", "5"}) EXPECT_FALSE(CConfigProperty::IsUserTypeId(id));
  const auto lamp = Add(kLamp);
  const auto schedule = Add("<nciSchedule><SNVTType>40070</SNVTType></nciSchedule>");
  const auto setpoint = Add(kSetpoint);
  EXPECT_TRUE(!lamp->IConfigProperty_IsArrayForFW() && lamp->IConfigProperty_IsStructForFW());
  EXPECT_TRUE(schedule->IConfigProperty_IsArrayForFW() &&
              !schedule->IConfigProperty_IsStructForFW());
  EXPECT_FALSE(setpoint->IConfigProperty_IsArrayForFW() ||
               setpoint->IConfigProperty_IsStructForFW());
}

TEST_F(CConfigPropertyTest, SetValueShowsTheEditorOfItsKind) {
  const auto setpoint = Add(kSetpoint);
  ScopedFormHost forms;
  for (const auto& property :
       {setpoint, Add("<nciText><SNVTType>str_asc</SNVTType><Default>hi</Default></nciText>"),
        Add("<nciMode><SNVTType>occupancy</SNVTType><Value>0</Value></nciMode>"), Add(kLamp),
        Add("<nciBits><SNVTType>state</SNVTType><Value>5</Value></nciBits>")}) {
    property->IConfigProperty_SetValue();
  }
  EXPECT_EQ(forms.host->captions,
            (std::vector<std::string>{"Numeric Value", "Text Value", "Enumeration Value",
                                      "Structure Value", "Bit Field Value"}));
}

using CConfigPropertiesTest = CConfigPropertyTest;

TEST_F(CConfigPropertiesTest, KeysAndIndexesSurviveRemoval) {
  std::vector<std::shared_ptr<CConfigProperty>> added;
  for (int i = 0; i < 3; ++i) {
    ClearFlags();
    added.push_back(Add(kSetpoint));
    EXPECT_TRUE(Globals::NeedSaveFlag);
    EXPECT_EQ(Place(*added[i]), "PGeneric_Profile\\CPS\\CP" + std::to_string(i + 1) + " " +
                                    std::to_string(i) + " -1");
    added[i]->IConfigProperty_ConnectionIndex(10 * (i + 1));
  }
  EXPECT_EQ(profile->changes, 3);

  // The later ones move up one index and keep their export numbers.
  ClearFlags();
  properties.IConfigProperties_Remove(added[1]);
  EXPECT_TRUE(Globals::NeedSaveFlag && Globals::DisplayIncompatibleFlag);
  EXPECT_EQ(profile->changes, 4);
  EXPECT_EQ(Place(*added[2]), "PGeneric_Profile\\CPS\\CP3 1 30");
  EXPECT_EQ(properties.IConfigProperties_Item("2"), added[2]);
  EXPECT_EQ(properties.IConfigProperties_Item("CP2"), nullptr);

  // A property of another collection: nothing moves, the profile still hears of it.
  CConfigProperties other;
  properties.IConfigProperties_Remove(other.IConfigProperties_AddNewCP("nciStranger", "count"));
  EXPECT_EQ(profile->changes, 5);
  EXPECT_EQ(properties.IConfigProperties_Count(), 2);

  // Keys are never reused; a new property takes the last index and warns of nothing.
  boxes.boxes.clear();
  ClearFlags();
  const auto fresh = NotNull(properties.IConfigProperties_AddNewCP("nciCount", "count"));
  EXPECT_TRUE(boxes.boxes.empty() && Globals::NeedSaveFlag);
  EXPECT_EQ(profile->changes, 6);
  EXPECT_EQ(Place(*fresh), "PGeneric_Profile\\CPS\\CP4 2 -1");
  EXPECT_EQ(Summary(*fresh), "count 0..65535 0/0");
}

TEST_F(CConfigPropertiesTest, InstanceNamesStayUnique) {
  constexpr char kCount[] = "<Setpoint><SNVTType>count</SNVTType><Value>1</Value></Setpoint>";
  const auto first = Add(kCount), second = Add(kCount);
  // Loaded properties are not instances: their names stay as given.
  EXPECT_EQ(second->IConfigProperty_Name(), "Setpoint");
  first->Instance(true);
  second->Instance(true);
  properties.FixName(*second);
  properties.FixName(*first);
  const auto third = Add(kCount);
  third->Instance(true);
  properties.FixName(*third);
  EXPECT_EQ(first->IConfigProperty_Name() + "|" + second->IConfigProperty_Name() + "|" +
                third->IConfigProperty_Name(),
            "Setpoint|Setpoint_1|Setpoint_2");
  EXPECT_EQ(profile->renames, (std::vector<std::pair<std::string, std::string>>{
                                  {"PGeneric_Profile\\CPS\\CP2", "Setpoint_1"},
                                  {"PGeneric_Profile\\CPS\\CP3", "Setpoint_2"}}));

  // Without a global key the profile is not told.
  const auto loose = std::make_shared<CConfigProperty>();
  loose->IConfigProperty_Name("Setpoint_2");
  loose->Instance(true);
  properties.FixName(*loose);
  EXPECT_EQ(loose->IConfigProperty_Name(), "Setpoint_2_1");
  EXPECT_EQ(profile->renames.size(), 2u);

  // A property that is no instance keeps its name.
  third->Instance(false);
  third->IConfigProperty_Name("Setpoint");
  properties.FixName(*third);
  EXPECT_EQ(third->IConfigProperty_Name(), "Setpoint");
}

TEST_F(CConfigPropertiesTest, AddsFromExportedPointRecord) {
  Add(kSetpoint);
  const pugi::xml_node record =
      Element(R"(<ApPoint Type="temp_p" Value="22.5" Key="K7">)"
              R"(<ExtendedInfo Location="120;45.5" ExportIndex="4"/></ApPoint>)");
  std::string name = "nciExported";
  boxes.boxes.clear();
  ClearFlags();
  const auto exported = NotNull(properties.AddFromExport(name, record, profile));
  EXPECT_EQ(name + "|" + exported->IConfigProperty_Name(), "nciExported|nciExported");
  EXPECT_TRUE(boxes.boxes.empty() && Globals::NeedSaveFlag);
  EXPECT_EQ(profile->changes, 2);
  EXPECT_EQ(exported->IConfigProperty_SNVTType()->ISNVType_ID() + " " +
                exported->IConfigProperty_Value() + " " + exported->IConfigProperty_PointKey(),
            "temp_p 22.5 K7");
  EXPECT_EQ(std::pair(exported->IConfigProperty_XPosition(), exported->IConfigProperty_YPosition()),
            std::pair(120.0, 46.0));
  // The collection numbers it like any other: the record's export index is not kept.
  EXPECT_EQ(Place(*exported), "PGeneric_Profile\\CPS\\CP2 1 -1");
  EXPECT_EQ(exported->Profile(), profile);
}

// A child without text is a failed read: what an earlier child gave stays.
TEST_F(CConfigPropertyTest, ChildWithoutTextLeavesWhatWasRead) {
  const auto set = Add(
      "<nciSet><SNVTType>temp_p</SNVTType><SNVTType/><Default>5</Default><Value/>"
      "<Min>1</Min><min></min><Max>9</Max><MAX><!--c--></MAX></nciSet>");
  EXPECT_EQ(Summary(*set), "temp_p 1..c 5/5");
  EXPECT_TRUE(boxes.boxes.empty());
}

// A structured property runs each step of its build under its own guard: two fields of one
// name stop the field list, but the length, the values read and the keys are still set.
TEST_F(CConfigPropertyTest, StructureStepsRunEachUnderItsOwnGuard) {
  ScopedCatalogue twin(BundledCatalogueWith(R"(<SNVT_twin><NAME>twin</NAME><TYPE>Struct</TYPE>
      <Fields><a>count</a><b>lev_cont</b><a>count</a></Fields></SNVT_twin>)"));
  const auto property = Add("<nciTwin><SNVTType>twin</SNVTType><a><Value>7</Value></a>"
                            "<b><Value>50</Value></b></nciTwin>");
  const auto fields = NotNull(property->IConfigProperty_Fields());
  EXPECT_EQ(fields->IFields_Count(), 2);
  EXPECT_EQ(property->IConfigProperty_SNVTType()->ISNVType_Length(), 3);
  EXPECT_EQ(property->IConfigProperty_Value(), "{ 7  50 }");
  EXPECT_EQ(property->IConfigProperty_DefaultValue(), "{ 7  50 }");
  EXPECT_EQ(fields->IFields_Item("b")->IField_GlobalKey(), property->IConfigProperty_GlobalKey() + "\\b");
}

constexpr char kScheduleEditor[] = "Brask.Ondo.UI.SchedulerEditor.SchedulerFace";

// Acts as the user of the schedule editor: keeps what it is handed, answers `reply`.
class FakeScheduleEditor final : public IScheduleEditor {
 public:
  std::string xml() const override { return text; }
  void xml(const std::string& value) override { received = text = value; }
  void TypeDBPath(const std::string& value) override { path = value; }
  void ShowDialog() override { text = reply; }
  std::string text, received, path, reply;
};

// A plain schedule (40050), a structured one (40070) and a structure that is none (40071);
// mouse pointers recorded.
class ScheduleEditorTest : public CConfigPropertyTest {
 protected:
  void SetUp() override {
    plain = Add("<nciPlain><SNVTType>40050</SNVTType><Default>12</Default></nciPlain>");
    schedule =
        Add("<nciSched><SNVTType>40070</SNVTType><start><Value>5</Value></start>"
            "<mode><Value>OC_BYPASS</Value></mode></nciSched>");
    other = Add("<nciOther><SNVTType>40071</SNVTType></nciOther>");
    boxes.boxes.clear();
    previous = SetPointerHandler([this](int16_t pointer) { pointers.push_back(pointer); });
  }
  void TearDown() override { SetPointerHandler(std::move(previous)); }

  std::shared_ptr<CConfigProperty> plain, schedule, other;
  std::vector<int16_t> pointers;
  PointerHandler previous;
  ScopedFormHost forms;
};

TEST_F(ScheduleEditorTest, WithoutEditorFallsBackToTheOrdinaryDialog) {
  ScopedComponent none(kScheduleEditor, nullptr);
  schedule->IConfigProperty_SetValue();
  EXPECT_EQ(pointers, (std::vector<int16_t>{11, 0}));  // hourglass, then back
  EXPECT_EQ(boxes.boxes, (Boxes{{"Install SchedulerEditor.dll to edit Schedulers", vbOKOnly, ""}}));
  EXPECT_EQ(forms.host->captions, std::vector<std::string>{"Structure Value"});

  // The other schedule types alike.
  plain->IConfigProperty_SetValue();
  for (const char* id : {"40051", "40060", "40061"}) {
    properties.IConfigProperties_AddNewCP(std::string("nci") + id, id)->IConfigProperty_SetValue();
  }
  EXPECT_EQ(boxes.boxes.size(), 5u);
  EXPECT_EQ(forms.host->captions.size(), 5u);

  // 40071 is no schedule: straight to its dialog.
  pointers.clear();
  boxes.boxes.clear();
  other->IConfigProperty_SetValue();
  EXPECT_TRUE(pointers.empty() && boxes.boxes.empty());
  EXPECT_EQ(forms.host->captions.back(), "Structure Value");
}

TEST_F(ScheduleEditorTest, EditorRoundTripsPlainAndStructuredValues) {
  const auto editor = std::make_shared<FakeScheduleEditor>();
  int created = 0;
  ScopedComponent registered(kScheduleEditor, [&]() -> std::shared_ptr<IUnknown> {
    ++created;
    return editor;
  });

  editor->reply = R"(<FIELD Name="nciPlain" Type="SNVT_40050" Value="34"/>)";
  plain->IConfigProperty_SetValue();
  EXPECT_EQ(editor->received, R"(<FIELD Name="nciPlain" Type="SNVT_40050" Value="12"/>)");
  EXPECT_EQ(editor->path, ComponentFolder() + "/../../SNVTS.XML");
  EXPECT_EQ(plain->IConfigProperty_Value(), "34");

  editor->reply = R"(<FIELD Name="nciSched" Type="SNVT_40070"><FIELDS>)"
                  R"(<FIELD Name="mode" Type="SNVT_occupancy" Value="OC_STANDBY"/>)"
                  R"(<FIELD Name="start" Type="SNVT_count" Value="7"/></FIELDS></FIELD>)";
  schedule->IConfigProperty_SetValue();
  EXPECT_EQ(editor->received,
            R"(<FIELD Name="nciSched" Type="SNVT_40070"><FIELDS>)"
            R"(<FIELD Name="start" Type="SNVT_count" Value="5"/>)"
            R"(<FIELD Name="mode" Type="SNVT_occupancy" Value="OC_BYPASS"/></FIELDS></FIELD>)");
  EXPECT_EQ(schedule->IConfigProperty_Value(), "{ 7  OC_STANDBY }");
  EXPECT_EQ(schedule->IConfigProperty_RawValue(), "000703");

  // Returned fields go to the fields of the same names only: "2" names none, and is not field 2.
  editor->reply = R"(<FIELD Name="nciSched" Type="SNVT_40070"><FIELDS>)"
                  R"(<FIELD Name="2" Value="OC_OCCUPIED"/><FIELD Name="start" Value="9"/>)"
                  R"(</FIELDS></FIELD>)";
  schedule->IConfigProperty_SetValue();
  EXPECT_EQ(schedule->IConfigProperty_Value(), "{ 9  OC_STANDBY }");

  // A reply that is no XML changes nothing.
  editor->reply = "<FIELD Name=";
  schedule->IConfigProperty_SetValue();
  plain->IConfigProperty_SetValue();
  EXPECT_EQ(schedule->IConfigProperty_Value(), "{ 9  OC_STANDBY }");
  EXPECT_EQ(plain->IConfigProperty_Value(), "34");

  other->IConfigProperty_SetValue();
  EXPECT_EQ(created, 5);
  EXPECT_TRUE(boxes.boxes.empty());
  EXPECT_EQ(forms.host->captions, std::vector<std::string>{"Structure Value"});
}

}  // namespace
}  // namespace kolvane::test
