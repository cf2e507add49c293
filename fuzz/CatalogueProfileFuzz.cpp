// Any bytes as a type catalogue, and a profile that uses every type it names: as inputs and
// outputs (with enumeration and per-field overrides), as properties with defaults and bounds.
// Loading, showing, converting and saving must neither crash nor hang.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "FuzzSupport.h"

#include "Kolvane.h"
#include "foundation/Globals.h"
#include "types/SnvtCatalogue.h"

namespace {

void Show(const std::shared_ptr<kolvane::IFields>& fields) {
  if (!fields) return;
  for (const auto& field : fields->IFields_NewEnum()) {
    Try([&] { (void)field->IField_Value(); });
    Try([&] { (void)field->IField_DispValue(); });
    Try([&] { (void)field->IField_DispDefault(); });
    Try([&] { (void)field->IField_DispMin(); });
    Try([&] { (void)field->IField_Offset(); });
    Show(field->IField_Fields());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  auto catalogue = std::make_shared<pugi::xml_document>();
  if (!catalogue->load_buffer(data, size)) return 0;
  kolvane::Globals::SetSnvtCatalogDocument(catalogue);
  std::string nvs;
  std::string cps;
  int n = 0;
  for (const std::string& id : kolvane::internal::SnvtIdentifiers()) {
    if (++n > 16) break;
    if (id.empty() || id.find_first_of("<>&\"' ") != std::string::npos) continue;
    const std::string k = std::to_string(n);
    nvs += "<nvi" + k + " Type=\"" + id + "\" Direction=\"In\" Key=\"P" + k +
           "\"><ExtendedInfo Location=\"1;2\" ExportIndex=\"" + k +
           "\"><TypeOverride Type=\"Enum\"><States><State Name=\"A\" Value=\"0\"/></States>"
           "</TypeOverride></ExtendedInfo></nvi" + k + ">";
    nvs += "<nvo" + k + " Type=\"" + id + "\" Direction=\"Out\"><ExtendedInfo>"
           "<TypeOverride Type=\"Struct\"><Fields><Field Name=\"a\" Type=\"Float\"/></Fields>"
           "</TypeOverride></ExtendedInfo></nvo" + k + ">";
    cps += "<nci" + k + "><SNVTType>" + id + "</SNVTType><Default>1</Default><Min>0</Min>"
           "<Max>9</Max></nci" + k + ">";
  }
  auto document = std::make_shared<pugi::xml_document>();
  const std::string text = "<Profile><Name>F</Name><NVs>" + nvs + "</NVs><CPs>" + cps +
                           "</CPs></Profile>";
  if (!document->load_string(text.c_str())) return 0;
  auto table = std::make_shared<pugi::xml_document>();
  auto profile = kolvane::CreateProfile();
  profile->Iprofile_SetXmlDomDocs(catalogue, table);
  std::string name;
  profile->IProfile_FriendSet(document, name, nullptr, catalogue, table, "");
  for (const auto& nv : profile->IProfile_NVs()->INetworkVariables_NewEnum()) {
    Try([&] { (void)nv->INetworkVariable_Value(); });
    Try([&] { (void)nv->INetworkVariable_DispValue(); });
    Try([&] { (void)nv->INetworkVariable_DispMin(); });
    Try([&] { (void)nv->INetworkVariable_RawValue(); });
    Try([&] { (void)nv->INetworkVariable_InvalidRaw(); });
    Show(nv->INetworkVariable_Fields());
  }
  for (const auto& cp : profile->IProfile_CPs()->IConfigProperties_NewEnum()) {
    Try([&] { (void)cp->IConfigProperty_Value(); });
    Try([&] { (void)cp->IConfigProperty_DispValue(); });
    Try([&] { (void)cp->IConfigProperty_DispDefault(); });
    Try([&] { (void)cp->IConfigProperty_DispMax(); });
    Try([&] { (void)cp->IConfigProperty_RawValue(); });
    Show(cp->IConfigProperty_Fields());
  }
  pugi::xml_document saved;
  profile->Iprofile_XmlSaveValue(saved.append_child("Values"), saved);
  profile->Iprofile_SaveValueForInteroperability(saved.append_child("Values"), saved);
  kolvane::Globals::SetSnvtCatalogDocument(nullptr);
  return 0;
}
