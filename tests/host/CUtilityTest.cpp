#include "host/CUtility.h"

#include "types/CNVOCompatibleSNVTs.h"
#include "types/CSNVTType.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

using Fields = std::vector<std::string>;

// The utility as a host reaches it.
std::shared_ptr<IUtility> Utility() {
  return std::dynamic_pointer_cast<IUtility>(CreateObject("Moraface.Utility"));
}

std::string DefaultOf(const std::string& id) {
  auto type = std::make_shared<CSNVTType>();
  type->Load(id);
  return Utility()->DefaultValue(type);
}

TEST(CUtilityTest, IsRegisteredByDefault) {
  ASSERT_NE(Utility(), nullptr);
  EXPECT_NE(std::dynamic_pointer_cast<IUtility>(CreateObject("moraface.utility")), nullptr);
}

TEST(CUtilityTest, SplitFieldsAtTwoBlankGapsOrElseSingleBlanks) {
  const std::pair<const char*, Fields> cases[] = {{"{ 12  7 }", {"12", "7"}},
                                                  {"12 7", {"12", "7"}},
                                                  {"12   7", {"12", "7"}},
                                                  {"{ 1  { 2  3 }  4 }", {"1", "{ 2  3 }", "4"}},
                                                  {"1 { 2 3 } 4", {"1", "{ 2 3 }", "4"}},
                                                  {"{ hello world  5 }", {"hello world", "5"}},
                                                  {"{12 7}", {"12", "7"}},
                                                  {"{}", {}},
                                                  {"{  }", {""}},
                                                  {"", {}},
                                                  {"{   5 }", {"", "5"}},
                                                  {"{ 5 }", {"5"}}};
  CUtility utility;
  for (const auto& [text, fields] : cases) EXPECT_EQ(utility.SplitFields(text), fields) << text;
}

TEST(CUtilityTest, DefaultValuesOfTheBundledCatalogue) {
  test::ScopedCatalogue catalogue(KOLVANE_SOURCE_DIR "/examples/snvts.xml", true);
  EXPECT_EQ(DefaultOf("temp_p"), "20");
  EXPECT_EQ(DefaultOf("occupancy"), "OC_OCCUPIED");
  EXPECT_EQ(DefaultOf("lev_cont"), "0");
  EXPECT_EQ(DefaultOf("switch_state"), "TOGGLE_OFF");
  EXPECT_EQ(DefaultOf("switch"), "{ 0  TOGGLE_OFF }");
}

TEST(CUtilityTest, DefaultValuesByKind) {
  test::ScopedCatalogue catalogue(R"(<SNVTS>
    <SNVT_lo><TYPE>SignedNumeric</TYPE><MIN>5</MIN><MAX>9</MAX></SNVT_lo>
    <SNVT_hi><TYPE>Float</TYPE><MIN>-9</MIN><MAX>-2.5</MAX></SNVT_hi>
    <SNVT_mid><TYPE>UnsignedNumeric</TYPE><MIN>0</MIN><MAX>10</MAX></SNVT_mid>
    <SNVT_bits><TYPE>Bitfield</TYPE></SNVT_bits>
    <SNVT_e0><TYPE>Enum</TYPE><Enums><ON>1</ON><OFF>0</OFF></Enums></SNVT_e0>
    <SNVT_e1><TYPE>Enum</TYPE><Enums><LOW>3</LOW><HIGH>4</HIGH></Enums></SNVT_e1>
    <SNVT_ev><TYPE>Enum</TYPE><DEFAULT>4</DEFAULT><Enums><LOW>3</LOW><HIGH>4</HIGH></Enums></SNVT_ev>
    <SNVT_en><TYPE>Enum</TYPE><DEFAULT>HIGH</DEFAULT><Enums><LOW>3</LOW><HIGH>4</HIGH></Enums></SNVT_en>
    <SNVT_txt><TYPE>Textual</TYPE><LENGTH>5</LENGTH></SNVT_txt>
    <SNVT_st><TYPE>Struct</TYPE><Fields><a>lo</a><b>e1</b></Fields></SNVT_st>
    <SNVT_outer><TYPE>Struct</TYPE><Fields><x>st</x><y>txt</y><z>hi</z></Fields></SNVT_outer>
    <SNVT_given><TYPE>Struct</TYPE><DEFAULT>{ 1  2 }</DEFAULT><Fields><a>lo</a></Fields></SNVT_given>
  </SNVTS>)");
  const std::pair<const char*, const char*> cases[] = {{"lo", "5"},
                                                       {"hi", "-2.5"},
                                                       {"mid", "0"},
                                                       {"bits", "0"},
                                                       {"e0", "OFF"},
                                                       {"e1", "LOW"},
                                                       {"ev", "HIGH"},
                                                       {"en", "HIGH"},
                                                       {"txt", ""},
                                                       {"st", "{ 5  LOW }"},
                                                       {"outer", "{ { 5  LOW }    -2.5 }"},
                                                       {"given", "{ 1  2 }"}};
  for (const auto& [id, value] : cases) EXPECT_EQ(DefaultOf(id), value) << id;
}

// A type that contains itself ends in "{}" 32 levels down instead of recursing without end.
TEST(CUtilityTest, DefaultValueOfAStructureThatContainsItselfEnds) {
  test::ScopedCatalogue catalogue(
      "<SNVTS><SNVT_n><TYPE>SignedNumeric</TYPE></SNVT_n>"
      "<SNVT_loop><TYPE>Struct</TYPE><Fields><a>n</a><self>loop</self></Fields></SNVT_loop>"
      "</SNVTS>");
  std::string expected = "{}";
  for (int level = 0; level < 32; ++level) expected = "{ 0  " + expected + " }";
  EXPECT_EQ(DefaultOf("loop"), expected);
}

// A number type with a positive MIN starts at MIN even when it has no MAX.
TEST(CUtilityTest, DefaultValueOfANumberWithOnlyAPositiveMinimum) {
  test::ScopedCatalogue catalogue(
      "<SNVTS><SNVT_m><TYPE>UnsignedNumeric</TYPE><MIN>5</MIN></SNVT_m>"
      "<SNVT_n><TYPE>SignedNumeric</TYPE><MAX>-3</MAX></SNVT_n></SNVTS>");
  EXPECT_EQ(DefaultOf("m"), "5");
  EXPECT_EQ(DefaultOf("n"), "-3");
}

TEST(CUtilityTest, ParseLocationRoundsEachCoordinate) {
  const std::tuple<const char*, int32_t, int32_t> cases[] = {
      {"120;45.5", 120, 46}, {"120;44.5", 120, 44}, {"1,5;2", 2, 2},    {"", 0, 0},
      {"abc;7", 0, 7},       {"7", 7, 0},           {"-2.5;3,5", -2, 4}};
  for (const char* separator : {".", ","}) {
    test::ScopedDecimalSeparator decimal(separator);
    for (const auto& [text, x, y] : cases) {
      int32_t got_x = -99, got_y = -99;
      Utility()->ParseLocation(text, got_x, got_y);
      EXPECT_EQ(std::pair(got_x, got_y), std::pair(x, y)) << text << " with " << separator;
    }
  }
  int32_t x = 0, y = 0;
  EXPECT_EQ(test::ErrorNumberOf([&] { Utility()->ParseLocation("1e10;0", x, y); }), 6);
  EXPECT_EQ(test::ErrorNumberOf([&] { Utility()->ParseLocation("0;-3e9", x, y); }), 6);
}

TEST(CUtilityTest, CompatibleListTextAndEnumStateNumber) {
  CNVOCompatibleSNVTs list;
  EXPECT_EQ(Utility()->CompatibleListText(list), "");
  list.ICompatibleSNVTs_Add("b,a,c");
  EXPECT_EQ(Utility()->CompatibleListText(list), "b,a,c");

  test::ScopedCatalogue catalogue(KOLVANE_SOURCE_DIR "/examples/snvts.xml", true);
  const std::pair<const char*, int32_t> numbers[] = {
      {"OC_BYPASS", 2}, {"hvac_cool", 3}, {"OC_NUL", -1}, {"12", 12}, {"Invalid", -1}, {"-1", -1}};
  for (const auto& [state, number] : numbers) {
    EXPECT_EQ(Utility()->EnumStateNumber(state), number) << state;
  }
  for (const char* state : {"1.5", "nope", ""}) {
    EXPECT_EQ(test::ErrorNumberOf([&] { Utility()->EnumStateNumber(state); }), 5) << state;
  }
}

}  // namespace
}  // namespace kolvane
