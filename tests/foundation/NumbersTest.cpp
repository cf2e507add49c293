#include "foundation/Numbers.h"

#include <clocale>
#include <cmath>
#include <limits>

#include "../TestSupport.h"

namespace kolvane {
namespace {

using test::ErrorNumberOf;

// Sets the C library's locale while alive (what a locale-dependent strtod would follow).
class ScopedCLocale {
 public:
  explicit ScopedCLocale(const char* name) : saved_(std::setlocale(LC_ALL, nullptr)) {
    ok = std::setlocale(LC_ALL, name) != nullptr;
  }
  ~ScopedCLocale() { std::setlocale(LC_ALL, saved_.c_str()); }
  bool ok = false;

 private:
  std::string saved_;
};

TEST(NumbersTest, LeadingNumberReadsThePrefixInEveryLocale) {
  ASSERT_TRUE(test::HasDecimalCommaLocale()) << test::kMissingLocale;
  const struct {
    const char* text;
    double value;
  } cases[] = {{"", 0},         {"abc", 0},    {"  12abc", 12}, {"\t-3.5e2x", -350},
               {"+.5", 0.5},    {"-.25", -.25}, {"1e", 1},       {"2E+", 2},
               {"1E3", 1000},   {".", 0},      {"-", 0},        {"1,5", 1},
               {"12.5.3", 12.5}, {"0x1A", 0},  {"e5", 0},       {"1e-999", 0}};
  for (const char* locale : {"C", "de_DE.UTF-8"}) {
    ScopedCLocale guard(locale);
    ASSERT_TRUE(guard.ok) << locale;
    for (const auto& c : cases) EXPECT_EQ(LeadingNumber(c.text), c.value) << locale << " " << c.text;
    EXPECT_EQ(ErrorNumberOf([] { LeadingNumber("1e999"); }), 6) << locale;
    EXPECT_EQ(ErrorNumberOf([] { LeadingNumber(" -1e999 x"); }), 6) << locale;
  }
}

TEST(NumbersTest, ParseNumberWantsTheWholeText) {
  EXPECT_EQ(ParseNumber(" 12.5 "), 12.5);
  EXPECT_EQ(ParseNumber("-1e3"), -1000);
  EXPECT_EQ(ParseNumber("+.5"), 0.5);
  for (const char* bad : {"", "  ", "12abc", "1,5", "abc", "1e", "1 2", "-", "0x10"}) {
    EXPECT_EQ(ErrorNumberOf([&] { ParseNumber(bad); }), 13) << bad;
  }
  EXPECT_EQ(ErrorNumberOf([] { ParseNumber("1e999"); }), 6);
}

TEST(NumbersTest, RoundingIsToNearestEvenWithExactLimits) {
  const struct {
    double in;
    int32_t out;
  } cases[] = {{2.5, 2},  {3.5, 4},   {-2.5, -2},   {-3.5, -4},     {0.5, 0},  {1.5, 2},
               {-0.5, 0}, {2.49, 2},  {2.51, 3},    {-1.6, -2},     {7, 7}};
  for (const auto& c : cases) {
    EXPECT_EQ(RoundToInt32(c.in), c.out) << c.in;
    EXPECT_EQ(RoundToInt16(c.in), c.out) << c.in;
  }
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();

  EXPECT_EQ(RoundToInt32(2147483647.0), INT32_MAX);
  EXPECT_EQ(RoundToInt32(2147483647.4), INT32_MAX);
  EXPECT_EQ(RoundToInt32(-2147483648.0), INT32_MIN);
  EXPECT_EQ(RoundToInt32(-2147483648.5), INT32_MIN);
  for (double out : {2147483647.5, 2147483648.0, -2147483649.0, -2147483648.6, nan, inf, -inf}) {
    EXPECT_EQ(ErrorNumberOf([&] { RoundToInt32(out); }), 6) << out;
  }

  EXPECT_EQ(RoundToInt16(32767.0), INT16_MAX);
  EXPECT_EQ(RoundToInt16(-32768.5), INT16_MIN);
  for (double out : {32767.5, 32768.0, -32769.0, nan, inf}) {
    EXPECT_EQ(ErrorNumberOf([&] { RoundToInt16(out); }), 6) << out;
  }
}

}  // namespace
}  // namespace kolvane
