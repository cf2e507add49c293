#pragma once

#include "foundation/Export.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kolvane {

// The leading number of a text, read with "." as decimal point whatever the locale, as Visual
// Basic's Val: blanks, tabs and line breaks are skipped wherever they stand ("1 2" is 12), then
// optional sign, digits, optional fraction and exponent; the rest of the text is ignored and a
// text without a leading number gives 0. Error 6 when the number is out of range.
double LeadingNumber(std::string_view text);

// The leading number of a text as LeadingNumber finds it, blanks removed and "." as decimal
// point ("- 1 2.5x" gives "-12.5"); empty when the text has none.
std::string LeadingNumberText(std::string_view text);

// The whole text as a number text with "." as decimal point, read as ParseNumber reads it; error
// 13 when the text is not a number.
std::string NumberText(std::string_view text, char decimal_point = '.');

// The whole text as a number with decimal_point as decimal point, surrounding blanks allowed.
// Error 13 when the text is not a number, 6 when it is out of range.
double ParseNumber(std::string_view text, char decimal_point = '.');
// A number as documents and users write it, its first "," or else "." the decimal point; errors
// as ParseNumber's.
double ParseEitherPoint(std::string_view text);
// Whether ParseNumber reads text without error.
KOLVANE_API bool IsNumberText(std::string_view text, char decimal_point = '.');

// A number in general format with at most significant_digits digits (exponent form for very
// large and small magnitudes, no trailing zeros) and decimal_separator as decimal point, as
// Visual Basic's CStr writes a Single (7 digits) or a Double (15 digits).
std::string GeneralText(double number, int significant_digits,
                        const std::string& decimal_separator);

// Rounds to the nearest 32-bit integer, ties to even; error 6 when out of range.
int32_t RoundToInt32(double number);

// Rounds to the nearest 16-bit integer, ties to even; error 6 when out of range.
int16_t RoundToInt16(double number);

}  // namespace kolvane
