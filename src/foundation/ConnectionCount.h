#pragma once

#include <cstdint>
#include <limits>

#include "foundation/Error.h"

namespace kolvane::internal {

// Counts connections to an item: a connect raises the count and sets the flag; a disconnect
// lowers it and clears the flag only when the count was 1. The count is not kept from going
// below zero: a disconnect without a connect leaves the flag set. Error 6 on overflow.
inline void CountConnection(bool connect, int32_t& count, bool& connected) {
  if (connect) {
    if (count == std::numeric_limits<int32_t>::max()) {
      RaiseError(ErrorNumber::kOverflow, "connection count");
    }
    ++count;
    connected = true;
    return;
  }
  if (count == std::numeric_limits<int32_t>::min()) {
    RaiseError(ErrorNumber::kOverflow, "connection count");
  }
  connected = count != 1;
  --count;
}

}  // namespace kolvane::internal
