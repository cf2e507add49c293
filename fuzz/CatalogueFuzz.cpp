// Any bytes as a type catalogue: loading every type it names must neither crash nor hang.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "FuzzSupport.h"

#include "foundation/Globals.h"
#include "foundation/HostServices.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  auto document = std::make_shared<pugi::xml_document>();
  if (!document->load_buffer(data, size)) return 0;
  kolvane::Globals::SetSnvtCatalogDocument(document);
  for (const auto& id : kolvane::internal::SnvtIdentifiers()) {
    kolvane::CSNVTType type;
    type.Load(id);
    if (type.ISNVType_GenType() == "Enum") (void)type.StateTexts();
  }
  return 0;
}
