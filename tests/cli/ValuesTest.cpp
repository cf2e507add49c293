// Values typed for the bundled catalogue's numbers, read as the tools read them, against the
// bytes the scaling rule gives: value = A x 10^B x (raw + C), worked out here in integers.

#include <algorithm>
#include <random>

#include "Values.h"
#include "conversion/SNVTDataConversion.h"
#include "types/SnvtCatalogue.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

__extension__ typedef __int128 Int128;
__extension__ typedef unsigned __int128 UInt128;

Int128 PowerOfTen(int exponent) {
  Int128 power = 1;
  for (int i = 0; i < exponent; ++i) power *= 10;
  return power;
}

// units x 10^exponent as a decimal text without trailing zeros.
std::string DecimalText(Int128 units, int exponent) {
  const bool negative = units < 0;
  Int128 magnitude = negative ? -units : units;
  std::string digits;
  do {
    digits += static_cast<char>('0' + static_cast<int>(magnitude % 10));
    magnitude /= 10;
  } while (magnitude != 0);
  std::reverse(digits.begin(), digits.end());
  if (exponent >= 0) {
    digits.append(static_cast<size_t>(exponent), '0');
  } else {
    const auto places = static_cast<size_t>(-exponent);
    if (digits.size() <= places) digits.insert(0, places + 1 - digits.size(), '0');
    digits.insert(digits.size() - places, ".");
    while (digits.back() == '0') digits.pop_back();
    if (digits.back() == '.') digits.pop_back();
  }
  return negative ? "-" + digits : digits;
}

struct Scaling {
  Int128 a, c;
  int b;
};

// The engineering value of a raw integer, as text.
std::string ValueText(Int128 raw, const Scaling& s) { return DecimalText(s.a * (raw + s.c), s.b); }

// The raw integer of a limit text such as "-273.17"; false when it is not on the type's grid.
bool RawOfLimit(const std::string& text, const Scaling& s, Int128& raw) {
  Int128 mantissa = 0;
  int exponent = 0;
  bool point = false;
  for (const char ch : text) {
    if (ch == '.') {
      point = true;
    } else if (ch >= '0' && ch <= '9') {
      mantissa = mantissa * 10 + (ch - '0');
      exponent -= point ? 1 : 0;
    } else if (ch != '-') {
      return false;
    }
  }
  if (text.front() == '-') mantissa = -mantissa;
  // mantissa x 10^exponent = a x 10^b x (raw + c)
  Int128 scaled = mantissa;
  if (exponent >= s.b) {
    scaled *= PowerOfTen(exponent - s.b);
  } else {
    const Int128 divisor = PowerOfTen(s.b - exponent);
    if (scaled % divisor != 0) return false;
    scaled /= divisor;
  }
  if (scaled % s.a != 0) return false;
  raw = scaled / s.a - s.c;
  return true;
}

// count bytes of a raw integer, most significant first, two's complement.
std::string Hex(Int128 raw, int32_t count) {
  const auto bits = static_cast<UInt128>(raw);
  std::string text;
  for (int32_t i = count - 1; i >= 0; --i) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>((bits >> (8 * i)) & 0xFF));
    text += digits;
  }
  return text;
}

class TypedValuesTest : public ::testing::Test {
 protected:
  MessageBoxRecorder boxes;
  ScopedDecimalSeparator point{"."};
  ScopedCatalogue catalogue{kBundledCatalogue, true};
};

// Every number of every scaled and bit-field type, standard or field type, at its minimum, its
// maximum, one step inside each and (for 4- and 8-byte types) 200 random values between: read as
// "save --set" and "raw" read it, it gives the bytes its scaling gives, in the tools and in the
// routine a host calls alike. One step outside either limit is refused.
TEST_F(TypedValuesTest, EveryNumberInRangeGivesItsExactBytesAndNoneOutside) {
  std::mt19937_64 random(20261125);
  int standard = 0;
  int field_types = 0;
  int values = 0;
  for (const std::string& id : internal::SnvtIdentifiers()) {
    const auto type = CSNVTType::Shared(id);
    const TypeKind kind = type->Kind();
    if (kind != TypeKind::kSignedNumeric && kind != TypeKind::kUnsignedNumeric &&
        kind != TypeKind::kBitfield) {
      continue;
    }
    (internal::FindSnvtElement(id).attribute("INDEX").empty() ? field_types : standard) += 1;
    const Scaling scaling{static_cast<Int128>(type->ISNVType_ACoef()),
                          static_cast<Int128>(type->ISNVType_CCoef()), type->ISNVType_BCoef()};
    ASSERT_NE(scaling.a, 0) << id;
    Int128 low = 0;
    Int128 high = 0;
    ASSERT_TRUE(RawOfLimit(type->ISNVType_Min(), scaling, low)) << id << " minimum off the grid";
    ASSERT_TRUE(RawOfLimit(type->ISNVType_Max(), scaling, high)) << id << " maximum off the grid";
    if (high < low) std::swap(low, high);
    const int32_t length = type->ISNVType_Length();
    std::vector<Int128> inside = {low, high, low + 1, high - 1};
    if (length >= 4) {
      std::uniform_int_distribution<uint64_t> pick(0, static_cast<uint64_t>(high - low));
      for (int i = 0; i < 200; ++i) inside.push_back(low + pick(random));
    }
    const app::ItemRef item{id, "type", nullptr, type, nullptr};
    for (const Int128 raw : inside) {
      const std::string text = ValueText(raw, scaling);
      std::string value;
      std::string error;
      ASSERT_TRUE(cli::ParseTypedValue(item, text, value, error)) << id << " " << text << ": " << error;
      EXPECT_EQ(SNVTDataConversion::CheckedValueToRaw(value, *type), Hex(raw, length))
          << id << " " << text;
      EXPECT_EQ(SNVTDataConversion::TypedValueToRaw(text, *type), Hex(raw, length))
          << id << " " << text;
      ++values;
    }
    for (const Int128 raw : {low - 1, high + 1}) {
      const std::string text = ValueText(raw, scaling);
      std::string value;
      std::string error;
      EXPECT_FALSE(cli::ParseTypedValue(item, text, value, error)) << id << " " << text;
      ++values;
    }
  }
  std::cout << "checked " << standard << " standard and " << field_types << " field types, "
            << values << " values\n";
  EXPECT_GE(standard, 80);
  EXPECT_GE(field_types, 100);
  EXPECT_TRUE(boxes.boxes.empty());
}

// Values between two raw steps go to the nearer one, a tie to the even one; what is no number,
// or a number a type's bytes cannot hold, is refused naming why.
TEST_F(TypedValuesTest, RoundingAndRefusals) {
  struct Case {
    const char* id;
    const char* typed;
    const char* raw;  // empty when refused
    const char* error;
  };
  const Case cases[] = {
      {"temp_p", "21.504", "0866", ""},
      {"temp_p", "21.505", "0866", ""},
      {"temp_p", "21.515", "0868", ""},
      {"count_32", "2.5", "00000002", ""},
      {"count_32", "3.5", "00000004", ""},
      {"elec_kwh_l", "-0.05", "00000000", ""},
      {"elec_kwh_l", "-0.15", "FFFFFFFE", ""},
      {"count_32", "abc", "", "\"abc\" is not a number"},
      {"count_32", "1e3x", "", "is not a number"},
      {"state", "65536", "", "outside what 2 bytes of this type hold (0 .. 65535)"},
      {"state", "-1", "", "outside what 2 bytes"},
      {"amp", "Invalid", "", "has no invalid value"},
      {"temp_p", "Invalid", "7FFF", ""},
      {"str_asc", "Cafe", "43616665202020202020202020202020202020202020202020202020202000", ""},
      {"str_asc", "Caf\xC3\xA9", "", "\"\xC3\xA9\" is no ASCII character"},
      {"text8", "Caf\xC3\xA9", "436166E9202000", ""},
      {"text8", "\xE6\xB8\xA9", "", "has no code in device text"},
      {"text8", "12345678", "", "The text cannot exceed 6 characters"},
      {"occupancy", "OC_BYPASS", "02", ""},
  };
  // A text type of Windows-1252 characters beside the ASCII one.
  ScopedCatalogue texts(BundledCatalogueWith(
      "<SNVT_text8><NAME>text8</NAME><TYPE>Textual</TYPE><LENGTH>7</LENGTH></SNVT_text8>"));
  for (const Case& c : cases) {
    const auto type = CSNVTType::Shared(c.id);
    const app::ItemRef item{c.id, "type", nullptr, type, nullptr};
    std::string value;
    std::string error;
    const bool accepted = cli::ParseTypedValue(item, c.typed, value, error);
    if (*c.raw == '\0') {
      EXPECT_FALSE(accepted) << c.id << " " << c.typed;
      EXPECT_NE(error.find(c.error), std::string::npos) << error;
      continue;
    }
    ASSERT_TRUE(accepted) << c.id << " " << c.typed << ": " << error;
    EXPECT_EQ(SNVTDataConversion::CheckedValueToRaw(value, *type), c.raw) << c.id << " " << c.typed;
  }
}

}  // namespace
}  // namespace kolvane::test
