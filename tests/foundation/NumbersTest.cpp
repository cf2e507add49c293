#include "foundation/Numbers.h"

#include <clocale>
#include <limits>
#include <locale>

#include "../TestSupport.h"

namespace kolvane {
namespace {

using test::ErrorNumberOf;

TEST(NumbersTest, LeadingNumberReadsThePrefixInEveryLocale) {
  ASSERT_NO_THROW(std::locale("de_DE.UTF-8")) << test::kMissingLocale;
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

}  // namespace
}  // namespace kolvane
