#include "host/CUnitConverter.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

// The converter as a host reaches it.
std::shared_ptr<IUnitConverter> Converter() {
  return std::dynamic_pointer_cast<IUnitConverter>(CreateObject("UnitManager.Converter"));
}

TEST(CUnitConverterTest, LimitsUnitsAndDefaultsComeFromTheCatalogue) {
  test::ScopedCatalogue catalogue(KOLVANE_SOURCE_DIR "/examples/snvts.xml", true);
  ASSERT_NE(Converter(), nullptr);
  for (const auto& [separator, min, max] :
       {std::tuple{".", "-273.17", "327.66"}, std::tuple{",", "-273,17", "327,66"}}) {
    test::ScopedDecimalSeparator decimal(separator);
    const auto converter = Converter();
    EXPECT_EQ(converter->DisplayMinimum("temp_p"), min) << separator;
    EXPECT_EQ(converter->DisplayMaximum("temp_p"), max) << separator;
    EXPECT_EQ(converter->DisplayMinimum("lux") + "|" + converter->DisplayMaximum("lux"), "0|65535");
    EXPECT_EQ(converter->DisplayMinimum("nope") + "|" + converter->DisplayMaximum("nope"), "|");
    EXPECT_EQ(converter->ToDisplayUnits("temp_p", "21.5"), "21.5") << separator;
    EXPECT_EQ(converter->ToDisplayUnits("temp_p", "21,5"), "21,5") << separator;
  }
  const auto converter = Converter();
  EXPECT_EQ(converter->DisplayUnits("temp_p"), "°C");
  EXPECT_EQ(converter->DisplayUnits("nope"), "");
  EXPECT_EQ(converter->DefaultValue("temp_p"), "20");
  EXPECT_EQ(converter->DefaultValue("lux"), "");
  EXPECT_EQ(converter->DefaultValue("nope"), "");
}

TEST(CUnitConverterTest, NumbersFromTheUserTakeEitherSeparator) {
  {
    test::ScopedDecimalSeparator decimal(",");
    EXPECT_EQ(Converter()->FromDisplayUnits("temp_p", "21,5"), "21.5");
    EXPECT_EQ(Converter()->FromDisplayUnits("temp_p", "-3"), "-3");
  }
  {
    test::ScopedDecimalSeparator decimal(".");
    EXPECT_EQ(Converter()->FromDisplayUnits("temp_p", "21.5"), "21.5");
  }
  for (const char* separator : {".", ","}) {
    test::ScopedDecimalSeparator decimal(separator);
    const auto converter = Converter();
    EXPECT_DOUBLE_EQ(converter->TextToNumber("21,5"), 21.5) << separator;
    EXPECT_DOUBLE_EQ(converter->TextToNumber("21.5"), 21.5) << separator;
    EXPECT_DOUBLE_EQ(converter->TextToNumber(" -7 "), -7) << separator;
    for (const char* text : {"abc", "", "1.234,5", "12abc"}) {
      EXPECT_EQ(test::ErrorNumberOf([&] { converter->TextToNumber(text); }), 13)
          << text << " with " << separator;
    }
  }
}

}  // namespace
}  // namespace kolvane
