#include "conversion/SNVTDataConversion.h"

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

#include "foundation/Characters.h"
#include "foundation/ContinueOnError.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/HostServices.h"
#include "foundation/Numbers.h"
#include "interfaces/IUtility.h"
#include "types/CSNVTType.h"

namespace kolvane::SNVTDataConversion {

namespace {

constexpr char kUtilityProgId[] = "Moraface.Utility";

// A number text as the conversion reads it: with the locale's rules when the user's decimal
// separator is not ".", else as the leading number.
double ReadNumber(const std::string& text) {
  const char point = Globals::DecimalPoint();
  return point != '.' ? ParseNumber(text, point) : LeadingNumber(text);
}

// A number kept in single precision, as text with the user's decimal separator. Error 6 when it
// is beyond single precision's range.
std::string SingleToText(double number) {
  if (!std::isfinite(number) || std::fabs(number) > FLT_MAX) RaiseError(ErrorNumber::kOverflow);
  return GeneralText(static_cast<float>(number), 7, Globals::DecimalSeparator);
}

void AppendByte(std::string& out, int32_t value) { out += Globals::ByteToHex(value); }

// Hex digits of count bytes of a number of a numeric or bit-field kind.
void AppendInteger(std::string& out, double number, int32_t count, TypeKind kind) {
  switch (count) {
    case 1:
      AppendByte(out, RoundToInt32(number));
      break;
    case 2:
      if (kind == TypeKind::kSignedNumeric) {
        const int16_t n = RoundToInt16(number);
        std::array<uint8_t, 32> memory{};
        std::array<uint8_t, 32> swapped{};
        std::memcpy(memory.data(), &n, sizeof n);
        SwapBytePairs(memory, swapped);
        // The pair in memory order, swapped, comes out most significant first.
        AppendByte(out, swapped[0]);
        AppendByte(out, swapped[1]);
      } else {
        const int32_t n = RoundToInt32(number);
        const int32_t high = n / 256;
        const int32_t low = n - high * 256;
        AppendByte(out, high);
        if (low < 0) {
          RaiseError(ErrorNumber::kInvalidProcedureCall,
                     std::to_string(n) + " has a negative low byte");
        }
        AppendByte(out, low);
      }
      break;
    case 4: {
      const auto n = static_cast<uint32_t>(RoundToInt32(number));
      for (int shift = 24; shift >= 0; shift -= 8) {
        AppendByte(out, static_cast<int32_t>((n >> shift) & 0xFF));
      }
      break;
    }
    default:
      break;
  }
}

void AppendFloat(std::string& out, double number) {
  if (std::isfinite(number) && std::fabs(number) > FLT_MAX) RaiseError(ErrorNumber::kOverflow);
  const auto single = static_cast<float>(number);
  uint32_t bits = 0;
  std::memcpy(&bits, &single, sizeof bits);
  for (int shift = 24; shift >= 0; shift -= 8) {
    AppendByte(out, static_cast<int32_t>((bits >> shift) & 0xFF));
  }
}

// NumberToHexBytes, raising the error it meets.
void AppendHexBytes(std::string& out, const std::string& text, int32_t count, TypeKind kind) {
  if (count < 0 || count > 255) RaiseError(ErrorNumber::kOverflow, "byte count");
  double number = 0;
  ContinueOnError([&] { number = ReadNumber(text); });
  switch (kind) {
    case TypeKind::kTextual:
      for (unsigned char code : AnsiCodes(text)) AppendByte(out, code);
      return;
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kBitfield:
      AppendInteger(out, number, count, kind);
      return;
    case TypeKind::kFloat:
      AppendFloat(out, number);
      return;
    case TypeKind::kEnum:
      AppendByte(out, RoundToInt32(number));
      return;
    case TypeKind::kStruct:
    case TypeKind::kUnknown:
      return;
  }
}

}  // namespace

std::string LocalizeNumber(const std::string& text) {
  size_t cut = text.find('.');
  if (cut == std::string::npos) cut = text.find(',');
  if (cut == std::string::npos) return text;
  return text.substr(0, cut) + Globals::DecimalSeparator + text.substr(cut + 1);
}

std::string NormalizeDecimal(const std::string& text) { return LocalizeNumber(text); }

std::string EnumStateName(const std::string& value, const std::string& description) {
  std::string_view rest = description;
  for (;;) {
    const size_t comma = rest.find(',');
    const size_t semicolon = rest.find(';');
    if (comma != std::string_view::npos && rest.substr(0, comma) == value) {
      if (semicolon == std::string_view::npos || semicolon < comma) return "";
      return std::string(rest.substr(comma + 1, semicolon - comma - 1));
    }
    if (semicolon == std::string_view::npos) return "";
    rest.remove_prefix(semicolon + 1);
  }
}

void SwapBytePairs(const std::array<uint8_t, 32>& source, std::array<uint8_t, 32>& destination) {
  for (size_t i = 0; i < source.size(); i += 2) {
    destination[i] = source[i + 1];
    destination[i + 1] = source[i];
  }
}

std::string NumberToHexBytes(const std::string& text, int32_t count, const std::string& kind) {
  std::string out;
  ContinueOnError([&] { AppendHexBytes(out, text, count, ParseTypeKind(kind)); });
  return out;
}

std::string ValueToRaw(const std::string& value, const std::string& kind, int32_t length, int16_t a,
                       int16_t b, int16_t c) {
  std::string raw;
  ContinueOnError(
      [&] { internal::AppendValueToRaw(raw, value, ParseTypeKind(kind), length, a, b, c); });
  return raw;
}

std::string TypedValueToRaw(const std::string& value, const ISNVType& type) {
  const int16_t a = RoundToInt16(type.ISNVType_ACoef());
  const int16_t b = RoundToInt16(type.ISNVType_BCoef());
  const int16_t c = RoundToInt16(type.ISNVType_CCoef());
  std::string raw;
  ContinueOnError([&] {
    internal::AppendValueToRaw(raw, value, KindOf(type), type.ISNVType_Length(), a, b, c);
  });
  return raw;
}

namespace {

// The raw pattern an "Invalid" value takes, empty for a kind that has none.
std::string InvalidPattern(TypeKind kind, int32_t length) {
  switch (kind) {
    case TypeKind::kSignedNumeric:
      return length == 1 ? "7F" : "7FFF";
    case TypeKind::kUnsignedNumeric:
      return length == 1 ? "FF" : "FFFF";
    case TypeKind::kFloat:
      return "7F810000";
    case TypeKind::kBitfield:
    case TypeKind::kEnum:
    case TypeKind::kTextual:
    case TypeKind::kStruct:
    case TypeKind::kUnknown:
      return "";
  }
  return "";
}

}  // namespace

void internal::AppendValueToRaw(std::string& raw, const std::string& value, TypeKind kind,
                                int32_t length, int16_t a, int16_t b, int16_t c) {
  switch (kind) {
    case TypeKind::kTextual: {
      if (length < 1) RaiseError(ErrorNumber::kInvalidProcedureCall, "text length");
      const auto room = static_cast<size_t>(length - 1);
      std::string text(LeftCharacters(value, room));
      text.append(room - CharacterCount(text), ' ');
      AppendHexBytes(raw, text, length - 1, kind);
      raw += "00";
      return;
    }
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric: {
      if (value == "Invalid") {
        raw += InvalidPattern(kind, length);
        return;
      }
      std::string scaled = "0";
      if (a != 0) {
        const double number = ReadNumber(NormalizeDecimal(value.empty() ? "0" : value));
        const double raw_number = number * std::pow(10.0, -b) / a - c;
        scaled = SingleToText(raw_number);
      }
      AppendHexBytes(raw, scaled, length, kind);
      return;
    }
    case TypeKind::kFloat:
      if (value.empty() || value == "Invalid") {
        raw += InvalidPattern(kind, length);
        return;
      }
      AppendHexBytes(raw, NormalizeDecimal(value), 4, kind);
      return;
    case TypeKind::kEnum: {
      auto utility = CreateObjectAs<IUtility>(kUtilityProgId);
      AppendHexBytes(raw, std::to_string(utility->EnumStateNumber(value)), 1, kind);
      return;
    }
    case TypeKind::kBitfield:
    case TypeKind::kStruct:
    case TypeKind::kUnknown:
      AppendHexBytes(raw, NormalizeDecimal(value), length, kind);
      return;
  }
}

}  // namespace kolvane::SNVTDataConversion
