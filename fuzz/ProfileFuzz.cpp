// Any bytes as a profile document against the bundled catalogue: loading, showing, saving and
// raw conversion must neither crash nor hang.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "FuzzSupport.h"

#include "Kolvane.h"
#include "foundation/Globals.h"


extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const auto catalogue = LoadDocument(KOLVANE_SOURCE_DIR "/examples/snvts.xml");
  static const auto table = LoadDocument(KOLVANE_SOURCE_DIR "/examples/nvotable.xml");
  auto document = std::make_shared<pugi::xml_document>();
  if (!document->load_buffer(data, size)) return 0;
  auto profile = kolvane::CreateProfile();
  profile->Iprofile_SetXmlDomDocs(catalogue, table);
  std::string name;
  profile->IProfile_FriendSet(document, name, nullptr, catalogue, table, "");
  for (const auto& nv : profile->IProfile_NVs()->INetworkVariables_NewEnum()) {
    (void)nv->INetworkVariable_DispValue();
    (void)nv->INetworkVariable_RawValue();
  }
  for (const auto& cp : profile->IProfile_CPs()->IConfigProperties_NewEnum()) {
    (void)cp->IConfigProperty_DispValue();
    (void)cp->IConfigProperty_RawValue();
  }
  pugi::xml_document saved;
  profile->Iprofile_SaveValueForInteroperability(saved.append_child("Values"), saved);
  profile->IProfile_XmlLoad(saved.first_child().first_child(), nullptr);
  return 0;
}
