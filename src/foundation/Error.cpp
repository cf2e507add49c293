#include "foundation/Error.h"

namespace kolvane {

namespace {

std::string Describe(int32_t number, const std::string& detail) {
  std::string text = ErrorDescription(number);
  if (!detail.empty()) text += ": " + detail;
  return text;
}

}  // namespace

Error::Error(int32_t number, const std::string& detail)
    : std::runtime_error(Describe(number, detail)),
      number_(number),
      detail_(detail.empty() ? ErrorDescription(number) : detail) {}

std::string ErrorDescription(int32_t number) {
  switch (number) {
    case ErrorNumber::kInvalidProcedureCall:
      return "Invalid procedure call or argument";
    case ErrorNumber::kOverflow:
      return "Overflow";
    case ErrorNumber::kSubscriptOutOfRange:
      return "Subscript out of range";
    case ErrorNumber::kOutOfStackSpace:
      return "Out of stack space";
    case ErrorNumber::kTypeMismatch:
      return "Type mismatch";
    case ErrorNumber::kObjectNotSet:
      return "Object variable not set";
    case ErrorNumber::kCannotCreateObject:
      return "Component can't create object";
    case ErrorNumber::kDuplicateKey:
      return "This key is already associated with an element of this collection";
    default:
      return "Run-time error " + std::to_string(number);
  }
}

void RaiseError(int32_t number, const std::string& detail) { throw Error(number, detail); }

}  // namespace kolvane
