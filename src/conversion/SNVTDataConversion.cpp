#include "conversion/SNVTDataConversion.h"

#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "foundation/Characters.h"
#include "foundation/ContinueOnError.h"
#include "foundation/Decimal.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/HostServices.h"
#include "foundation/Numbers.h"
#include "interfaces/IUtility.h"
#include "types/CSNVTType.h"

namespace kolvane::SNVTDataConversion {

namespace {

using kolvane::internal::Int128;
using kolvane::internal::Rational;

constexpr char kUtilityProgId[] = "Moraface.Utility";

// A number text as the conversion reads it, in invariant form: with the locale's rules when the
// user's decimal separator is not "." (error 13 when it is no number), else the leading number
// (empty when there is none). Strictly, the whole text must be a number with "." or "," as
// decimal point.
std::string ReadNumberText(const std::string& text, RawMode mode) {
  if (mode == RawMode::kChecked) {
    std::string number = text;
    if (number.find('.') == std::string::npos) {
      if (const size_t comma = number.find(','); comma != std::string::npos) number[comma] = '.';
    }
    return NumberText(number);
  }
  const char point = Globals::DecimalPoint();
  return point != '.' ? NumberText(text, point) : LeadingNumberText(text);
}

// The exact value of an invariant number text; 0 for an empty one. Error 6 for a magnitude
// beyond what the exact arithmetic holds (about 10^30); smaller than that reads as 0.
Rational ExactNumber(const std::string& number) {
  if (number.empty()) return Rational();
  if (auto exact = Rational::FromText(number)) return *exact;
  if (std::fabs(ParseNumber(number)) < 1) return Rational();
  RaiseError(ErrorNumber::kOverflow, number + " is too large");
}

// Engineering value of a raw integer: A x 10^B x (raw + C), as text with "." as decimal point.
std::string EngineeringText(Int128 raw, int16_t a, int16_t b, int16_t c) {
  const Rational value = Rational(a, 1) * Rational::PowerOfTen(b) * Rational(raw + c, 1);
  return value.Text(b < 0 ? -b : 0, '.');
}

void AppendByte(std::string& out, int32_t value) { out += Globals::ByteToHex(value); }

int32_t ToInt32(Int128 n) {
  if (n < INT32_MIN || n > INT32_MAX) RaiseError(ErrorNumber::kOverflow, "beyond 32 bits");
  return static_cast<int32_t>(n);
}

// Hex digits of count bytes of a raw integer of a numeric, bit-field or enumeration kind. The
// routine keeps its deliberate edges: a byte above 255 is written FF, a 2-byte unsigned value
// above 65535 puts FF in its high byte, a negative one stops after its high byte; anything else a
// width cannot hold (and an 8-byte number of a kind other than a bit field) builds nothing.
void AppendInteger(std::string& out, Int128 n, int32_t count, TypeKind kind) {
  const bool is_signed = kind == TypeKind::kSignedNumeric;
  switch (count) {
    case 1:
      AppendByte(out, ToInt32(n));
      return;
    case 2:
      if (is_signed) {
        if (n < INT16_MIN || n > INT16_MAX) RaiseError(ErrorNumber::kOverflow, "beyond 16 bits");
        const auto value = static_cast<int16_t>(n);
        std::array<uint8_t, 32> memory{};
        std::array<uint8_t, 32> swapped{};
        std::memcpy(memory.data(), &value, sizeof value);
        SwapBytePairs(memory, swapped);
        // The pair in memory order, swapped, comes out most significant first.
        AppendByte(out, swapped[0]);
        AppendByte(out, swapped[1]);
      } else {
        const int32_t value = ToInt32(n);
        const int32_t high = value / 256;
        const int32_t low = value - high * 256;
        AppendByte(out, high);
        if (low < 0) {
          RaiseError(ErrorNumber::kInvalidProcedureCall,
                     std::to_string(value) + " has a negative low byte");
        }
        AppendByte(out, low);
      }
      return;
    case 4:
    case 8: {
      const int bits = 8 * count;
      const Int128 low = is_signed ? -(Int128{1} << (bits - 1)) : 0;
      const Int128 high = is_signed ? (Int128{1} << (bits - 1)) - 1 : (Int128{1} << bits) - 1;
      if (n < low || n > high || (count == 8 && kind != TypeKind::kBitfield)) {
        RaiseError(ErrorNumber::kOverflow, "beyond " + std::to_string(bits) + " bits");
      }
      // Two's complement of a negative number, in as many bytes as the width has.
      const auto pattern = n < 0 ? static_cast<uint64_t>(static_cast<int64_t>(n))
                                 : static_cast<uint64_t>(n);
      for (int shift = bits - 8; shift >= 0; shift -= 8) {
        AppendByte(out, static_cast<int32_t>((pattern >> shift) & 0xFF));
      }
      return;
    }
    default:
      return;
  }
}

// The raw integers count bytes of kind hold; false for a width without a raw form.
bool RawRange(TypeKind kind, int32_t count, Int128& low, Int128& high) {
  if (count != 1 && count != 2 && count != 4 && !(count == 8 && kind == TypeKind::kBitfield)) {
    return false;
  }
  const int bits = 8 * count;
  switch (kind) {
    case TypeKind::kSignedNumeric:
      low = -(Int128{1} << (bits - 1));
      high = (Int128{1} << (bits - 1)) - 1;
      return true;
    case TypeKind::kEnum:
      // A state's byte: the signed and the unsigned reading of it.
      low = -128;
      high = 255;
      return count == 1;
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kBitfield:
      low = 0;
      high = (Int128{1} << bits) - 1;
      return true;
    case TypeKind::kFloat:
    case TypeKind::kTextual:
    case TypeKind::kStruct:
    case TypeKind::kUnknown:
      return false;
  }
  return false;
}

// Refuses a raw integer the width cannot hold, naming the range in engineering units.
void CheckRawRange(const std::string& value, Int128 n, TypeKind kind, int32_t count, int16_t a,
                   int16_t b, int16_t c) {
  Int128 low = 0;
  Int128 high = 0;
  if (!RawRange(kind, count, low, high)) {
    RaiseError(ErrorNumber::kInvalidProcedureCall,
               "no raw form for a " + std::to_string(count) + "-byte value of this kind");
  }
  if (n >= low && n <= high) return;
  std::string first = EngineeringText(low, a, b, c);
  std::string last = EngineeringText(high, a, b, c);
  if (a < 0) std::swap(first, last);
  RaiseError(ErrorNumber::kOverflow,
             value + " is outside what " + std::to_string(count) +
                 (count == 1 ? " byte of this type holds (" : " bytes of this type hold (") +
                 first + " .. " + last + ")");
}

void AppendFloat(std::string& out, const std::string& number) {
  static const locale_t c_locale = newlocale(LC_ALL_MASK, "C", locale_t{});
  errno = 0;
  const float single = number.empty() ? 0.0F : strtof_l(number.c_str(), nullptr, c_locale);
  if (errno == ERANGE && std::isinf(single)) RaiseError(ErrorNumber::kOverflow, number);
  uint32_t bits = 0;
  std::memcpy(&bits, &single, sizeof bits);
  for (int shift = 24; shift >= 0; shift -= 8) {
    AppendByte(out, static_cast<int32_t>((bits >> shift) & 0xFF));
  }
}

// Refuses a character device text cannot hold: one without a Windows-1252 code.
void CheckCharacters(const std::string& text) {
  std::string_view rest = text;
  while (!rest.empty()) {
    const std::string_view character = LeftCharacters(rest, 1);
    if (AnsiCodes(character).front() == '?' && character != "?") {
      RaiseError(ErrorNumber::kInvalidProcedureCall,
                 "\"" + std::string(character) + "\" has no code in device text (Windows-1252)");
    }
    rest.remove_prefix(character.size());
  }
}

// NumberToHexBytes, raising the error it meets. Checked, a number must be a whole number text
// within the width's raw range.
void AppendHexBytes(std::string& out, const std::string& text, int32_t count, TypeKind kind,
                    RawMode mode) {
  if (count < 0 || count > 255) RaiseError(ErrorNumber::kOverflow, "byte count");
  if (kind == TypeKind::kTextual) {
    for (unsigned char code : AnsiCodes(text)) AppendByte(out, code);
    return;
  }
  std::string number;
  if (mode == RawMode::kChecked) {
    number = ReadNumberText(text, mode);
  } else {
    // A number beyond what a double holds cannot be read, and counts as 0.
    ContinueOnError([&] {
      const std::string read = ReadNumberText(text, mode);
      if (!read.empty()) ParseNumber(read);
      number = read;
    });
  }
  switch (kind) {
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kBitfield:
    case TypeKind::kEnum: {
      Rational exact;
      if (mode == RawMode::kChecked) {
        exact = ExactNumber(number);
      } else {
        ContinueOnError([&] { exact = ExactNumber(number); });
      }
      const Int128 n = exact.RoundHalfEven();
      const int32_t width = kind == TypeKind::kEnum ? 1 : count;
      if (mode == RawMode::kChecked) CheckRawRange(text, n, kind, width, 1, 0, 0);
      AppendInteger(out, n, width, kind);
      return;
    }
    case TypeKind::kFloat:
      AppendFloat(out, number);
      return;
    case TypeKind::kTextual:
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

std::vector<uint8_t> HexToBytes(const std::string& hex) {
  std::vector<uint8_t> bytes;
  for (size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes.push_back(static_cast<uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

std::string StateNameOf(const std::string& value, const std::string& description) {
  std::string_view rest = description;
  // Entries end in ";", as EnumStateName reads them: an unterminated last one names nothing.
  for (size_t end = rest.find(';'); end != std::string_view::npos; end = rest.find(';')) {
    const std::string_view entry = rest.substr(0, end);
    rest.remove_prefix(end + 1);
    const size_t comma = entry.find(',');
    if (comma == std::string_view::npos) continue;
    const std::string_view number = entry.substr(0, comma);
    const std::string_view name = entry.substr(comma + 1);
    if (value == number || value == name || value == "(" + std::string(entry) + ")") {
      return std::string(name);
    }
  }
  return "";
}

void SwapBytePairs(const std::array<uint8_t, 32>& source, std::array<uint8_t, 32>& destination) {
  for (size_t i = 0; i < source.size(); i += 2) {
    destination[i] = source[i + 1];
    destination[i + 1] = source[i];
  }
}

std::string NumberToHexBytes(const std::string& text, int32_t count, const std::string& kind) {
  std::string out;
  ContinueOnError(
      [&] { AppendHexBytes(out, text, count, ParseTypeKind(kind), RawMode::kRoutine); });
  return out;
}

std::string ValueToRaw(const std::string& value, const std::string& kind, int32_t length, int16_t a,
                       int16_t b, int16_t c) {
  std::string raw;
  ContinueOnError([&] {
    internal::AppendValueToRaw(raw, value, ParseTypeKind(kind), length, a, b, c,
                               RawMode::kRoutine);
  });
  return raw;
}

std::string TypedValueToRaw(const std::string& value, const ISNVType& type) {
  const int16_t a = RoundToInt16(type.ISNVType_ACoef());
  const int16_t b = RoundToInt16(type.ISNVType_BCoef());
  const int16_t c = RoundToInt16(type.ISNVType_CCoef());
  std::string raw;
  ContinueOnError([&] {
    internal::AppendValueToRaw(raw, value, KindOf(type), type.ISNVType_Length(), a, b, c,
                               RawMode::kRoutine);
  });
  return raw;
}

std::string CheckedValueToRaw(const std::string& value, const ISNVType& type) {
  const int32_t length = type.ISNVType_Length();
  std::string raw;
  internal::AppendValueToRaw(raw, value, KindOf(type), length,
                             RoundToInt16(type.ISNVType_ACoef()),
                             RoundToInt16(type.ISNVType_BCoef()),
                             RoundToInt16(type.ISNVType_CCoef()), RawMode::kChecked);
  if (raw.size() != 2 * static_cast<size_t>(length)) {
    RaiseError(ErrorNumber::kInvalidProcedureCall,
               "\"" + value + "\" is written as " + (raw.empty() ? "nothing" : raw) + ", " +
                   std::to_string(raw.size() / 2) + " of the " + std::to_string(length) +
                   " bytes of its type");
  }
  return raw;
}

namespace {

// The shortest text that reads back as the same single-precision number.
std::string FloatText(float number) {
  static const locale_t c_locale = newlocale(LC_ALL_MASK, "C", locale_t{});
  char text[32];
  for (int digits = 1; digits <= 9; ++digits) {
    std::snprintf(text, sizeof text, "%.*g", digits, static_cast<double>(number));
    for (char& c : text) {
      if (c == ',') c = '.';
    }
    if (strtof_l(text, nullptr, c_locale) == number) break;
  }
  return text;
}

}  // namespace

std::string RawToValue(const std::vector<uint8_t>& bytes, const ISNVType& type) {
  const TypeKind kind = KindOf(type);
  const int32_t length = type.ISNVType_Length();
  if (kind == TypeKind::kStruct || kind == TypeKind::kUnknown) {
    RaiseError(ErrorNumber::kInvalidProcedureCall, "a structure's bytes convert field by field");
  }
  if (static_cast<int32_t>(bytes.size()) != (kind == TypeKind::kEnum ? 1 : length)) {
    RaiseError(ErrorNumber::kInvalidProcedureCall,
               std::to_string(bytes.size()) + " bytes for a type of " + std::to_string(length));
  }
  if (kind == TypeKind::kTextual) {
    std::vector<unsigned char> codes;
    for (const uint8_t byte : bytes) {
      if (byte == 0) break;
      codes.push_back(byte);
    }
    std::string text = FromAnsiCodes(codes);
    while (!text.empty() && text.back() == ' ') text.pop_back();
    return text;
  }
  uint64_t unsigned_value = 0;
  for (const uint8_t byte : bytes) unsigned_value = unsigned_value << 8 | byte;
  if (kind == TypeKind::kFloat) {
    const auto bits = static_cast<uint32_t>(unsigned_value);
    float number = 0;
    std::memcpy(&number, &bits, sizeof number);
    return std::isnan(number) ? "Invalid" : FloatText(number);
  }
  Int128 raw = unsigned_value;
  const int bits = 8 * static_cast<int>(bytes.size());
  const bool is_signed = kind == TypeKind::kSignedNumeric || kind == TypeKind::kEnum;
  if (is_signed && bits < 128 && raw >= (Int128{1} << (bits - 1))) raw -= Int128{1} << bits;
  if (kind == TypeKind::kEnum) {
    const std::string number = std::to_string(static_cast<int>(raw));
    const std::string name = EnumStateName(number, type.ISNVType_EnumDesc());
    return name.empty() ? number : name;
  }
  // The bytes of the type's invalid value read as "Invalid".
  const std::string invalid = type.ISNVType_InvalidValue();
  if (!invalid.empty()) {
    std::string hex;
    for (const uint8_t byte : bytes) AppendByte(hex, byte);
    try {
      if (CheckedValueToRaw(invalid, type) == hex) return "Invalid";
    } catch (const Error&) {
    }
  }
  const auto a = RoundToInt16(type.ISNVType_ACoef());
  const auto b = RoundToInt16(type.ISNVType_BCoef());
  const auto c = RoundToInt16(type.ISNVType_CCoef());
  if (kind == TypeKind::kBitfield || a == 0) return EngineeringText(raw, 1, 0, 0);
  return EngineeringText(raw, a, b, c);
}

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

void internal::AppendValueToRaw(std::string& raw, const std::string& value, TypeKind kind,
                                int32_t length, int16_t a, int16_t b, int16_t c, RawMode mode) {
  const bool checked = mode == RawMode::kChecked;
  switch (kind) {
    case TypeKind::kTextual: {
      if (length < 1) RaiseError(ErrorNumber::kInvalidProcedureCall, "text length");
      const auto room = static_cast<size_t>(length - 1);
      if (checked) {
        if (CharacterCount(value) > room) {
          RaiseError(ErrorNumber::kInvalidProcedureCall,
                     "a text of " + std::to_string(CharacterCount(value)) +
                         " characters; the type holds " + std::to_string(room));
        }
        CheckCharacters(value);
      }
      std::string text(LeftCharacters(value, room));
      text.append(room - CharacterCount(text), ' ');
      AppendHexBytes(raw, text, length - 1, kind, mode);
      raw += "00";
      return;
    }
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric: {
      if (value == "Invalid") {
        raw += InvalidPattern(kind, length);
        return;
      }
      if (checked && value.empty()) RaiseError(ErrorNumber::kInvalidProcedureCall, "no value");
      Int128 scaled = 0;
      if (a != 0) {
        const Rational number =
            ExactNumber(ReadNumberText(NormalizeDecimal(value.empty() ? "0" : value), mode));
        // raw = number x 10^-B / A - C, rounded to the nearest step, ties to even.
        scaled = (number * Rational::PowerOfTen(-b) / Rational(a, 1) - Rational(c, 1))
                     .RoundHalfEven();
      }
      if (checked) CheckRawRange(value, scaled, kind, length, a, b, c);
      AppendInteger(raw, scaled, length, kind);
      return;
    }
    case TypeKind::kFloat:
      if (value.empty() || value == "Invalid") {
        if (checked && value.empty()) RaiseError(ErrorNumber::kInvalidProcedureCall, "no value");
        raw += InvalidPattern(kind, length);
        return;
      }
      AppendHexBytes(raw, NormalizeDecimal(value), 4, kind, mode);
      return;
    case TypeKind::kEnum: {
      auto utility = CreateObjectAs<IUtility>(kUtilityProgId);
      AppendHexBytes(raw, std::to_string(utility->EnumStateNumber(value)), 1, kind, mode);
      return;
    }
    case TypeKind::kBitfield:
    case TypeKind::kStruct:
    case TypeKind::kUnknown:
      if (checked && kind != TypeKind::kBitfield) {
        RaiseError(ErrorNumber::kInvalidProcedureCall, "a value of this kind has no raw form");
      }
      if (checked && value.empty()) RaiseError(ErrorNumber::kInvalidProcedureCall, "no value");
      AppendHexBytes(raw, NormalizeDecimal(value), length, kind, mode);
      return;
  }
}

}  // namespace kolvane::SNVTDataConversion
