#pragma once

#include "foundation/HostServices.h"

// Message boxes answer at once and show nothing: a fuzzer meets thousands of them.
extern "C" inline int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  kolvane::SetMessageBoxHandler(
      [](const std::string&, int32_t, const std::string&) { return kolvane::vbOK; });
  return 0;
}
