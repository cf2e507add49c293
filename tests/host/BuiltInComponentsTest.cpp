#include "host/CUnitConverter.h"
#include "host/CUtility.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

// The components as a host reaches them.
std::shared_ptr<IUnitConverter> Converter() {
  return std::dynamic_pointer_cast<IUnitConverter>(CreateObject("UnitManager.Converter"));
}
std::shared_ptr<IUtility> Utility() {
  return std::dynamic_pointer_cast<IUtility>(CreateObject("Moraface.Utility"));
}

TEST(CUnitConverterTest, LimitsUnitsAndDefaultsComeFromTheCatalogue) {
  ScopedCatalogue catalogue(kBundledCatalogue, true);
  ASSERT_NE(Converter(), nullptr);
  const auto converter = Converter();
  // Values are shown as they are.
  EXPECT_EQ(converter->ToDisplayUnits("temp_p", "21,5"), "21,5");
  EXPECT_EQ(converter->DisplayMinimum("temp_p") + "|" + converter->DisplayMaximum("temp_p"),
            "-273.17|327.66");
  {
    ScopedDecimalSeparator comma(",");
    EXPECT_EQ(
        converter->DisplayMinimum("temp_p") + "|" + converter->ToDisplayUnits("temp_p", "2.5"),
        "-273,17|2.5");
  }
  EXPECT_EQ(converter->DisplayMinimum("lux") + "|" + converter->DisplayMaximum("lux"), "0|65535");
  EXPECT_EQ(converter->DisplayMinimum("nope") + "|" + converter->DisplayMaximum("nope"), "|");
  EXPECT_EQ(converter->DisplayUnits("temp_p") + "|" + converter->DisplayUnits("nope"), "°C|");
  EXPECT_EQ(converter->DefaultValue("temp_p"), "20");
  EXPECT_EQ(converter->DefaultValue("lux") + converter->DefaultValue("nope"), "");
}

TEST(CUnitConverterTest, NumbersFromTheUserTakeEitherSeparator) {
  // Only the user's own separator becomes a point.
  for (const auto& [separator, from_user] : {std::pair{".", "21,5|21.5"}, {",", "21.5|21.5"}}) {
    ScopedDecimalSeparator decimal(separator);
    const auto converter = Converter();
    EXPECT_EQ(converter->FromDisplayUnits("temp_p", "21,5") + "|" +
                  converter->FromDisplayUnits("temp_p", "21.5"),
              from_user);
    for (const auto& [text, number] : {std::pair{"21,5", 21.5}, {"21.5", 21.5}, {" -7 ", -7.0}}) {
      EXPECT_DOUBLE_EQ(converter->TextToNumber(text), number) << text << " with " << separator;
    }
    for (const char* text : {"abc", "", "1.234,5", "12abc"}) {
      EXPECT_EQ(ErrorNumberOf([&] { converter->TextToNumber(text); }), 13)
          << text << " with " << separator;
    }
  }
}

TEST(CUtilityTest, SplitFieldsAtTwoBlankGapsOrElseSingleBlanks) {
  // clang-format off
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"{ 12  7 }", {"12", "7"}}, {"12 7", {"12", "7"}}, {"12   7", {"12", "7"}},
      {"{ 1  { 2  3 }  4 }", {"1", "{ 2  3 }", "4"}}, {"1 { 2 3 } 4", {"1", "{ 2 3 }", "4"}},
      {"{ hello world  5 }", {"hello world", "5"}}, {"{12 7}", {"12", "7"}}, {"{}", {}},
      {"{  }", {""}}, {"", {}}, {"{   5 }", {"", "5"}}, {"{ 5 }", {"5"}}};
  // clang-format on
  CUtility utility;
  for (const auto& [text, fields] : cases) EXPECT_EQ(utility.SplitFields(text), fields) << text;
}

constexpr char kKinds[] = R"(
  <SNVT_lo><TYPE>SignedNumeric</TYPE><MIN>5</MIN><MAX>9</MAX></SNVT_lo>
  <SNVT_hi><TYPE>Float</TYPE><MIN>-9</MIN><MAX>-2.5</MAX></SNVT_hi>
  <SNVT_mid><TYPE>UnsignedNumeric</TYPE><MIN>0</MIN><MAX>10</MAX></SNVT_mid>
  <SNVT_m><TYPE>UnsignedNumeric</TYPE><MIN>5</MIN></SNVT_m>
  <SNVT_n><TYPE>SignedNumeric</TYPE><MAX>-3</MAX></SNVT_n>
  <SNVT_bits><TYPE>Bitfield</TYPE></SNVT_bits>
  <SNVT_e0><TYPE>Enum</TYPE><Enums><ON>1</ON><OFF>0</OFF></Enums></SNVT_e0>
  <SNVT_e1><TYPE>Enum</TYPE><Enums><LOW>3</LOW><HIGH>4</HIGH></Enums></SNVT_e1>
  <SNVT_ev><TYPE>Enum</TYPE><DEFAULT>4</DEFAULT><Enums><LOW>3</LOW><HIGH>4</HIGH></Enums></SNVT_ev>
  <SNVT_en><TYPE>Enum</TYPE><DEFAULT>HIGH</DEFAULT>
    <Enums><LOW>3</LOW><HIGH>4</HIGH></Enums></SNVT_en>
  <SNVT_txt><TYPE>Textual</TYPE><LENGTH>5</LENGTH></SNVT_txt>
  <SNVT_st><TYPE>Struct</TYPE><Fields><a>lo</a><b>e1</b></Fields></SNVT_st>
  <SNVT_outer><TYPE>Struct</TYPE><Fields><x>st</x><y>txt</y><z>hi</z></Fields></SNVT_outer>
  <SNVT_given><TYPE>Struct</TYPE><DEFAULT>{ 1  2 }</DEFAULT><Fields><a>lo</a></Fields></SNVT_given>
  <SNVT_loop><TYPE>Struct</TYPE><Fields><a>bits</a><self>loop</self></Fields></SNVT_loop>
  <SNVT_twice><TYPE>Struct</TYPE><Fields><a>bits</a><l>twice</l><r>twice</r></Fields></SNVT_twice>
)";

// A number type starts at the bound nearest to zero, also when it has only one (m, n); a type
// that contains itself ends in "{}" where it meets itself again.
TEST(CUtilityTest, DefaultValuesByKind) {
  ScopedCatalogue catalogue(BundledCatalogueWith(kKinds));
  const std::string loop = "{ 0  {} }";
  // clang-format off
  const std::pair<const char*, std::string> cases[] = {
      {"temp_p", "20"}, {"occupancy", "OC_OCCUPIED"}, {"lev_cont", "0"},
      {"switch_state", "TOGGLE_OFF"}, {"switch", "{ 0  TOGGLE_OFF }"}, {"lo", "5"}, {"hi", "-2.5"},
      {"mid", "0"}, {"m", "5"}, {"n", "-3"}, {"bits", "0"}, {"e0", "OFF"}, {"e1", "LOW"},
      {"ev", "HIGH"}, {"en", "HIGH"}, {"txt", ""}, {"st", "{ 5  LOW }"},
      {"outer", "{ { 5  LOW }    -2.5 }"}, {"given", "{ 1  2 }"}, {"loop", loop},
      {"twice", "{ 0  {}  {} }"}};
  // clang-format on
  for (const auto& [id, value] : cases) {
    EXPECT_EQ(Utility()->DefaultValue(TypeOf(id)), value) << id;
  }
}

TEST(CUtilityTest, ParseLocationRoundsEachCoordinate) {
  const std::tuple<const char*, int32_t, int32_t> cases[] = {
      {"120;45.5", 120, 46}, {"120;44.5", 120, 44}, {"1,5;2", 2, 2},    {"", 0, 0},
      {"abc;7", 0, 7},       {"7", 7, 0},           {"-2.5;3,5", -2, 4}};
  for (const char* separator : {".", ","}) {
    ScopedDecimalSeparator decimal(separator);
    for (const auto& [text, x, y] : cases) {
      int32_t got_x = -99, got_y = -99;
      Utility()->ParseLocation(text, got_x, got_y);
      EXPECT_EQ(std::pair(got_x, got_y), std::pair(x, y)) << text << " with " << separator;
    }
  }
  int32_t x = 0, y = 0;
  EXPECT_EQ(ErrorNumberOf([&] { Utility()->ParseLocation("1e10;0", x, y); }), 6);
  EXPECT_EQ(ErrorNumberOf([&] { Utility()->ParseLocation("0;-3e9", x, y); }), 6);
}

TEST(CUtilityTest, EnumStateNumber) {
  ScopedCatalogue catalogue(kBundledCatalogue, true);
  const std::pair<const char*, int32_t> numbers[] = {
      {"OC_BYPASS", 2}, {"hvac_cool", 3}, {"OC_NUL", -1}, {"12", 12}, {"Invalid", -1}, {"-1", -1}};
  for (const auto& [state, number] : numbers) {
    EXPECT_EQ(Utility()->EnumStateNumber(state), number) << state;
  }
  for (const char* state : {"1.5", "nope", ""}) {
    EXPECT_EQ(ErrorNumberOf([&] { Utility()->EnumStateNumber(state); }), 5) << state;
  }
}

}  // namespace
}  // namespace kolvane::test
