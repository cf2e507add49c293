#include "conversion/SNVTDataConversion.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

using namespace SNVTDataConversion;

constexpr char kS[] = "SignedNumeric";
constexpr char kU[] = "UnsignedNumeric";

struct RawCase {
  const char* value;
  const char* kind;
  int32_t length;
  int16_t a, b, c;
  const char* hex;
};

void ExpectRaw(const std::vector<RawCase>& cases, const std::string& separator) {
  test::ScopedDecimalSeparator decimal(separator);
  for (const auto& [value, kind, length, a, b, c, hex] : cases) {
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
    test::ScopedDecimalSeparator decimal(separator);
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

// 50.25 and 50.75 scale to 100.5 and 101.5 (ties to even); 70000 has high byte 273 (clamped)
// and low byte 112; -1 and -257 stop at their negative low byte; 4-byte values pass through
// single precision and 7 digits (16777217 as 1.677722E+07, 2147483647 as 2.147484E+09).
TEST(SNVTDataConversionTest, IntegersTakeTheirBytesByLength) {
  // clang-format off
  ExpectRaw({{"0", kU, 1, 1, 0, 0, "00"}, {"255", kU, 1, 1, 0, 0, "FF"},
             {"256", kU, 1, 1, 0, 0, "FF"}, {"128", kU, 1, 1, 0, 0, "80"},
             {"-1", kU, 1, 1, 0, 0, "FF"}, {"-129", kS, 1, 1, 0, 0, "7F"},
             {"-128", kS, 1, 1, 0, 0, "80"}, {"50.25", kU, 1, 5, -1, 0, "64"},
             {"50.75", kU, 1, 5, -1, 0, "66"}, {"-4000", kS, 2, 1, 0, 0, "F060"},
             {"32767", kS, 2, 1, 0, 0, "7FFF"}, {"-32768", kS, 2, 1, 0, 0, "8000"},
             {"32768", kS, 2, 1, 0, 0, ""}, {"-32769", kS, 2, 1, 0, 0, ""},
             {"65535", kU, 2, 1, 0, 0, "FFFF"}, {"65536", kU, 2, 1, 0, 0, "FF00"},
             {"70000", kU, 2, 1, 0, 0, "FF70"}, {"-1", kU, 2, 1, 0, 0, "00"},
             {"-256", kU, 2, 1, 0, 0, "FF00"}, {"-257", kU, 2, 1, 0, 0, "FF"},
             {"-2", kS, 4, 1, 0, 0, "FFFFFFFE"}, {"2000000000", kU, 4, 1, 0, 0, "77359400"},
             {"16777217", kU, 4, 1, 0, 0, "01000004"}, {"2147483000", kU, 4, 1, 0, 0, "7FFFFD78"},
             {"2147483647", kU, 4, 1, 0, 0, ""}, {"3000000000", kU, 4, 1, 0, 0, ""},
             {"5", kU, 3, 1, 0, 0, ""}, {"5", kS, 0, 1, 0, 0, ""},
             {"", kU, 2, 1, -1, -2740, "0AB4"}, {"7", kS, 2, 0, 0, 5, "0000"},
             {"Invalid", kS, 1, 1, 0, 0, "7F"}, {"Invalid", kS, 2, 1, 0, 0, "7FFF"},
             {"Invalid", kS, 4, 1, 0, 0, "7FFF"}, {"Invalid", kU, 1, 1, 0, 0, "FF"},
             {"Invalid", kU, 2, 1, 0, 0, "FFFF"}, {"Invalid", kU, 4, 1, 0, 0, "FFFF"},
             {"12abc", kU, 1, 1, 0, 0, "0C"}, {" 7", kU, 1, 1, 0, 0, "07"},
             {"abc", kS, 2, 1, 0, 0, "0000"},
             {"1.234,5", kS, 2, 1, -2, 0, "007B"}},
            ".");
  // clang-format on
}

// A text is not localised: "1.5" stays "1.5" with either separator.
TEST(SNVTDataConversionTest, ScaledValuesReadEitherSeparator) {
  // clang-format off
  const std::vector<RawCase> cases = {
      {"21.5", kS, 2, 1, -2, 0, "0866"}, {"21,5", kS, 2, 1, -2, 0, "0866"},
      {"-40", kS, 2, 1, -2, 0, "F060"}, {"327.67", kS, 2, 1, -2, 0, "7FFF"},
      {"327,67", kS, 2, 1, -2, 0, "7FFF"}, {"-327.68", kS, 2, 1, -2, 0, "8000"},
      {"-327,68", kS, 2, 1, -2, 0, "8000"}, {"327.68", kS, 2, 1, -2, 0, ""},
      {"327,68", kS, 2, 1, -2, 0, ""}, {"26", kU, 2, 1, -1, -2740, "0BB8"},
      {"26.5", kU, 2, 1, -1, -2740, "0BBD"}, {"100", kS, 2, 5, -3, 0, "4E20"},
      {"-0.5", kS, 2, 5, -3, 0, "FF9C"}, {"100", kU, 1, 5, -1, 0, "C8"},
      {"50,25", kU, 1, 5, -1, 0, "64"}, {"50.75", kU, 1, 5, -1, 0, "66"},
      {"16777217", kU, 4, 1, 0, 0, "01000004"}, {"21.5", "Float", 4, 0, 0, 0, "41AC0000"},
      {"21,5", "Float", 4, 0, 0, 0, "41AC0000"}, {"0,1", "Float", 4, 0, 0, 0, "3DCCCCCD"},
      {"-1", "Float", 4, 0, 0, 0, "BF800000"}, {"", "Float", 4, 0, 0, 0, "7F810000"},
      {"Invalid", "Float", 4, 0, 0, 0, "7F810000"}, {"1e39", "Float", 4, 0, 0, 0, ""},
      {"-1e39", "Float", 4, 0, 0, 0, ""}, {"1.5", "Textual", 4, 0, 0, 0, "312E3500"}};
  // clang-format on
  ExpectRaw(cases, ".");
  ExpectRaw(cases, ",");
  // With "," the whole text must be a number.
  ExpectRaw({{"abc", kS, 2, 1, 0, 0, ""},
             {"12abc", kU, 1, 1, 0, 0, ""},
             {"1.234,5", kS, 2, 1, -2, 0, ""}},
            ",");
}

// A value beyond single range has no raw form, also when it is beyond double range.
// A float text that cannot be read at all (beyond double range) counts as 0, unlike one that
// reads but does not fit single precision.
TEST(SNVTDataConversionTest, UnreadableFloatsCountAsZero) {
  ExpectRaw({{"1e400", "Float", 4, 0, 0, 0, "00000000"},
             {"-1e400", "Float", 4, 0, 0, 0, "00000000"},
             {"1e39", "Float", 4, 0, 0, 0, ""}},
            ".");
  ExpectRaw({{"1e400", "Float", 4, 0, 0, 0, "00000000"}}, ",");
}

TEST(SNVTDataConversionTest, TextsAreBlankPaddedWindows1252AndEndInZero) {
  ExpectRaw({{"AB", "Textual", 5, 0, 0, 0, "4142202000"},
             {"ABCDEFG", "Textual", 5, 0, 0, 0, "4142434400"},
             {"é€", "Textual", 3, 0, 0, 0, "E98000"},
             {"é€x", "Textual", 3, 0, 0, 0, "E98000"},
             {"日", "Textual", 3, 0, 0, 0, "3F2000"},
             {"", "Textual", 3, 0, 0, 0, "202000"},
             {"X", "Textual", 1, 0, 0, 0, "00"},
             {"X", "Textual", 0, 0, 0, 0, ""}},
            ".");
}

TEST(SNVTDataConversionTest, EnumerationsTakeTheUtilitysStateNumber) {
  test::ScopedCatalogue catalogue(KOLVANE_SOURCE_DIR "/examples/snvts.xml", true);
  const std::vector<RawCase> cases = {{"OC_UNOCCUPIED", "Enum", 1, 0, 0, 0, "01"},
                                      {"oc_unoccupied", "Enum", 1, 0, 0, 0, "01"},
                                      {"OC_NUL", "Enum", 1, 0, 0, 0, "FF"},
                                      {"255", "Enum", 1, 0, 0, 0, "FF"},
                                      {"Invalid", "Enum", 1, 0, 0, 0, "FF"},
                                      {"-1", "Enum", 1, 0, 0, 0, "FF"},
                                      {"nope", "Enum", 1, 0, 0, 0, ""}};
  ExpectRaw(cases, ".");
  {
    test::ScopedComponent none("Moraface.Utility", {});
    EXPECT_EQ(ValueToRaw("OC_UNOCCUPIED", "Enum", 1, 0, 0, 0), "");
  }
  EXPECT_EQ(ValueToRaw("OC_UNOCCUPIED", "Enum", 1, 0, 0, 0), "01");  // built-in restored
}

TEST(SNVTDataConversionTest, BitFieldsAreUnscaledIntegers) {
  ExpectRaw({{"32768", "Bitfield", 2, 1, 0, 0, "8000"},
             {"10", "Bitfield", 1, 5, -1, 3, "0A"},
             {"2147483647", "Bitfield", 4, 1, 0, 0, "7FFFFFFF"},
             {"2147483648", "Bitfield", 4, 1, 0, 0, ""},
             {"1", "Bitfield", 8, 1, 0, 0, ""},
             {"1", "Struct", 2, 1, 0, 0, ""},
             {"1", "Bogus", 2, 1, 0, 0, ""}},
            ".");
}

TEST(SNVTDataConversionTest, NumberToHexBytesAndSwapBytePairs) {
  test::ScopedDecimalSeparator decimal(".");
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
}  // namespace kolvane
