#include "foundation/Decimal.h"

#include <algorithm>
#include <cstdlib>

#include "foundation/Error.h"

namespace kolvane::internal {

namespace {

// Beyond this a product of two values could leave the 128-bit range.
constexpr Int128 kLimit = static_cast<Int128>(1) << 100;

Int128 Gcd(Int128 a, Int128 b) {
  if (a < 0) a = -a;
  if (b < 0) b = -b;
  while (b != 0) {
    const Int128 t = a % b;
    a = b;
    b = t;
  }
  return a == 0 ? 1 : a;
}

void CheckRange(Int128 value) {
  if (value > kLimit || value < -kLimit) RaiseError(ErrorNumber::kOverflow, "exact number");
}

}  // namespace

Rational::Rational(Int128 numerator, Int128 denominator) {
  if (denominator == 0) RaiseError(ErrorNumber::kOverflow, "division by zero");
  if (denominator < 0) {
    numerator = -numerator;
    denominator = -denominator;
  }
  // Reduced only once the terms grow: the common small cases need no division at all.
  constexpr Int128 kReduceFrom = static_cast<Int128>(1) << 60;
  if (numerator > kReduceFrom || numerator < -kReduceFrom || denominator > kReduceFrom) {
    const Int128 divisor = Gcd(numerator, denominator);
    numerator /= divisor;
    denominator /= divisor;
  }
  CheckRange(numerator);
  CheckRange(denominator);
  numerator_ = numerator;
  denominator_ = denominator;
}

std::optional<Rational> Rational::FromText(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && text[i] == ' ') ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
  Int128 digits = 0;
  int scale = 0;  // digits after the point
  bool any = false;
  bool point = false;
  for (; i < text.size(); ++i) {
    const char c = text[i];
    if (c >= '0' && c <= '9') {
      if (digits > kLimit / 10) return std::nullopt;
      digits = digits * 10 + (c - '0');
      any = true;
      if (point) ++scale;
    } else if ((c == '.' || c == ',') && !point) {
      point = true;
    } else {
      break;
    }
  }
  if (!any) return std::nullopt;
  int exponent = 0;
  if (i < text.size() && (text[i] == 'E' || text[i] == 'e')) {
    ++i;
    bool negative_exponent = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative_exponent = text[i++] == '-';
    if (i >= text.size()) return std::nullopt;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
      exponent = exponent * 10 + (text[i] - '0');
      if (exponent > 60) return std::nullopt;
    }
    if (negative_exponent) exponent = -exponent;
  }
  while (i < text.size() && text[i] == ' ') ++i;
  if (i != text.size()) return std::nullopt;
  try {
    Rational value = Rational(negative ? -digits : digits, 1) * PowerOfTen(exponent - scale);
    return value;
  } catch (const Error&) {
    return std::nullopt;
  }
}

std::optional<Rational> Rational::FromFraction(std::string_view text) {
  const size_t slash = text.find('/');
  if (slash == std::string_view::npos) return FromText(text);
  const auto numerator = FromText(text.substr(0, slash));
  const auto denominator = FromText(text.substr(slash + 1));
  if (!numerator || !denominator || denominator->numerator_ == 0) return std::nullopt;
  try {
    return *numerator / *denominator;
  } catch (const Error&) {
    return std::nullopt;
  }
}

Rational Rational::PowerOfTen(int exponent) {
  if (exponent > 30 || exponent < -30) RaiseError(ErrorNumber::kOverflow, "exact number");
  Int128 power = 1;
  for (int i = 0; i < (exponent < 0 ? -exponent : exponent); ++i) power *= 10;
  return exponent < 0 ? Rational(1, power) : Rational(power, 1);
}

Rational Rational::operator+(const Rational& other) const {
  Int128 left = 0;
  Int128 right = 0;
  Int128 sum = 0;
  Int128 denominator = 0;
  if (__builtin_mul_overflow(numerator_, other.denominator_, &left) ||
      __builtin_mul_overflow(other.numerator_, denominator_, &right) ||
      __builtin_add_overflow(left, right, &sum) ||
      __builtin_mul_overflow(denominator_, other.denominator_, &denominator)) {
    RaiseError(ErrorNumber::kOverflow, "exact number");
  }
  return Rational(sum, denominator);
}

Rational Rational::operator-(const Rational& other) const {
  return *this + Rational(-other.numerator_, other.denominator_);
}

Rational Rational::operator*(const Rational& other) const {
  Int128 numerator = 0;
  Int128 denominator = 0;
  if (__builtin_mul_overflow(numerator_, other.numerator_, &numerator) ||
      __builtin_mul_overflow(denominator_, other.denominator_, &denominator)) {
    RaiseError(ErrorNumber::kOverflow, "exact number");
  }
  return Rational(numerator, denominator);
}

Rational Rational::operator/(const Rational& other) const {
  return *this * Rational(other.denominator_, other.numerator_);
}

bool Rational::operator<(const Rational& other) const {
  return (*this - other).numerator_ < 0;
}

Int128 Rational::Round() const {
  const Int128 whole = numerator_ / denominator_;
  const Int128 rest = numerator_ % denominator_;
  const Int128 twice = 2 * (rest < 0 ? -rest : rest);
  if (twice >= denominator_) return numerator_ < 0 ? whole - 1 : whole + 1;
  return whole;
}

Int128 Rational::RoundHalfEven() const {
  Int128 whole = numerator_ / denominator_;  // towards zero
  const Int128 rest = numerator_ % denominator_;
  const Int128 twice = 2 * (rest < 0 ? -rest : rest);
  if (twice > denominator_ || (twice == denominator_ && whole % 2 != 0)) {
    whole += numerator_ < 0 ? -1 : 1;
  }
  return whole;
}

std::string Rational::Text(int decimals, char point) const {
  const Int128 scaled = (*this * PowerOfTen(decimals)).Round();
  Int128 magnitude = scaled < 0 ? -scaled : scaled;
  std::string digits;
  do {
    digits += static_cast<char>('0' + static_cast<int>(magnitude % 10));
    magnitude /= 10;
  } while (magnitude != 0);
  std::reverse(digits.begin(), digits.end());
  if (static_cast<int>(digits.size()) <= decimals) {
    digits.insert(0, static_cast<size_t>(decimals) + 1 - digits.size(), '0');
  }
  std::string text = digits.substr(0, digits.size() - static_cast<size_t>(decimals));
  std::string fraction = digits.substr(digits.size() - static_cast<size_t>(decimals));
  while (!fraction.empty() && fraction.back() == '0') fraction.pop_back();
  if (!fraction.empty()) text += point + fraction;
  if (scaled < 0) text.insert(0, 1, '-');
  return text;
}

double Rational::ToDouble() const {
  return static_cast<double>(numerator_) / static_cast<double>(denominator_);
}

}  // namespace kolvane::internal
