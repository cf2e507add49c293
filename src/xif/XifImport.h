#pragma once

#include <memory>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "foundation/Export.h"
#include "xif/DeviceInterface.h"

namespace kolvane::xif {

// A device interface turned into a profile document.
struct ImportedProfile {
  std::shared_ptr<pugi::xml_document> document;
  // What the profile could not say as the file did (a property without bytes, a user type).
  std::vector<std::string> notes;
};

// The profile document of a device: its network variables with their standard types by index
// (types the catalogue lacks are carried in the profile's "Types", built from the element
// lines), its configuration properties (configuration variables and configuration file
// entries) with the standard property type's base type and their values decoded from the
// file's bytes, its program ID and functional blocks. catalogue: the type catalogue ("SNVTS");
// scpts: the standard property types ("SCPTS").
KOLVANE_API ImportedProfile ImportDeviceInterface(
    const DeviceInterface& device, const std::shared_ptr<pugi::xml_document>& catalogue,
    const pugi::xml_document& scpts, const std::string& name);

// A copy of catalogue with the types a profile document carries in its "Types" element added
// (a type the catalogue has already is left as the catalogue has it); catalogue itself when the
// profile carries none.
KOLVANE_API std::shared_ptr<pugi::xml_document> CatalogueWithCarriedTypes(
    const std::shared_ptr<pugi::xml_document>& catalogue, const pugi::xml_document& profile);

}  // namespace kolvane::xif
