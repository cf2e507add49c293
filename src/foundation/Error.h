#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "foundation/Export.h"

namespace kolvane {

// Run-time error numbers, as Visual Basic numbers them.
namespace ErrorNumber {
inline constexpr int32_t kInvalidProcedureCall = 5;  // also: collection key not found
inline constexpr int32_t kOverflow = 6;
inline constexpr int32_t kSubscriptOutOfRange = 9;
inline constexpr int32_t kOutOfStackSpace = 28;  // also: a structure that contains itself
inline constexpr int32_t kTypeMismatch = 13;
inline constexpr int32_t kObjectNotSet = 91;
inline constexpr int32_t kCannotCreateObject = 429;
inline constexpr int32_t kDuplicateKey = 457;
}  // namespace ErrorNumber

// A run-time error raised by the library, carrying its error number.
class KOLVANE_API Error : public std::runtime_error {
 public:
  // An error with the standard description of its number, followed by detail when given.
  explicit Error(int32_t number, const std::string& detail = "");

  // The error number (see ErrorNumber).
  int32_t number() const noexcept { return number_; }
  // The detail given, without the standard description; the description when none was.
  const std::string& detail() const noexcept { return detail_; }

 private:
  int32_t number_;
  std::string detail_;
};

// The standard description of an error number ("Overflow", "Type mismatch", ...).
KOLVANE_API std::string ErrorDescription(int32_t number);

// Throws Error(number, detail); the one way library code raises a run-time error.
[[noreturn]] KOLVANE_API void RaiseError(int32_t number, const std::string& detail = "");

}  // namespace kolvane
