#include "foundation/Globals.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

using Globals::GetIniValue;

TEST(GlobalsTest, GetIniValueReadsValuesAsTheyStand) {
  test::TempFolder folder;
  const std::string long300(300, 'x');
  std::string digits;
  for (int i = 0; i < 5000; ++i) digits += static_cast<char>('0' + i % 10);
  const std::string file = folder.Write(
      "settings.ini",
      "; leading comment\n"
      "[Globals]\n"
      "Plain=value\n"
      "Blanks=  word  \n"
      "Comment=  12  / trailing comment\n"
      "NotFound=Not Found\n"
      "Quoted=\"quoted value\"\n"
      "Single='x'\n"
      "Half=\"open\n"
      "Semi=a;b ; c\n"
      "Colon: 5\n"
      "ColonEq=a:b\n"
      "Empty=\n"
      "Crlf=abc\r\n"
      "Long=" + long300 + "\n"
      "LongSlash=" + long300 + " / c\n"
      "Max=" + digits.substr(0, 4095) + "\n"
      "Over=" + digits.substr(0, 4096) + "\n"
      "Huge=" + digits + "\n"
      "After=still found\n"
      "[OTHER]\n"
      "plain=other\n");
  const struct {
    const char* section;
    const char* key;
    std::string value;
  } cases[] = {{"Globals", "Plain", "value"},
               {"GLOBALS", "pLAIN", "value"},
               {"Globals", "Blanks", "  word  "},
               {"Globals", "Comment", "12"},
               {"Globals", "NotFound", ""},
               {"Globals", "Quoted", "quoted value"},
               {"Globals", "Single", "x"},
               {"Globals", "Half", "\"open"},
               {"Globals", "Semi", "a;b ; c"},
               {"Globals", "Colon", ""},
               {"Globals", "ColonEq", "a:b"},
               {"Globals", "Empty", ""},
               {"Globals", "Crlf", "abc"},
               {"Globals", "Long", long300},
               {"Globals", "LongSlash", long300},
               {"Globals", "Max", digits.substr(0, 4095)},
               {"Globals", "Over", digits.substr(0, 4095)},
               {"Globals", "Huge", digits.substr(0, 4095)},
               {"Globals", "After", "still found"},
               {"Globals", "Missing", ""},
               {"Other", "Plain", "other"},
               {"Missing", "Plain", ""}};
  for (const auto& c : cases) {
    EXPECT_EQ(GetIniValue(file, c.section, c.key), c.value) << c.section << "/" << c.key;
  }
  EXPECT_EQ(GetIniValue(folder.path() + "/absent.ini", "Globals", "Plain"), "");
}

TEST(GlobalsTest, ReadSettingsTakesTheLeadingNumberOfCpSisdRequired) {
  test::TempFolder folder;
  test::ScopedComponentFolder component(folder.path());
  const struct {
    const char* content;  // nullptr: no settings file
    bool required;
  } cases[] = {{"[Globals]\nCP_SISD_Required=1 / comment\n", true},
               {"[Globals]\nOther=1\n", false},
               {"[globals]\ncp_sisd_required= -2abc\n", true},
               {nullptr, false},
               {"[Globals]\nCP_SISD_Required=7\n", true},
               {"[Globals]\nCP_SISD_Required=0\n", false},
               {"[Globals]\nCP_SISD_Required=yes\n", false},
               {"[Globals]\nCP_SISD_Required=1e999\n", false},
               {"[Other]\nCP_SISD_Required=1\n", false}};
  for (const auto& c : cases) {
    std::filesystem::remove(folder.path() + "/profile.ini");
    if (c.content) folder.Write("profile.ini", c.content);
    Globals::CpSisdRequired = !c.required;
    Globals::ReadSettings();
    EXPECT_EQ(Globals::CpSisdRequired, c.required) << (c.content ? c.content : "no file");
    EXPECT_EQ(Globals::IniFilePath, folder.path() + "/profile.ini");
  }
}

TEST(GlobalsTest, GetTokenSplitsAtEverySeparatorHit) {
  const struct {
    const char* text;
    int32_t index;
    const char* separator;
    const char* token;
  } cases[] = {{"a|b|c", 0, "|", "a"}, {"a|b|c", 1, "|", "b"},   {"a|b|c", 2, "|", "c"},
               {"a|b|c", 3, "|", ""},  {"a|b|c", -1, "|", ""},  {"abc", 0, "|", ""},
               {"abc", 1, "|", ""},    {"", 0, "|", ""},        {"", 1, "|", ""},
               {"a||b", 1, "|", ""},   {"a||b", 2, "|", "b"},   {"|a", 0, "|", ""},
               {"a::b::c", 0, "::", "a"}, {"a::b::c", 1, "::", ":b"}, {"a::b::c", 2, "::", ":c"}};
  for (const auto& c : cases) {
    EXPECT_EQ(Globals::GetToken(c.text, c.index, c.separator), c.token)
        << c.text << " [" << c.index << "] " << c.separator;
  }
}

TEST(GlobalsTest, ByteToHexClampsHighValuesInTheCallersVariable) {
  const struct {
    int32_t in;
    const char* hex;
    int32_t after;
  } cases[] = {{0, "00", 0},       {10, "0A", 10},    {16, "10", 16},  {255, "FF", 255},
               {256, "FF", 255},   {300, "FF", 255},  {-1, "FF", -1},  {-2, "FE", -2},
               {-256, "00", -256}, {INT32_MAX, "FF", 255}};
  for (const auto& c : cases) {
    int32_t value = c.in;
    EXPECT_EQ(Globals::ByteToHex(value), c.hex) << c.in;
    EXPECT_EQ(value, c.after) << c.in;
  }
}

TEST(GlobalsTest, DetectDecimalSeparatorFollowsTheEnvironmentsLocale) {
  ASSERT_TRUE(test::HasDecimalCommaLocale()) << test::kMissingLocale;
  {
    test::ScopedEnv env("LC_ALL", "de_DE.UTF-8");
    Globals::DetectDecimalSeparator();
    EXPECT_EQ(Globals::DecimalSeparator, ",");
    EXPECT_EQ(Globals::AlternateSeparator, ".");
  }
  test::ScopedEnv env("LC_ALL", "C");
  Globals::DetectDecimalSeparator();
  EXPECT_EQ(Globals::DecimalSeparator, ".");
  EXPECT_EQ(Globals::AlternateSeparator, ",");
}

}  // namespace
}  // namespace kolvane
