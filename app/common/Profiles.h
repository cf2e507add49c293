#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Kolvane.h"

namespace kolvane::app {

// A profile loaded from a file, with the documents it was loaded from.
struct LoadedProfile {
  std::shared_ptr<IProfile> profile;
  std::shared_ptr<pugi::xml_document> document;   // the profile document (a device's: made)
  std::shared_ptr<pugi::xml_document> catalogue;  // with the types the profile carries
  std::vector<std::string> notes;                 // what a device's import could not say
};

// Reads a profile document, or imports a device interface file (".xif"), and loads it with the
// catalogue and NVO table on this thread, which the library's shared state then describes. An
// empty path reads the bundled example. Nothing, with why in error, when the file cannot be
// read; the library's own errors during the load propagate.
std::optional<LoadedProfile> LoadProfileFile(const std::string& path,
                                             const std::shared_ptr<pugi::xml_document>& catalogue,
                                             const std::shared_ptr<pugi::xml_document>& nvo_table,
                                             std::string& error);

}  // namespace kolvane::app
