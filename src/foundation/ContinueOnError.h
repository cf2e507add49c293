#pragma once

#include <cstdint>
#include <exception>
#include <utility>

#include "foundation/Error.h"

namespace kolvane {

// Runs one step of a continue-on-error procedure: an error the step raises is swallowed and the
// caller goes on with its next step. Returns 0 when the step ran through, else the error number
// (5 for a failure that carries none).
//
//   ContinueOnError([&] { factor_ = RoundToInt32(ParseNumber(attr.value())); });
//   ContinueOnError([&] { name_ = child.text().get(); });
template <class Step>
int32_t ContinueOnError(Step&& step) noexcept {
  try {
    std::forward<Step>(step)();
    return 0;
  } catch (const Error& e) {
    return e.number();
  } catch (...) {
    return ErrorNumber::kInvalidProcedureCall;
  }
}

}  // namespace kolvane
