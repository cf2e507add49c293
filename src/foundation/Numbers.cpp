#include "foundation/Numbers.h"

#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

#include "foundation/Error.h"

namespace kolvane {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Length of the number at the start of text (sign, digits, fraction, exponent); 0 when there is
// none. A lone sign or "." is not a number; an "e" not followed by digits is not part of it.
size_t NumberPrefixLength(std::string_view text) {
  size_t i = 0;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  size_t digits = 0;
  while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    size_t j = i + 1;
    size_t fraction = 0;
    while (j < text.size() && IsDigit(text[j])) ++j, ++fraction;
    if (digits + fraction > 0) {
      i = j;
      digits += fraction;
    }
  }
  if (digits == 0) return 0;
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    size_t j = i + 1;
    if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
    size_t exponent = 0;
    while (j < text.size() && IsDigit(text[j])) ++j, ++exponent;
    if (exponent > 0) i = j;
  }
  return i;
}

// Converts a text already checked to be a number, with "." as decimal point in every locale.
double ConvertNumber(std::string_view number) {
  static const locale_t c_locale = newlocale(LC_ALL_MASK, "C", locale_t{});
  const std::string text(number);
  errno = 0;
  char* end = nullptr;
  double value = strtod_l(text.c_str(), &end, c_locale);
  if (end != text.c_str() + text.size()) RaiseError(ErrorNumber::kTypeMismatch, text);
  // Underflow to a denormal or zero is harmless; only overflow is an error.
  if (errno == ERANGE && std::isinf(value)) RaiseError(ErrorNumber::kOverflow, text);
  return value;
}

std::string_view SkipBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return text;
}

template <class Int>
Int RoundTo(double number) {
  // The current rounding mode is round-to-nearest-even unless someone changed it; do not rely on
  // it.
  double rounded = std::round(number);
  if (std::abs(number - std::trunc(number)) == 0.5) rounded = 2.0 * std::round(number / 2.0);
  if (!(rounded >= static_cast<double>(std::numeric_limits<Int>::min()) &&
        rounded <= static_cast<double>(std::numeric_limits<Int>::max()))) {
    char detail[64];
    std::snprintf(detail, sizeof detail, "%.15G does not fit %d bits", number,
                  static_cast<int>(8 * sizeof(Int)));
    RaiseError(ErrorNumber::kOverflow, detail);
  }
  return static_cast<Int>(rounded);
}

}  // namespace

std::string LeadingNumberText(std::string_view text) {
  std::string compact;
  for (char c : text) {
    if (!IsBlank(c)) compact += c;
  }
  compact.resize(NumberPrefixLength(compact));
  return compact;
}

double LeadingNumber(std::string_view text) {
  const std::string number = LeadingNumberText(text);
  return number.empty() ? 0.0 : ConvertNumber(number);
}

std::string NumberText(std::string_view text, char decimal_point) {
  text = SkipBlanks(text);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  std::string number(text);
  if (decimal_point != '.') {
    // The invariant point is no decimal point here.
    if (number.find('.') != std::string::npos) {
      RaiseError(ErrorNumber::kTypeMismatch, "\"" + number + "\" is not a number");
    }
    for (char& c : number) {
      if (c == decimal_point) c = '.';
    }
  }
  const size_t length = NumberPrefixLength(number);
  if (length == 0 || length != number.size()) {
    RaiseError(ErrorNumber::kTypeMismatch, "\"" + std::string(text) + "\" is not a number");
  }
  return number;
}

double ParseEitherPoint(std::string_view text) {
  std::string invariant(text);
  if (const size_t comma = invariant.find(','); comma != std::string::npos) invariant[comma] = '.';
  return ParseNumber(invariant);
}

double ParseNumber(std::string_view text, char decimal_point) {
  return ConvertNumber(NumberText(text, decimal_point));
}

std::string GeneralText(double number, int significant_digits,
                        const std::string& decimal_separator) {
  // A whole number that the digits hold is written as such (the common case, and the cheap one).
  if (std::trunc(number) == number && std::fabs(number) < 1e15 &&
      std::fabs(number) < std::pow(10.0, significant_digits) && !(number == 0 && std::signbit(number))) {
    return std::to_string(static_cast<int64_t>(number));
  }
  char buffer[48];
  std::snprintf(buffer, sizeof buffer, "%.*G", significant_digits, number);
  std::string text = buffer;
  if (const size_t point = text.find('.'); point != std::string::npos) {
    text.replace(point, 1, decimal_separator);
  }
  return text;
}

int32_t RoundToInt32(double number) { return RoundTo<int32_t>(number); }

int16_t RoundToInt16(double number) { return RoundTo<int16_t>(number); }

bool IsNumberText(std::string_view text, char decimal_point) {
  try {
    ParseNumber(text, decimal_point);
    return true;
  } catch (const Error&) {
    return false;
  }
}

}  // namespace kolvane
