#include "host/CUnitConverter.h"
#include "host/CUtility.h"

#include <cmath>
#include <fstream>
#include <random>

#include "conversion/SNVTDataConversion.h"
#include "foundation/Decimal.h"
#include "types/SnvtCatalogue.h"

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

TEST(CUnitConverterTest, UsCustomaryUnitsConvertExactlyAndBack) {
  ScopedCatalogue catalogue(kBundledCatalogue, true);
  ScopedDecimalSeparator point(".");
  ScopedUsUnits us;
  const auto converter = Converter();
  // A setpoint of 21.5 °C is 70.7 °F; a difference has no offset; a type without a US unit shows
  // its own; texts that are no number pass as they are.
  const std::tuple<const char*, const char*, const char*> shown[] = {
      {"temp_p", "21.5", "70.7 °F"},      {"temp_p", "-273.17", "-459.706 °F"},
      {"temp_diff_p", "1", "1.8 °F"},      {"temp", "20", "68 °F"},
      {"press_p", "249", "1 inH2O"},      {"press_p", "-1000", "-4.015 inH2O"},
      {"flow", "100", "212 cfm"},         {"lux", "100", "9.29 fc"},
      {"count", "7", "7 "},
      {"temp_p", "Invalid", "Invalid °F"}};
  for (const auto& [id, value, text] : shown) {
    EXPECT_EQ(converter->ToDisplayUnits(id, value) + " " + converter->DisplayUnits(id), text) << id;
  }
  EXPECT_EQ(converter->DisplayMinimum("temp_p") + ".." + converter->DisplayMaximum("temp_p"),
            "-459.706..621.788");
  // Back from display: the nearest value the type holds, in its own unit.
  EXPECT_EQ(converter->FromDisplayUnits("temp_p", "70.7"), "21.5");
  EXPECT_EQ(converter->FromDisplayUnits("temp_p", "70"), "21.11");
  EXPECT_EQ(converter->FromDisplayUnits("temp", "68.05"), "20");
  {
    ScopedDecimalSeparator comma(",");
    EXPECT_EQ(converter->ToDisplayUnits("temp_p", "21,5"), "70,7");
    EXPECT_EQ(converter->FromDisplayUnits("temp_p", "70,7"), "21.5");
  }
  // SI again: values pass as they are.
  SetUnitSystem(UnitSystem::kSI);
  EXPECT_EQ(converter->ToDisplayUnits("temp_p", "21.5") + " " + converter->DisplayUnits("temp_p"),
            "21.5 °C");
}

// Every raw value of every 2-byte number with a US unit comes back unchanged: raw -> value ->
// US text -> value -> raw.
TEST(CUnitConverterTest, EveryRawValueOfTwoByteTypesRoundTripsThroughUsUnits) {
  ScopedCatalogue catalogue(kBundledCatalogue, true);
  ScopedDecimalSeparator point(".");
  ScopedUsUnits us;
  const auto converter = Converter();
  const auto table = Parsed(KOLVANE_SOURCE_DIR "/examples/units.xml", true);
  int types = 0;
  for (pugi::xml_node entry : table->document_element().children()) {
    const std::string id = std::string(entry.name()).substr(5);
    const auto type = CSNVTType::Shared(id);
    if (type->ISNVType_Length() != 2 || (type->Kind() != TypeKind::kSignedNumeric &&
                                         type->Kind() != TypeKind::kUnsignedNumeric)) {
      continue;
    }
    ++types;
    const bool is_signed = type->Kind() == TypeKind::kSignedNumeric;
    const auto step = internal::Rational(type->ISNVType_ACoef(), 1) *
                      internal::Rational::PowerOfTen(type->ISNVType_BCoef());
    const int decimals = std::max(0, -type->ISNVType_BCoef());
    int failures = 0;
    for (int32_t bits = 0; bits < 65536 && failures < 3; ++bits) {
      const int32_t raw = is_signed && bits > 32767 ? bits - 65536 : bits;
      const std::string value =
          (step * (internal::Rational(raw, 1) + internal::Rational(type->ISNVType_CCoef(), 1)))
              .Text(decimals, '.');
      const std::string shown = converter->ToDisplayUnits(id, value);
      const std::string back = converter->FromDisplayUnits(id, shown);
      char expected[5];
      std::snprintf(expected, sizeof expected, "%04X", static_cast<unsigned>(bits));
      if (SNVTDataConversion::TypedValueToRaw(back, *type) != expected) {
        ADD_FAILURE() << id << " raw " << expected << ": " << value << " -> " << shown << " -> "
                      << back;
        ++failures;
      }
    }
  }
  EXPECT_GE(types, 10);
}

// Each exact factor the unit data uses agrees with the NIST figure it was checked against.
TEST(CUnitConverterTest, ExactFactorsAgreeWithTheNistFigures) {
  std::ifstream in(KOLVANE_SOURCE_DIR "/data/us-units.json");
  const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  int rows = 0;
  for (size_t at = text.find("\"factor\":"); at != std::string::npos;
       at = text.find("\"factor\":", at + 1)) {
    const double nist = std::stod(text.substr(at + 9));
    const size_t exact_at = text.find("\"exact_factor\": \"", at) + 17;
    const std::string exact = text.substr(exact_at, text.find('"', exact_at) - exact_at);
    const auto factor = internal::Rational::FromFraction(exact);
    ASSERT_TRUE(factor) << exact;
    EXPECT_NEAR(factor->ToDouble() / nist, 1.0, 2e-9) << exact;
    ++rows;
  }
  EXPECT_EQ(rows, 30);
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

namespace kolvane::test {
namespace {

// A float shown in US units and typed back is the same single-precision value: every float type
// with a US unit, over values of every magnitude.
TEST(CUnitConverterTest, FloatsShownInUsUnitsComeBackTheSame) {
  ScopedCatalogue catalogue(kBundledCatalogue, true);
  ScopedDecimalSeparator point(".");
  ScopedUsUnits us;
  const auto converter = Converter();
  std::mt19937 random(5);
  std::uniform_real_distribution<double> exponent(-6.0, 6.0);
  int checked = 0;
  for (const std::string& id : internal::SnvtIdentifiers()) {
    if (CSNVTType::Shared(id)->Kind() != TypeKind::kFloat) continue;
    if (converter->DisplayUnits(id) == CSNVTType::Shared(id)->ISNVType_Units()) continue;
    for (int i = 0; i < 200; ++i) {
      const auto value = static_cast<float>((i % 2 ? -1 : 1) * std::pow(10.0, exponent(random)));
      char text[32];
      std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value));
      const std::string shown = converter->ToDisplayUnits(id, text);
      const std::string back = converter->FromDisplayUnits(id, shown);
      EXPECT_EQ(std::strtof(back.c_str(), nullptr), value) << id << " " << text << " shown " << shown << " back " << back;
      ++checked;
    }
  }
  EXPECT_GT(checked, 1000);
}

}  // namespace
}  // namespace kolvane::test
