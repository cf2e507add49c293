#include "conversion/SNVTDataConversion.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

using namespace SNVTDataConversion;

constexpr char kS[] = "SignedNumeric";
constexpr char kU[] = "UnsignedNumeric";

// A value, its kind and length in bytes, the raw text expected and the coefficients A, B, C.
struct RawCase {
  const char* value;
  const char* kind;
  int32_t length;
  const char* hex;
  int16_t a = 1, b = 0, c = 0;
};

void ExpectRaw(const std::vector<RawCase>& cases, const std::string& separator) {
  ScopedDecimalSeparator decimal(separator);
  for (const auto& [value, kind, length, hex, a, b, c] : cases) {
    EXPECT_EQ(ValueToRaw(value, kind, length, a, b, c), hex)
        << '"' << value << "\" " << kind << " " << length << " " << a << "," << b << "," << c
        << " with \"" << separator << '"';
  }
}

TEST(SNVTDataConversionTest, TheFirstPointOrElseTheFirstCommaBecomesTheSeparator) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {".", "1,5", "1.5"},     {".", "1.234,5", "1.234,5"}, {".", "1,234.5", "1,234.5"},
      {".", "1,2,3", "1.2,3"}, {".", "12", "12"},           {".", "", ""},
      {",", "12.5", "12,5"},   {",", "12,5", "12,5"},       {",", "1,234.5", "1,234,5"},
      {",", "1.2.3", "1,2.3"}, {",", "abc", "abc"}};
  for (const auto& [separator, in, out] : cases) {
    ScopedDecimalSeparator decimal(separator);
    EXPECT_EQ(NormalizeDecimal(in), out) << in << " with " << separator;
    EXPECT_EQ(LocalizeNumber(in), out) << in << " with " << separator;
  }
}

TEST(SNVTDataConversionTest, EnumStateNameComparesTheWholeValueText) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"1", "0,OFF;1,ON;", "ON"},    {"0", "0,OFF;1,ON;", "OFF"},    {"2", "0,OFF;1,ON;", ""},
      {"OFF", "0,OFF;1,ON;", ""},    {"", "0,OFF;1,ON;", ""},        {"1", "10,TEN;1,ONE;", "ONE"},
      {"1", "0,OFF;1,ON", ""},       {"0", "0,OFF;1,ON", "OFF"},     {"A", "a,LOW;A,HIGH;", "HIGH"},
      {"a", "a,LOW;A,HIGH;", "LOW"}, {"-1", "-1,NUL;0,OFF;", "NUL"}, {"0", "", ""}};
  for (const auto& [value, description, name] : cases) {
    EXPECT_EQ(EnumStateName(value, description), name) << value << " in " << description;
  }
}

// A value names a state by number, by name or in the dialog's form, whose number and name must
// be one entry: "(1,OFF)" names nothing in "0,OFF;1,ON;". As for EnumStateName, an entry
// without its ";" names nothing.
TEST(SNVTDataConversionTest, StateNameOfEveryFormOfAState) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"1", "0,OFF;1,ON;", "ON"},          {"ON", "0,OFF;1,ON;", "ON"},
      {"(1,ON)", "0,OFF;1,ON;", "ON"},     {"(1,OFF)", "0,OFF;1,ON;", ""},
      {"(9,FOO)", "0,OFF;1,ON;", ""},      {"2", "0,OFF;1,ON;", ""},
      {"", "0,OFF;1,ON;", ""},             {"ON", "0,OFF;1,ON", ""},
      {"(1,ON)", "0,OFF;1,ON", ""},      {"on", "0,OFF;1,ON;", ""},
      {"0", "garbage;0,OFF;", "OFF"},      {"0", "", ""}};
  for (const auto& [value, description, name] : cases) {
    EXPECT_EQ(StateNameOf(value, description), name) << value << " in " << description;
  }
}

// A value text of a catalogue type goes to its bytes with nothing clamped: what has no bytes
// says why. A type the catalogue lacks has no kind and no bytes.
TEST(SNVTDataConversionTest, CheckedRawBytesOfATypesValueText) {
  ScopedCatalogue catalogue(kBundledCatalogue, true);
  catalogue.HandIn();
  const auto temp = CatalogueType("temp_p");
  ASSERT_EQ(temp->ISNVType_GenType(), "SignedNumeric");
  EXPECT_EQ(CheckedRawBytes("21.5", *temp).raw, "0866");
  EXPECT_EQ(CheckedRawBytes("-273.17", *temp).raw, "954B");
  const RawBytes high = CheckedRawBytes("400", *temp);
  EXPECT_TRUE(high.raw.empty());
  EXPECT_FALSE(high.problem.empty());
  EXPECT_EQ(CheckedRawBytes("HVT_VAV", *CatalogueType("hvac_type")).raw, "02");
  const auto missing = CatalogueType("no_such_type");
  EXPECT_EQ(missing->ISNVType_ID(), "no_such_type");
  EXPECT_EQ(missing->ISNVType_GenType(), "");
  EXPECT_FALSE(CheckedRawBytes("1", *missing).problem.empty());
}

// 70000 has high byte 273 (clamped) and low byte 112; -1 and -257 stop at their negative low
// byte; "Invalid" of 4 bytes is written as of 2. Four bytes hold every 32-bit value of their kind
// exactly and nothing beyond it. With "." a text is read up to what is no number.
TEST(SNVTDataConversionTest, IntegersTakeTheirBytesByLength) {
  // clang-format off
  ExpectRaw({{"0", kU, 1, "00"}, {"255", kU, 1, "FF"}, {"256", kU, 1, "FF"}, {"128", kU, 1, "80"},
             {"-1", kU, 1, "FF"}, {"-129", kS, 1, "7F"}, {"-128", kS, 1, "80"},
             {"-4000", kS, 2, "F060"}, {"32767", kS, 2, "7FFF"}, {"-32768", kS, 2, "8000"},
             {"32768", kS, 2, ""}, {"-32769", kS, 2, ""}, {"65535", kU, 2, "FFFF"},
             {"65536", kU, 2, "FF00"}, {"70000", kU, 2, "FF70"}, {"-1", kU, 2, "00"},
             {"-256", kU, 2, "FF00"}, {"-257", kU, 2, "FF"}, {"-2", kS, 4, "FFFFFFFE"},
             {"2000000000", kU, 4, "77359400"}, {"2147483000", kU, 4, "7FFFFD78"},
             {"2147483647", kU, 4, "7FFFFFFF"}, {"3000000000", kU, 4, "B2D05E00"},
             {"4294967295", kU, 4, "FFFFFFFF"}, {"4294967296", kU, 4, ""}, {"-1", kU, 4, ""},
             {"2147483647", kS, 4, "7FFFFFFF"}, {"2147483648", kS, 4, ""},
             {"-2147483648", kS, 4, "80000000"}, {"16777217", kS, 4, "01000001"},
             {"123456789.4", kS, 4, "075BCD15"}, {"2.5", kS, 4, "00000002"},
             {"3.5", kS, 4, "00000004"}, {"-2.5", kS, 4, "FFFFFFFE"}, {"5", kU, 3, ""},
             {"5", kS, 0, ""}, {"", kU, 2, "0AB4", 1, -1, -2740}, {"7", kS, 2, "0000", 0, 0, 5},
             {"Invalid", kS, 1, "7F"}, {"Invalid", kS, 2, "7FFF"}, {"Invalid", kS, 4, "7FFF"},
             {"Invalid", kU, 1, "FF"}, {"Invalid", kU, 2, "FFFF"}, {"Invalid", kU, 4, "FFFF"},
             {"12abc", kU, 1, "0C"}, {" 7", kU, 1, "07"}, {"abc", kS, 2, "0000"},
             {"1.234,5", kS, 2, "007B", 1, -2}},
            ".");
  // clang-format on
}

// 50.25 and 50.75 scale to 100.5 and 101.5 (ties to even); scaling is exact at every width. A
// float text that cannot be read at all
// (beyond double range) counts as 0, unlike one that reads but does not fit single precision.
// Texts are not localised, blank padded, Windows-1252 ("?" for what it lacks) and end in zero.
// Bit fields are unscaled integers.
TEST(SNVTDataConversionTest, OtherKindsReadEitherSeparator) {
  // clang-format off
  const std::vector<RawCase> cases = {
      {"21.5", kS, 2, "0866", 1, -2}, {"21,5", kS, 2, "0866", 1, -2}, {"-40", kS, 2, "F060", 1, -2},
      {"327.67", kS, 2, "7FFF", 1, -2}, {"327,67", kS, 2, "7FFF", 1, -2},
      {"-327.68", kS, 2, "8000", 1, -2}, {"-327,68", kS, 2, "8000", 1, -2},
      {"327.68", kS, 2, "", 1, -2}, {"327,68", kS, 2, "", 1, -2},
      {"26", kU, 2, "0BB8", 1, -1, -2740}, {"26.5", kU, 2, "0BBD", 1, -1, -2740},
      {"100", kS, 2, "4E20", 5, -3}, {"-0.5", kS, 2, "FF9C", 5, -3}, {"100", kU, 1, "C8", 5, -1},
      {"50,25", kU, 1, "64", 5, -1}, {"50.75", kU, 1, "66", 5, -1},
      {"16777217", kU, 4, "01000001"}, {"1234567.8", kU, 4, "00BC614E", 1, -1},
      {"-2147483.648", kS, 4, "80000000", 1, -3},
      {"21.5", "Float", 4, "41AC0000"}, {"21,5", "Float", 4, "41AC0000"},
      {"0,1", "Float", 4, "3DCCCCCD"}, {"-1", "Float", 4, "BF800000"},
      {"", "Float", 4, "7F810000"}, {"Invalid", "Float", 4, "7F810000"},
      {"1e39", "Float", 4, ""}, {"-1e39", "Float", 4, ""},
      {"1e400", "Float", 4, "00000000"}, {"-1e400", "Float", 4, "00000000"},
      {"1.5", "Textual", 4, "312E3500"}, {"AB", "Textual", 5, "4142202000"},
      {"ABCDEFG", "Textual", 5, "4142434400"}, {"é€", "Textual", 3, "E98000"},
      {"é€x", "Textual", 3, "E98000"}, {"日", "Textual", 3, "3F2000"},
      {"", "Textual", 3, "202000"}, {"X", "Textual", 1, "00"}, {"X", "Textual", 0, ""},
      {"32768", "Bitfield", 2, "8000"}, {"10", "Bitfield", 1, "0A", 5, -1, 3},
      {"2147483647", "Bitfield", 4, "7FFFFFFF"}, {"2147483648", "Bitfield", 4, "80000000"},
      {"4294967296", "Bitfield", 4, ""}, {"1", "Bitfield", 8, "0000000000000001"},
      {"18446744073709551615", "Bitfield", 8, "FFFFFFFFFFFFFFFF"},
      {"18446744073709551616", "Bitfield", 8, ""}, {"1", kU, 8, ""}, {"1", "Struct", 2, ""}, {"1", "Bogus", 2, ""}};
  // clang-format on
  ExpectRaw(cases, ".");
  ExpectRaw(cases, ",");
  // With "," the whole text must be a number.
  ExpectRaw({{"abc", kS, 2, ""}, {"12abc", kU, 1, ""}, {"1.234,5", kS, 2, "", 1, -2}}, ",");
}

TEST(SNVTDataConversionTest, EnumerationsTakeTheUtilitysStateNumber) {
  ScopedCatalogue catalogue(kBundledCatalogue, true);
  ExpectRaw({{"OC_UNOCCUPIED", "Enum", 1, "01"},
             {"oc_unoccupied", "Enum", 1, "01"},
             {"OC_NUL", "Enum", 1, "FF"},
             {"255", "Enum", 1, "FF"},
             {"Invalid", "Enum", 1, "FF"},
             {"-1", "Enum", 1, "FF"},
             {"nope", "Enum", 1, ""}},
            ".");
  {
    ScopedComponent none("Moraface.Utility", {});
    EXPECT_EQ(ValueToRaw("OC_UNOCCUPIED", "Enum", 1, 0, 0, 0), "");
  }
  EXPECT_EQ(ValueToRaw("OC_UNOCCUPIED", "Enum", 1, 0, 0, 0), "01");  // built-in restored
}

TEST(SNVTDataConversionTest, NumberToHexBytesAndSwapBytePairs) {
  ScopedDecimalSeparator decimal(".");
  const std::tuple<const char*, int32_t, const char*, const char*> cases[] = {
      {"300", 1, kU, "FF"},         {"1.5", 1, "Enum", "02"}, {"2.5", 1, "Enum", "02"},
      {"x", 2, kU, "0000"},         {"5", 3, kU, ""},         {"1.5", 4, "Float", "3FC00000"},
      {"AB", 0, "Textual", "4142"}, {"1", 1, "Struct", ""},   {"1", 2, "Struct", ""},
      {"1", 4, "Struct", ""}};
  for (const auto& [text, count, kind, hex] : cases) {
    EXPECT_EQ(NumberToHexBytes(text, count, kind), hex) << text << " " << count << " " << kind;
  }

  std::array<uint8_t, 32> source{};
  std::array<uint8_t, 32> destination{};
  for (size_t i = 0; i < source.size(); ++i) source[i] = static_cast<uint8_t>(i + 1);
  destination.fill(0xEE);
  SwapBytePairs(source, destination);
  for (size_t i = 0; i < source.size(); ++i) EXPECT_EQ(destination[i], (i ^ 1) + 1) << i;
}

}  // namespace
}  // namespace kolvane::test
