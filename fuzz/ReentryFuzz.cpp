// A host that re-enters at every yield, driven by the fuzzer's bytes: while the profile loads,
// rebuilds its compatible lists, adds, removes and saves, the host adds, removes, renames and
// edits items, saves, rebuilds and hands in documents again. Nothing may touch freed memory.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "FuzzSupport.h"

#include "Kolvane.h"
#include "foundation/Globals.h"


extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const auto catalogue = LoadDocument(KOLVANE_SOURCE_DIR "/examples/snvts.xml");
  FuzzedDataProvider bytes(data, size);
  auto table = LoadDocument(KOLVANE_SOURCE_DIR "/examples/nvotable.xml");
  auto document = LoadDocument(KOLVANE_SOURCE_DIR "/examples/profile.xml");
  auto profile = kolvane::CreateProfile();
  profile->Iprofile_SetXmlDomDocs(catalogue, table);

  int depth = 0;
  int actions = 0;
  const auto act = [&] {
    if (depth > 1 || bytes.remaining_bytes() == 0 || ++actions > 200) return;
    ++depth;
    const auto nvs = profile->IProfile_NVs();
    const auto cps = profile->IProfile_CPs();
    const auto variables = nvs->INetworkVariables_NewEnum();
    const auto properties = cps->IConfigProperties_NewEnum();
    switch (bytes.ConsumeIntegralInRange<int>(0, 11)) {
      case 0:
        Try([&] { profile->Iprofile_AddNetworkItem(2, "temp_p", "nviAdded", 0, nullptr, ""); });
        break;
      case 1:
        Try([&] { profile->Iprofile_AddNetworkItem(3, "switch", "nciAdded", 0, nullptr, ""); });
        break;
      case 2:
        if (!variables.empty()) {
          nvs->INetworkVariables_Remove(
              variables[bytes.ConsumeIntegralInRange<size_t>(0, variables.size() - 1)]);
        }
        break;
      case 3:
        if (!properties.empty()) {
          Try([&] {
            cps->IConfigProperties_Remove(
                properties[bytes.ConsumeIntegralInRange<size_t>(0, properties.size() - 1)]);
          });
        }
        break;
      case 4:
        if (!variables.empty()) {
          const auto& variable = variables[bytes.ConsumeIntegralInRange<size_t>(0, variables.size() - 1)];
          Try([&] { variable->INetworkVariable_Value(bytes.ConsumeRandomLengthString(12)); });
          Try([&] { variable->INetworkVariable_Name(bytes.ConsumeRandomLengthString(8)); });
          Try([&] { (void)variable->INetworkVariable_Value(); });
        }
        break;
      case 5: {
        pugi::xml_document saved;
        profile->Iprofile_XmlSaveValue(saved.append_child("Values"), saved);
        break;
      }
      case 6:
        Try([&] { profile->Iprofile_RebuildCompatibilityList(); });
        break;
      case 7:
        // A table handed in again, or another one: the walk keeps the one it started with.
        table = bytes.ConsumeBool() ? LoadDocument(KOLVANE_SOURCE_DIR "/examples/nvotable.xml")
                                    : std::make_shared<pugi::xml_document>();
        profile->Iprofile_SetXmlDomDocs(catalogue, table);
        break;
      case 8:
        kolvane::Globals::SetSnvtCatalogDocument(catalogue);
        break;
      case 9: {
        // A second load into the same profile, from inside the first.
        auto small = std::make_shared<pugi::xml_document>();
        small->load_string("<Profile><NVs><nviX Type=\"temp_p\" Direction=\"In\"/></NVs>"
                           "<CPs><nciX><SNVTType>lux</SNVTType></nciX></CPs></Profile>");
        std::string name;
        profile->IProfile_FriendSet(small, name, nullptr, catalogue, table, "");
        break;
      }
      case 10:
        if (!properties.empty()) {
          Try([&] { properties.front()->IConfigProperty_Value(bytes.ConsumeRandomLengthString(8)); });
          Try([&] { (void)properties.front()->IConfigProperty_RawValue(); });
        }
        break;
      default:
        // The document itself handed in again as another object.
        document = LoadDocument(KOLVANE_SOURCE_DIR "/examples/profile.xml");
        break;
    }
    --depth;
  };
  const kolvane::YieldHandler previous = kolvane::SetYieldHandler(act);
  std::string name;
  profile->IProfile_FriendSet(document, name, nullptr, catalogue, table, "");
  Try([&] { profile->Iprofile_RebuildCompatibilityList(); });
  Try([&] { profile->Iprofile_AddNetworkItem(2, "temp_p", "nviLast", 0, nullptr, ""); });
  const auto variables = profile->IProfile_NVs()->INetworkVariables_NewEnum();
  if (!variables.empty()) profile->IProfile_NVs()->INetworkVariables_Remove(variables.front());
  pugi::xml_document saved;
  profile->Iprofile_SaveValueForInteroperability(saved.append_child("Values"), saved);
  kolvane::SetYieldHandler(previous);
  profile->IProfile_ClearParent();
  kolvane::Globals::SetSnvtCatalogDocument(nullptr);
  return 0;
}
