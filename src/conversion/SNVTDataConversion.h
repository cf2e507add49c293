#pragma once

#include "foundation/Export.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "interfaces/ISNVType.h"
#include "types/TypeKind.h"

// Value texts to the raw bytes a device holds, written as upper-case hexadecimal text (two digits
// per byte, most significant first), and the decimal-separator handling of number texts. No state
// of its own; reads Globals::DecimalSeparator. Not visible to a host.
namespace kolvane::SNVTDataConversion {

// A number text with its first "." (or, without one, its first ",") made the user's decimal
// separator; a text with neither is returned as it is. For values read from documents.
std::string NormalizeDecimal(const std::string& text);

// The same transformation, for number texts shown to the user.
KOLVANE_API std::string LocalizeNumber(const std::string& text);

// The name of the state whose value text is value in an enumeration description
// ("0,OFF;1,ON;"); empty when there is none.
KOLVANE_API std::string EnumStateName(const std::string& value, const std::string& description);

// The name of the state an enumeration's value text names by value ("3"), by name ("HVT_VAV") or
// as the enumeration dialog writes it ("(3,HVT_VAV)"); empty when it names none of the entries
// of description that end in ";".
KOLVANE_API std::string StateNameOf(const std::string& value, const std::string& description);

// The raw hexadecimal text of a value of a type of kind, length bytes and scaling A, B, C
// (value = A * 10^B * (raw + C)). Never raises: on an error it returns what it had built.
std::string ValueToRaw(const std::string& value, const std::string& kind, int32_t length, int16_t a,
                       int16_t b, int16_t c);

// ValueToRaw with the kind, length and coefficients of type (coefficients as 16-bit integers,
// error 6 beyond that range).
std::string TypedValueToRaw(const std::string& value, const ISNVType& type);

// How a value becomes raw bytes: as the routines above have it (an unreadable number counts as 0,
// a byte above 255 is written FF), or checked, refusing whatever the type's bytes cannot hold.
enum class RawMode { kRoutine, kChecked };

// The raw text of a value of type with nothing clamped, cut, padded or read as 0: error 5 or 6
// saying why when the value is no whole number text, lies outside the raw range of the type's
// width, does not fit as text, or gives fewer bytes than the type's length (an "Invalid" 4-byte
// number). Error 5 "no value" for an empty number.
std::string CheckedValueToRaw(const std::string& value, const ISNVType& type);

// The value text of the raw bytes of a value of type, the inverse of the conversion above and
// exact: a number in the type's unit with "." as decimal point ("35" for temp_p 0DAC), the
// state's name of an enumeration (its number when it names none), a text up to its zero byte
// (trailing blanks dropped), and "Invalid" for the bytes of the type's invalid value or a float's
// NaN. Error 5 when the bytes are not the type's length or the type is a structure.
std::string RawToValue(const std::vector<uint8_t>& bytes, const ISNVType& type);

// The bytes of a raw hexadecimal text ("0866"), two digits a byte; a last odd digit is left.
std::vector<uint8_t> HexToBytes(const std::string& hex);

// The fixed pattern "Invalid" is written as: signed 7F or 7FFF, unsigned FF or FFFF (whatever the
// length), float 7F810000; empty for the other kinds.
std::string InvalidPattern(TypeKind kind, int32_t length);

// The hexadecimal bytes of a number text (count bytes of a numeric or bit-field kind, 4 for
// "Float", 1 for "Enum") or of a text's characters ("Textual"). Never raises: an unreadable
// number counts as 0, and an error returns what was built.
std::string NumberToHexBytes(const std::string& text, int32_t count, const std::string& kind);

// Copies source to destination exchanging bytes i and i+1 for every even i.
void SwapBytePairs(const std::array<uint8_t, 32>& source, std::array<uint8_t, 32>& destination);

namespace internal {

// ValueToRaw that raises the error it meets; raw holds what was built until then.
void AppendValueToRaw(std::string& raw, const std::string& value, TypeKind kind, int32_t length,
                      int16_t a, int16_t b, int16_t c, RawMode mode);

}  // namespace internal
}  // namespace kolvane::SNVTDataConversion
