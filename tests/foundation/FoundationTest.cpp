#include "foundation/ContinueOnError.h"
#include "foundation/Globals.h"
#include "foundation/KeyedCollection.h"
#include "foundation/Numbers.h"
#include "foundation/mXML.h"

#include <clocale>
#include <limits>
#include <locale>
#include <optional>

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

TEST(ContinueOnErrorTest, ReturnsTheErrorNumberAndKeepsEarlierChanges) {
  int steps = 0;
  EXPECT_EQ(ContinueOnError([&] { ++steps; }), 0);
  EXPECT_EQ(ContinueOnError([&] { ++steps, RaiseError(ErrorNumber::kDuplicateKey), ++steps; }),
            457);
  EXPECT_EQ(steps, 2);
  EXPECT_EQ(ContinueOnError([] { throw std::runtime_error("not ours"); }), 5);
  EXPECT_EQ(ContinueOnError([] { throw 6; }), 5);
}

TEST(KeyedCollectionTest, KeysIgnoreCaseAndErrorsLeaveItUnchanged) {
  KeyedCollection<int> items;
  items.Add("Beta", 2);
  items.Add("alpha", 1);
  EXPECT_EQ(items.ItemAt(1), 2);
  EXPECT_EQ(items.ItemAt(2), 1);
  EXPECT_EQ(items.Item("BETA"), 2);
  EXPECT_EQ(ErrorNumberOf([&] { items.Add("beta", 9); }), 457);
  EXPECT_EQ(ErrorNumberOf([&] { items.Item("gamma"); }), 5);
  EXPECT_EQ(ErrorNumberOf([&] { items.Remove("gamma"); }), 5);
  for (int32_t position : {0, 3, -1}) {
    EXPECT_EQ(ErrorNumberOf([&] { items.ItemAt(position); }), 9) << position;
    EXPECT_EQ(ErrorNumberOf([&] { items.RemoveAt(position); }), 9) << position;
  }
  EXPECT_EQ(items.Count(), 2);
  EXPECT_EQ(items.Item("beta"), 2);
}

TEST(KeyedCollectionTest, RemovingInTheMiddleKeepsLaterItemsReachable) {
  KeyedCollection<std::string> items;
  for (std::string key : {"a", "b", "c", "d", "e"}) items.Add(key, key + "!");
  items.Remove("B");
  items.RemoveAt(2);  // "c"
  ASSERT_EQ(items.Count(), 3);
  const std::string left[] = {"a", "d", "e"};
  for (int32_t position = 1; position <= 3; ++position) {
    EXPECT_EQ(items.ItemAt(position), left[position - 1] + "!");
    EXPECT_EQ(items.Item(left[position - 1]), left[position - 1] + "!");
  }
  EXPECT_EQ(items.Find("c"), nullptr);
  items.Add("b", "again");
  EXPECT_EQ(items.ItemAt(4), "again");
  EXPECT_EQ(items.Item("e"), "e!");
}

// Small collections are searched in place and large ones through an index: the answers must not
// depend on which, at any size, while the collection grows and shrinks across the change.
TEST(KeyedCollectionTest, LookupsAgreeAtEverySize) {
  KeyedCollection<int> items;
  std::vector<int> expected;  // values by position
  const auto check = [&](int size) {
    ASSERT_EQ(items.Count(), static_cast<int32_t>(expected.size())) << size;
    for (size_t i = 0; i < expected.size(); ++i) {
      const int value = expected[i];
      EXPECT_EQ(items.ItemAt(static_cast<int32_t>(i + 1)), value) << size;
      EXPECT_EQ(items.Item("KEY" + std::to_string(value)), value) << size;
    }
    EXPECT_EQ(items.Find("key-none"), nullptr) << size;
  };
  for (int value = 0; value < 40; ++value) {
    items.Add("Key" + std::to_string(value), value);
    expected.push_back(value);
    EXPECT_EQ(ErrorNumberOf([&] { items.Add("kEY" + std::to_string(value), -1); }), 457);
    check(value);
  }
  // Remove from the middle and the front until few are left, then grow again.
  while (expected.size() > 3) {
    const size_t slot = expected.size() / 2;
    if (expected.size() % 2 == 0) {
      items.Remove("key" + std::to_string(expected[slot]));
    } else {
      items.RemoveAt(1);
      expected.erase(expected.begin());
      check(static_cast<int>(expected.size()));
      continue;
    }
    expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(slot));
    check(static_cast<int>(expected.size()));
  }
  for (int value = 100; value < 120; ++value) {
    items.Add("key" + std::to_string(value), value);
    expected.push_back(value);
  }
  check(static_cast<int>(expected.size()));
}

TEST(HostServicesTest, HandlersAreReplacedAndHandedBack) {
  {
    MessageBoxRecorder recorder(7);
    EXPECT_EQ(MsgBox("Disk full", vbExclamation, "Save") + MsgBox("Plain"), 14);
    EXPECT_EQ(recorder.boxes, (Boxes{{"Disk full", 48, "Save"}, {"Plain", 0, ""}}));
    MessageBoxHandler handed_back = SetMessageBoxHandler(nullptr);  // the default again
    EXPECT_EQ(MsgBox("default"), vbOK);
    SetMessageBoxHandler(handed_back);
    EXPECT_EQ(MsgBox("recorded"), 7);
  }
  EXPECT_EQ(MsgBox("default handler"), vbOK);

  int calls = 0;
  YieldHandler previous = SetYieldHandler([&] { ++calls; });
  DoEvents();
  SetYieldHandler(previous)();  // handed back
  DoEvents();
  EXPECT_EQ(calls, 2);
}

TEST(HostServicesTest, CreateObjectFindsRegisteredFactoriesWithoutCase) {
  EXPECT_EQ(ErrorNumberOf([] { CreateObject("KolvaneTest.Thing"); }), 429);
  struct Thing final : IUnknown {};
  auto thing = std::make_shared<Thing>();
  RegisterClass("KolvaneTest.Thing", [thing] { return thing; });
  EXPECT_EQ(CreateObject("kolvanetest.THING"), thing);
  RegisterClass("KOLVANETEST.thing", nullptr);
  EXPECT_EQ(ErrorNumberOf([] { CreateObject("KolvaneTest.Thing"); }), 429);
  RegisterClass("KolvaneTest.Nothing", [] { return std::shared_ptr<IUnknown>(); });
  EXPECT_EQ(ErrorNumberOf([] { CreateObject("KolvaneTest.Nothing"); }), 429);
}

TEST(HostServicesTest, ComponentFolderCanBeOverriddenAndRestored) {
  const std::string library = ComponentFolder();
  EXPECT_TRUE(!library.empty() && std::filesystem::is_directory(library)) << library;
  SetComponentFolder("/tmp/elsewhere");
  EXPECT_EQ(ComponentFolder(), "/tmp/elsewhere");
  SetComponentFolder("");
  EXPECT_EQ(ComponentFolder(), library);
}

TEST(NumbersTest, LeadingNumberReadsThePrefixInEveryLocale) {
  ASSERT_NO_THROW(std::locale("de_DE.UTF-8")) << kMissingLocale;
  const std::pair<const char*, double> cases[] = {
      {"", 0},     {"abc", 0}, {"  12abc", 12}, {"\t-3.5e2x", -350},
      {"+.5", .5}, {"1e", 1},  {"2E+", 2},      {"1E3", 1e3},
      {".", 0},    {"-", 0},   {"1,5", 1},      {"12.5.3", 12.5},
      {"0x1A", 0}, {"e5", 0},  {"1e-999", 0}};
  const std::string saved = std::setlocale(LC_ALL, nullptr);
  for (const char* locale : {"C", "de_DE.UTF-8"}) {
    ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr) << locale;
    for (const auto& [text, value] : cases) EXPECT_EQ(LeadingNumber(text), value) << locale << text;
    EXPECT_EQ(ErrorNumberOf([] { LeadingNumber(" -1e999 x"); }), 6) << locale;
  }
  std::setlocale(LC_ALL, saved.c_str());
}

TEST(NumbersTest, ParseNumberWantsTheWholeText) {
  EXPECT_EQ(ParseNumber(" 12.5 "), 12.5);
  EXPECT_EQ(ParseNumber("-1e3"), -1000);
  for (const char* bad : {"", "  ", "12abc", "1,5", "1e", "1 2", "-", "0x10"}) {
    EXPECT_EQ(ErrorNumberOf([&] { ParseNumber(bad); }), 13) << bad;
  }
  EXPECT_EQ(ErrorNumberOf([] { ParseNumber("1e999"); }), 6);
}

// The first comma is the decimal point when there is one; a second separator is no number.
TEST(NumbersTest, ParseEitherPointTakesACommaOrAPoint) {
  EXPECT_EQ(ParseEitherPoint("21,5"), 21.5);
  EXPECT_EQ(ParseEitherPoint(" -0.25 "), -0.25);
  for (const char* bad : {"1,2,3", "1,2.5", "", "abc"}) {
    EXPECT_EQ(ErrorNumberOf([&] { ParseEitherPoint(bad); }), 13) << bad;
  }
}

TEST(NumbersTest, RoundingIsToNearestEvenWithExactLimits) {
  const std::pair<double, int> cases[] = {{2.5, 2}, {3.5, 4},  {-2.5, -2}, {-3.5, -4}, {0.5, 0},
                                          {1.5, 2}, {-0.5, 0}, {2.49, 2},  {2.51, 3},  {-1.6, -2}};
  for (const auto& [in, out] : cases) {
    EXPECT_EQ(RoundToInt32(in), out) << in;
    EXPECT_EQ(RoundToInt16(in), out) << in;
  }
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  EXPECT_EQ(RoundToInt32(2147483647.4), INT32_MAX);
  EXPECT_EQ(RoundToInt32(-2147483648.5), INT32_MIN);
  for (double out : {2147483647.5, 2147483648.0, -2147483648.6, nan, inf}) {
    EXPECT_EQ(ErrorNumberOf([&] { RoundToInt32(out); }), 6) << out;
  }
  EXPECT_EQ(RoundToInt16(32767.0), INT16_MAX);
  EXPECT_EQ(RoundToInt16(-32768.5), INT16_MIN);
  for (double out : {32767.5, 32768.0, -32769.0, nan, -inf}) {
    EXPECT_EQ(ErrorNumberOf([&] { RoundToInt16(out); }), 6) << out;
  }
}

// Whole numbers take a shortcut past printf: the texts must be the ones "%.*G" gives.
TEST(NumbersTest, GeneralTextOfWholeAndFractionalNumbers) {
  const std::tuple<double, int, const char*> cases[] = {
      {120, 15, "120"},       {-7, 15, "-7"},           {0, 15, "0"},
      {-0.0, 15, "-0"},       {45.5, 15, "45,5"},       {1e14, 15, "100000000000000"},
      {1e15, 15, "1E+15"},    {123456789, 7, "1,234568E+08"}, {1234567, 7, "1234567"},
      {12345678, 7, "1,234568E+07"}, {-2.5e-3, 15, "-0,0025"}};
  for (const auto& [number, digits, text] : cases) {
    EXPECT_EQ(GeneralText(number, digits, ","), text) << number;
  }
}

TEST(GlobalsTest, GetIniValueReadsValuesAsTheyStand) {
  TempFolder folder;
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
  TempFolder folder;
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
  ASSERT_NO_THROW(std::locale("de_DE.UTF-8")) << kMissingLocale;
  const char* saved = std::getenv("LC_ALL");
  const std::optional<std::string> previous = saved ? std::optional(saved) : std::nullopt;
  for (const auto& [locale, decimal, alternate] :
       {std::tuple{"de_DE.UTF-8", ",", "."}, std::tuple{"C", ".", ","}}) {
    setenv("LC_ALL", locale, 1);
    Globals::DetectDecimalSeparator();
    EXPECT_EQ(Globals::DecimalSeparator, decimal) << locale;
    EXPECT_EQ(Globals::AlternateSeparator, alternate) << locale;
  }
  previous ? setenv("LC_ALL", previous->c_str(), 1) : unsetenv("LC_ALL");
}

TEST(mXMLTest, AppendXmlElementAddsTheLastChild) {
  pugi::xml_document doc;
  pugi::xml_node root = doc.append_child("r");
  root.append_child("first");
  EXPECT_FALSE(mXML::AppendXmlElement(doc, root, "none", "NoTextField").first_child());
  pugi::xml_node empty = mXML::AppendXmlElement(doc, root, "x:empty", "");
  EXPECT_EQ(root.last_child(), mXML::AppendXmlElement(doc, root, "text", "a<b"));
  EXPECT_EQ(XmlText(root), "<r><first/><none/><x:empty></x:empty><text>a&lt;b</text></r>");
  EXPECT_EQ(mXML::BaseName(empty), "empty");
}

TEST(mXMLTest, AppendXmlElementRejectsBadNamesAndForeignParents) {
  pugi::xml_document doc, other;
  pugi::xml_node root = doc.append_child("r");
  pugi::xml_node foreign = other.append_child("o");
  pugi::xml_node text = root.append_child(pugi::node_pcdata);
  const std::pair<pugi::xml_node, const char*> cases[] = {
      {root, "1abc"}, {root, "a b"},           {root, ""}, {root, "-a"},
      {foreign, "a"}, {pugi::xml_node(), "a"}, {text, "a"}};
  for (const auto& [parent, name] : cases) {
    EXPECT_EQ(ErrorNumberOf([&] { mXML::AppendXmlElement(doc, parent, name, "t"); }), 5) << name;
  }
  EXPECT_EQ(XmlText(root), "<r></r>");
  EXPECT_EQ(XmlText(foreign), "<o/>");
}

}  // namespace
}  // namespace kolvane::test
