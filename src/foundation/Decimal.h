#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kolvane::internal {

__extension__ typedef __int128 Int128;

// An exact rational number for conversions that must not pass through binary floating point:
// decimal texts read exactly, products and sums kept exact, results written to a number of
// decimals. Not for numbers beyond about 10^30 (reading such a text gives nothing).
class Rational {
 public:
  Rational() = default;
  Rational(Int128 numerator, Int128 denominator);

  // The exact value of a decimal text: optional sign, digits, either decimal separator, optional
  // exponent ("1.5E+3"); nothing when the text is no such number or too large.
  static std::optional<Rational> FromText(std::string_view text);
  // "num/den" or a decimal text; nothing when unreadable.
  static std::optional<Rational> FromFraction(std::string_view text);
  // 10^exponent.
  static Rational PowerOfTen(int exponent);

  Rational operator+(const Rational& other) const;
  Rational operator-(const Rational& other) const;
  Rational operator*(const Rational& other) const;
  Rational operator/(const Rational& other) const;

  bool operator<(const Rational& other) const;

  // The nearest integer, halves away from zero.
  Int128 Round() const;
  // The nearest integer, halves to the even one.
  Int128 RoundHalfEven() const;
  // The value with at most decimals digits after the point (rounded, halves away from zero,
  // trailing zeros dropped) and point as the decimal separator.
  std::string Text(int decimals, char point) const;
  double ToDouble() const;

 private:
  Int128 numerator_ = 0;
  Int128 denominator_ = 1;
};

}  // namespace kolvane::internal
