#include "Profiles.h"

#include "DeviceFiles.h"
#include "Files.h"

namespace kolvane::app {

std::optional<LoadedProfile> LoadProfileFile(const std::string& path,
                                             const std::shared_ptr<pugi::xml_document>& catalogue,
                                             const std::shared_ptr<pugi::xml_document>& nvo_table,
                                             std::string& error) {
  LoadedProfile loaded;
  if (IsDeviceFile(path)) {
    auto imported = ImportDeviceFile(path, catalogue, error);
    if (!imported) return std::nullopt;
    loaded.document = imported->document;
    loaded.notes = imported->notes;
  } else {
    loaded.document = ReadDocument(path, "profile.xml", "Profile", error);
    if (!loaded.document) return std::nullopt;
  }
  loaded.catalogue = xif::CatalogueWithCarriedTypes(catalogue, *loaded.document);
  loaded.profile = CreateProfile();
  loaded.profile->Iprofile_SetXmlDomDocs(loaded.catalogue, nvo_table);
  std::string name;
  loaded.profile->IProfile_FriendSet(loaded.document, name, nullptr, loaded.catalogue, nvo_table,
                                     "");
  return loaded;
}

}  // namespace kolvane::app
