#include "cp/CConfigProperty.h"

#include "dialogs/ValueDialog.h"
#include "dialogs/frmCPModif1.h"
#include "dialogs/frmCPModif2.h"
#include "dialogs/frmCPModif3.h"
#include "dialogs/frmCPModif4.h"
#include "dialogs/frmCPModif5.h"

#include "CpTestSupport.h"

namespace kolvane {
namespace {

using test::DefaultBox;
using test::WarningBox;
using Boxes = std::vector<test::MessageBoxRecorder::Box>;

class CConfigPropertyTest : public test::CpFixture {};

constexpr char kSetpoint[] =
    "<nciSetpoint><SNVTType>temp_p</SNVTType><Default>21.5</Default><Min>10</Min><Max>30</Max>"
    "</nciSetpoint>";
constexpr char kLamp[] =
    "<nciLamp><SNVTType>switch</SNVTType><value><Value>100</Value></value>"
    "<state><Value>TOGGLE_ON</Value></state></nciLamp>";

TEST_F(CConfigPropertyTest, LoadsNumericKindsWithBoundsAndDefaults) {
  const auto setpoint = Add(kSetpoint);
  ASSERT_NE(setpoint, nullptr);
  EXPECT_TRUE(boxes.boxes.empty());
  EXPECT_EQ(setpoint->IConfigProperty_SNVTType()->ISNVType_ID(), "temp_p");
  EXPECT_EQ(setpoint->IConfigProperty_SNVTType()->ISNVType_Min(), "10");
  EXPECT_EQ(setpoint->IConfigProperty_SNVTType()->ISNVType_Max(), "30");
  EXPECT_EQ(setpoint->IConfigProperty_DefaultValue(), "21.5");
  EXPECT_EQ(setpoint->IConfigProperty_Value(), "21.5");
  EXPECT_EQ(setpoint->IConfigProperty_RawValue(), "0866");
  EXPECT_FALSE(setpoint->DefaultWarning());
  EXPECT_FALSE(setpoint->IConfigProperty_Mandatory());
  EXPECT_NE(std::dynamic_pointer_cast<frmCPModif1>(setpoint->Editor()), nullptr);
  EXPECT_EQ(setpoint->Profile(), profile);

  // Names matched in any case, comments skipped, the later of Default/Value wins.
  const auto limit = Add(
      "<nciLimit><!-- <SNVTType>temp_p</SNVTType> --><snvttype>count</snvttype><min>5</min>"
      "<MAX>900</MAX><Default>7</Default><!-- note --><value>3</value></nciLimit>");
  ASSERT_NE(limit, nullptr);
  EXPECT_EQ(limit->IConfigProperty_SNVTType()->ISNVType_ID(), "count");
  EXPECT_EQ(limit->IConfigProperty_SNVTType()->ISNVType_Min(), "5");
  EXPECT_EQ(limit->IConfigProperty_SNVTType()->ISNVType_Max(), "900");
  EXPECT_EQ(limit->IConfigProperty_DefaultValue(), "3");
  EXPECT_NE(std::dynamic_pointer_cast<frmCPModif1>(limit->Editor()), nullptr);
  EXPECT_TRUE(boxes.boxes.empty());

  // No default: "0" assumed with a warning; the type's own bounds stay.
  const auto flt = Add("<nciFloat><SNVTType>temp_f</SNVTType></nciFloat>");
  ASSERT_NE(flt, nullptr);
  EXPECT_EQ(boxes.boxes, Boxes{DefaultBox("nciFloat", "0")});
  EXPECT_TRUE(flt->DefaultWarning());
  EXPECT_EQ(flt->IConfigProperty_DefaultValue(), "0");
  EXPECT_EQ(flt->IConfigProperty_Value(), "0");
  EXPECT_EQ(flt->IConfigProperty_SNVTType()->ISNVType_Min(), "-273.17");
  EXPECT_EQ(flt->IConfigProperty_SNVTType()->ISNVType_Max(), "3.40282E+38");
  EXPECT_NE(std::dynamic_pointer_cast<frmCPModif1>(flt->Editor()), nullptr);
}

TEST_F(CConfigPropertyTest, LoadsTextEnumAndBitfieldKinds) {
  const auto text = Add("<nciText><SNVTType>str_asc</SNVTType></nciText>");
  const auto mode = Add("<nciMode><SNVTType>occupancy</SNVTType></nciMode>");
  const auto bits = Add("<nciBits><SNVTType>state</SNVTType></nciBits>");
  ASSERT_TRUE(text && mode && bits);
  EXPECT_EQ(boxes.boxes,
            (Boxes{DefaultBox("nciText", "none"), DefaultBox("nciMode", "0"),
                   DefaultBox("nciBits", "0")}));
  EXPECT_EQ(text->IConfigProperty_DefaultValue(), "none");
  EXPECT_EQ(text->IConfigProperty_Value(), "none");
  EXPECT_EQ(mode->IConfigProperty_Value(), "0");
  EXPECT_EQ(bits->IConfigProperty_Value(), "0");
  for (const auto& property : {text, mode, bits}) EXPECT_TRUE(property->DefaultWarning());
  EXPECT_NE(std::dynamic_pointer_cast<frmCPModif2>(text->Editor()), nullptr);
  EXPECT_NE(std::dynamic_pointer_cast<frmCPModif3>(mode->Editor()), nullptr);
  EXPECT_NE(std::dynamic_pointer_cast<frmCPModif5>(bits->Editor()), nullptr);

  boxes.boxes.clear();
  const auto bypass =
      Add("<nciBypass><SNVTType>occupancy</SNVTType><Default>OC_BYPASS</Default>"
          "<Min>1.5</Min><Max>3</Max></nciBypass>");
  ASSERT_NE(bypass, nullptr);
  EXPECT_TRUE(boxes.boxes.empty());
  EXPECT_FALSE(bypass->DefaultWarning());
  EXPECT_EQ(bypass->IConfigProperty_RawValue(), "02");
  test::ScopedDecimalSeparator comma{","};
  EXPECT_EQ(bypass->IConfigProperty_Value(), "OC_BYPASS");
  EXPECT_EQ(bypass->IConfigProperty_DispValue(), "OC_BYPASS");
  EXPECT_EQ(bypass->IConfigProperty_DispMin(), "1,5");
  EXPECT_EQ(bypass->IConfigProperty_DispMax(), "3");
}

TEST_F(CConfigPropertyTest, MissingTypeWarnsOnceAndStillLoads) {
  for (const char* xml : {"<nciNone><Min>1</Min></nciNone>",
                          "<nciEmpty><SNVTType></SNVTType></nciEmpty>",
                          "<nciX><SNVTType>xtemp_p</SNVTType></nciX>"}) {
    boxes.boxes.clear();
    const auto property = Add(xml);
    ASSERT_NE(property, nullptr) << xml;
    const std::string name = property->IConfigProperty_Name();
    EXPECT_EQ(boxes.boxes,
              Boxes{WarningBox(name + ": SNVT Type not defined into the XML file of the profile")});
    EXPECT_EQ(property->Editor(), nullptr) << name;
    EXPECT_EQ(property->IConfigProperty_DefaultValue(), "") << name;
    EXPECT_EQ(property->IConfigProperty_Value(), "") << name;
  }
  EXPECT_EQ(properties.IConfigProperties_Count(), 3);

  // A type name starting with "X" gives way to the fallback.
  boxes.boxes.clear();
  const auto fallback = std::make_shared<CConfigProperty>();
  fallback->IConfigProperty_Name("nciFallback");
  fallback->LoadFromXml(nullptr, Element("<nciFallback><SNVTType>X12</SNVTType>"
                                         "<Default>5</Default></nciFallback>"),
                        "count");
  EXPECT_EQ(fallback->IConfigProperty_SNVTType()->ISNVType_ID(), "count");
  EXPECT_EQ(fallback->IConfigProperty_Value(), "5");
  EXPECT_TRUE(boxes.boxes.empty());
}

TEST_F(CConfigPropertyTest, StructureTakesFieldValuesFromItsElement) {
  const auto lamp = Add(kLamp);
  ASSERT_NE(lamp, nullptr);
  EXPECT_EQ(boxes.boxes, (Boxes{DefaultBox("nciLamp.value", "0"), DefaultBox("nciLamp.state", "0")}));
  EXPECT_EQ(lamp->IConfigProperty_Value(), "{ 100  TOGGLE_ON }");
  EXPECT_EQ(lamp->IConfigProperty_DefaultValue(), "{ 100  TOGGLE_ON }");
  EXPECT_EQ(lamp->IConfigProperty_RawValue(), "C801");
  EXPECT_NE(std::dynamic_pointer_cast<frmCPModif4>(lamp->Editor()), nullptr);
  ASSERT_NE(lamp->IConfigProperty_Fields(), nullptr);
  EXPECT_EQ(lamp->IConfigProperty_Fields()->IFields_Count(), 2);
  const auto state = test::FieldAt(lamp->IConfigProperty_Fields(), "state");
  ASSERT_NE(state, nullptr);
  EXPECT_EQ(state->IField_Value(), "TOGGLE_ON");
  EXPECT_EQ(state->IField_GlobalKey(), "PGeneric_Profile\\CPS\\CP1\\state");
  lamp->IConfigProperty_PointKey("P9");
  EXPECT_EQ(state->IDisplayItem_Key(), "P9.state");
}

TEST_F(CConfigPropertyTest, ValueTextsAndSaveFlag) {
  const auto setpoint = Add(kSetpoint);
  ASSERT_NE(setpoint, nullptr);
  EXPECT_EQ(setpoint->IConfigProperty_DispMin(), "-273.17 °C");
  EXPECT_EQ(setpoint->IConfigProperty_DispMax(), "327.66 °C");

  test::ScopedDecimalSeparator comma{","};
  EXPECT_EQ(setpoint->IConfigProperty_Value(), "21,5");
  EXPECT_EQ(setpoint->IConfigProperty_DispValue(), "21,5 °C");
  EXPECT_EQ(setpoint->IConfigProperty_DispDefault(), "21,5 °C");

  flags.Clear();
  setpoint->IConfigProperty_Value("22.5");
  EXPECT_TRUE(Globals::NeedSaveFlag);
  EXPECT_EQ(setpoint->IConfigProperty_Value(), "22,5");
  EXPECT_EQ(setpoint->IConfigProperty_RawValue(), "08CA");
  EXPECT_EQ(setpoint->IConfigProperty_DefaultValue(), "21.5");

  flags.Clear();
  setpoint->IConfigProperty_XPosition(12.5);
  EXPECT_TRUE(Globals::NeedSaveFlag);
  flags.Clear();
  setpoint->IConfigProperty_YPosition(7);
  EXPECT_TRUE(Globals::NeedSaveFlag);
  EXPECT_EQ(setpoint->IConfigProperty_XPosition(), 12.5);
  EXPECT_EQ(setpoint->IConfigProperty_YPosition(), 7);
}

TEST_F(CConfigPropertyTest, WritesItsElementAndReadsItBack) {
  const auto setpoint = Add(kSetpoint);
  const auto flt = Add("<nciFloat><SNVTType>temp_f</SNVTType></nciFloat>");
  ASSERT_TRUE(setpoint && flt);
  setpoint->IConfigProperty_IndexInFile("3");
  setpoint->Sisd("1.2");

  pugi::xml_document document;
  const pugi::xml_node parent = document.append_child("CPS");
  EXPECT_EQ(test::XmlText(setpoint->WriteXml(document, parent)),
            "<nciSetpoint Index=\"3\"><Visible>1</Visible><SNVTType>temp_p</SNVTType>"
            "<SISD>1.2</SISD><Default>21.5</Default><Min>10</Min><Max>30</Max></nciSetpoint>");
  EXPECT_EQ(test::XmlText(flt->WriteXml(document, parent)),
            "<nciFloat DefaultWarning=\"1\"><Visible>1</Visible><SNVTType>temp_f</SNVTType>"
            "<Default>0</Default><Min>-273.17</Min><Max>3.40282E+38</Max></nciFloat>");

  boxes.boxes.clear();
  const auto copy = std::dynamic_pointer_cast<CConfigProperty>(
      properties.IConfigProperties_AddCP("copy", nullptr, parent.first_child()));
  ASSERT_NE(copy, nullptr);
  EXPECT_TRUE(boxes.boxes.empty());
  EXPECT_EQ(copy->IConfigProperty_SNVTType()->ISNVType_ID(), "temp_p");
  EXPECT_EQ(copy->IConfigProperty_DefaultValue(), "21.5");
  EXPECT_EQ(copy->IConfigProperty_SNVTType()->ISNVType_Min(), "10");
  EXPECT_EQ(copy->IConfigProperty_SNVTType()->ISNVType_Max(), "30");
}

TEST_F(CConfigPropertyTest, DisplayItemAndConnectionCounting) {
  const auto setpoint = Add(kSetpoint);
  ASSERT_NE(setpoint, nullptr);
  setpoint->IConfigProperty_PointKey("P7");
  EXPECT_EQ(setpoint->IDisplayItem_ItemType(), 0);
  EXPECT_EQ(setpoint->IDisplayItem_Icon(), 0);
  EXPECT_TRUE(setpoint->IDisplayItem_IsWritable());
  EXPECT_FALSE(setpoint->IDisplayItem_IsTrendable());
  EXPECT_EQ(setpoint->IDisplayItem_Key(), "P7");
  EXPECT_EQ(setpoint->IDisplayItem_DisplayText(), "nciSetpoint");
  EXPECT_EQ(setpoint->ISubItemConnable_ItemType(), 3);
  EXPECT_EQ(setpoint->IConfigProperty_NodeType(), 3);
  EXPECT_FALSE(setpoint->ISubItemConnable_IsSNVTCompatible("temp_p"));

  EXPECT_FALSE(setpoint->IDisplayItem_IsConnected());
  setpoint->ISubItemConnable_IsConnected(true);
  setpoint->ISubItemConnable_IsConnected(true);
  setpoint->ISubItemConnable_IsConnected(false);
  EXPECT_TRUE(setpoint->IDisplayItem_IsConnected());
  EXPECT_TRUE(setpoint->IDisplayItem_IsDisplayable());
  EXPECT_TRUE(setpoint->IConfigProperty_IsConnected());
  setpoint->ISubItemConnable_IsConnected(false);
  EXPECT_FALSE(setpoint->IDisplayItem_IsConnected());
  EXPECT_FALSE(setpoint->IDisplayItem_IsDisplayable());
  EXPECT_FALSE(setpoint->IConfigProperty_IsConnected());

  const auto fresh = Add(kSetpoint);
  ASSERT_NE(fresh, nullptr);
  fresh->ISubItemConnable_IsConnected(false);
  EXPECT_TRUE(fresh->IDisplayItem_IsConnected());

  const auto lamp = Add(kLamp);
  ASSERT_NE(lamp, nullptr);
  EXPECT_FALSE(lamp->IConfigProperty_IsConnected());
  const auto value = test::FieldAt(lamp->IConfigProperty_Fields(), "value");
  ASSERT_NE(value, nullptr);
  value->ISubItemConnable_IsConnected(true);
  EXPECT_TRUE(lamp->IConfigProperty_IsConnected());
  EXPECT_FALSE(lamp->IDisplayItem_IsConnected());
}

TEST_F(CConfigPropertyTest, UserTypesAreArraysForFirmware) {
  EXPECT_TRUE(CConfigProperty::IsUserTypeId("40000"));
  EXPECT_TRUE(CConfigProperty::IsUserTypeId("49998"));
  EXPECT_TRUE(CConfigProperty::IsUserTypeId("400000"));
  EXPECT_FALSE(CConfigProperty::IsUserTypeId("49999"));
  EXPECT_FALSE(CConfigProperty::IsUserTypeId("39999"));
  EXPECT_FALSE(CConfigProperty::IsUserTypeId("5"));

  const auto lamp = Add(kLamp);
  const auto setpoint = Add(kSetpoint);
  const auto mode = Add("<nciMode><SNVTType>occupancy</SNVTType></nciMode>");
  ASSERT_TRUE(lamp && setpoint && mode);
  EXPECT_FALSE(lamp->IConfigProperty_IsArrayForFW());
  EXPECT_TRUE(lamp->IConfigProperty_IsStructForFW());
  for (const auto& other : {setpoint, mode}) {
    EXPECT_FALSE(other->IConfigProperty_IsArrayForFW());
    EXPECT_FALSE(other->IConfigProperty_IsStructForFW());
  }

  test::ScopedCatalogue user(
      "<SNVTS><SNVT_count><NAME>count</NAME><TYPE>UnsignedNumeric</TYPE><MIN>0</MIN>"
      "<MAX>65535</MAX><LENGTH>2</LENGTH><A_COEF>1</A_COEF><B_COEF>0</B_COEF><C_COEF>0</C_COEF>"
      "</SNVT_count><SNVT_40000><NAME>40000</NAME><TYPE>Struct</TYPE>"
      "<Fields><first>count</first><second>count</second></Fields></SNVT_40000></SNVTS>");
  const auto array = Add("<nciArray><SNVTType>40000</SNVTType></nciArray>");
  ASSERT_NE(array, nullptr);
  EXPECT_TRUE(array->IConfigProperty_IsArrayForFW());
  EXPECT_FALSE(array->IConfigProperty_IsStructForFW());
}

TEST_F(CConfigPropertyTest, SetValueShowsTheEditorOfItsKind) {
  const auto setpoint = Add(kSetpoint);
  const auto text = Add("<nciText><SNVTType>str_asc</SNVTType><Default>hi</Default></nciText>");
  const auto mode = Add("<nciMode><SNVTType>occupancy</SNVTType><Value>0</Value></nciMode>");
  const auto lamp = Add(kLamp);
  const auto bits = Add("<nciBits><SNVTType>state</SNVTType><Value>5</Value></nciBits>");
  ASSERT_TRUE(setpoint && text && mode && lamp && bits);

  test::ScopedFormHost forms;
  // The dialog edits the property: leaving it as the structure dialog would restores the value.
  forms.host->steps.push_back([&](Form& form) {
    auto& dialog = dynamic_cast<ValueDialog&>(form);
    dialog.CalledFramModif4(true);
    setpoint->IConfigProperty_Value("25");
  });
  for (const auto& property : {setpoint, text, mode, lamp, bits}) property->IConfigProperty_SetValue();
  EXPECT_EQ(forms.host->captions,
            (std::vector<std::string>{"Numeric Value", "Text Value", "Enumeration Value",
                                      "Structure Value", "Bit Field Value"}));
  EXPECT_EQ(setpoint->IConfigProperty_Value(), "21.5");
}

}  // namespace
}  // namespace kolvane
