#pragma once

#include <memory>
#include <string>

#include "foundation/Export.h"
#include "interfaces/ISNVType.h"

namespace kolvane {

// The type of identifier id ("105", "temp_p") in the catalogue last handed to a profile on this
// thread, as its items read it: a type the catalogue lacks has its identifier and no kind, and
// one of a bad kind is reported through the message box on every call, as by a load.
KOLVANE_API std::shared_ptr<ISNVType> CatalogueType(const std::string& id);

}  // namespace kolvane
