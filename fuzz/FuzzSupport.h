#pragma once

#include <memory>

#include <pugixml.hpp>

#include "foundation/Error.h"
#include "foundation/HostServices.h"

// A document read from a file of the source tree (empty when it cannot be read).
inline std::shared_ptr<pugi::xml_document> LoadDocument(const char* path) {
  auto document = std::make_shared<pugi::xml_document>();
  document->load_file(path);
  return document;
}

// Runs a host call that may raise the library's errors (the system's own error numbers); any
// other exception escapes and is a finding.
template <class Call>
void Try(Call&& call) {
  try {
    call();
  } catch (const kolvane::Error&) {
  }
}

// Message boxes answer at once and show nothing: a fuzzer meets thousands of them.
// Defined here, not inline: libFuzzer looks the symbol up, and an inline one is never emitted.
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  kolvane::SetMessageBoxHandler(
      [](const std::string&, int32_t, const std::string&) { return kolvane::vbOK; });
  return 0;
}
