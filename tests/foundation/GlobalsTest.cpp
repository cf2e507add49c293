#include "foundation/Globals.h"

#include <locale>

#include "../TestSupport.h"

namespace kolvane {
namespace {

TEST(GlobalsTest, GetIniValueReadsValuesAsTheyStand) {
  test::TempFolder folder;
  std::string digits;
  for (int i = 0; i < 4096; ++i) digits += static_cast<char>('0' + i % 10);
  const std::string x300(300, 'x'), d4095 = digits.substr(0, 4095);
  // clang-format off
  const std::string file = folder.Write("settings.ini",
      "; comment\n[Globals]\nPlain=value\nBlanks=  word  \nComment=  12  / c\n"
      "NotFound=Not Found\nQuoted=\"a b\"\nSingle='x'\nHalf=\"open\nSemi=a;b ; c\n"
      "Colon: 5\nOdd:name=5\nPlain=later\nCrlf=abc\r\nLong=" + x300 + " / c\n"
      "Max=" + d4095 + "\nOver=" + digits + "\nAfter=found\n[ OTHER ]\nplain=other\n"
      "  Spaced\t =x\n");
  const std::tuple<const char*, const char*, std::string> cases[] = {
      {"GLOBALS", "pLAIN", "value"}, {"Globals", "Blanks", "  word  "}, {"Globals", "Comment", "12"},
      {"Globals", "NotFound", ""},   {"Globals", "Quoted", "a b"},      {"Globals", "Single", "x"},
      {"Globals", "Half", "\"open"}, {"Globals", "Semi", "a;b ; c"},    {"Globals", "Colon", ""},
      {"Globals", "Odd", ""},        {"Globals", "Odd:name", "5"},      {"Globals", "Crlf", "abc"},
      {"Globals", "Long", x300},     {"Globals", "Max", d4095},         {"Globals", "Over", d4095},
      {"Globals", "After", "found"}, {"Globals", "Missing", ""},        {"Other", "Plain", "other"},
      {"Other", "spaced", "x"},      {"Missing", "Plain", ""}};
  // clang-format on
  for (const auto& [section, key, value] : cases) {
    EXPECT_EQ(Globals::GetIniValue(file, section, key), value) << section << "/" << key;
  }
  EXPECT_EQ(Globals::GetIniValue(folder.path + "/absent.ini", "Globals", "Plain"), "");
}

TEST(GlobalsTest, ReadSettingsTakesTheLeadingNumberOfCpSisdRequired) {
  test::TempFolder folder;
  SetComponentFolder(folder.path);
  const std::string key = "[globals]\ncp_sisd_required=";
  const std::pair<std::optional<std::string>, bool> cases[] = {
      // nullopt: no settings file
      {key + "1 / comment", true}, {key + "0", false},    {key + " -2abc", true},
      {std::nullopt, false},       {key + "7", true},     {"[Globals]\nOther=1", false},
      {key + "yes", false},        {key + "1e999", false}};
  for (const auto& [content, required] : cases) {
    std::filesystem::remove(folder.path + "/profile.ini");
    if (content) folder.Write("profile.ini", *content);
    Globals::CpSisdRequired = !required;
    Globals::ReadSettings();
    EXPECT_EQ(Globals::CpSisdRequired, required) << content.value_or("no file");
    EXPECT_EQ(Globals::IniFilePath, folder.path + "/profile.ini");
  }
  SetComponentFolder("");
}

TEST(GlobalsTest, GetTokenAndByteToHex) {
  // clang-format off
  const std::tuple<const char*, int32_t, const char*, const char*> tokens[] = {
      {"a|b|c", 0, "|", "a"}, {"a|b|c", 2, "|", "c"}, {"a|b|c", 3, "|", ""}, {"abc", 0, "|", ""},
      {"", 1, "|", ""},       {"a||b", 1, "|", ""},   {"a||b", 2, "|", "b"},
      {"a::b::c", 0, "::", "a"}, {"a::b::c", 1, "::", ":b"}, {"a:::b", 2, "::", ":b"}};
  // clang-format on
  for (const auto& [text, index, separator, token] : tokens) {
    EXPECT_EQ(Globals::GetToken(text, index, separator), token) << text << " " << index;
  }
  const std::tuple<int32_t, const char*, int32_t> bytes[] = {
      {0, "00", 0},     {10, "0A", 10}, {255, "FF", 255}, {256, "FF", 255},
      {300, "FF", 255}, {-1, "FF", -1}, {-2, "FE", -2},   {-256, "00", -256}};
  for (const auto& [in, hex, after] : bytes) {
    int32_t value = in;
    EXPECT_EQ(Globals::ByteToHex(value), hex) << in;
    EXPECT_EQ(value, after) << in;
  }
}

TEST(GlobalsTest, DetectDecimalSeparatorFollowsTheEnvironmentsLocale) {
  ASSERT_NO_THROW(std::locale("de_DE.UTF-8")) << test::kMissingLocale;
  for (const auto& [locale, decimal, alternate] :
       {std::tuple{"de_DE.UTF-8", ",", "."}, std::tuple{"C", ".", ","}}) {
    test::ScopedEnv env("LC_ALL", locale);
    Globals::DetectDecimalSeparator();
    EXPECT_EQ(Globals::DecimalSeparator, decimal) << locale;
    EXPECT_EQ(Globals::AlternateSeparator, alternate) << locale;
  }
}

}  // namespace
}  // namespace kolvane
