#include "types/CatalogueType.h"

#include "types/CSNVTType.h"

namespace kolvane {

std::shared_ptr<ISNVType> CatalogueType(const std::string& id) { return CSNVTType::Shared(id); }

}  // namespace kolvane
