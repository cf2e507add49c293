// Any bytes as a device interface file: reading must give a model or one XifError, never a
// crash or a hang; a model read is written back to a text that reads as the same model, and
// imports into a profile the library loads.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "FuzzSupport.h"

#include "Kolvane.h"
#include "conversion/RawBytes.h"
#include "xif/DeviceInterface.h"
#include "xif/XifImport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const auto catalogue = LoadDocument(KOLVANE_SOURCE_DIR "/examples/snvts.xml");
  static const auto table = LoadDocument(KOLVANE_SOURCE_DIR "/examples/nvotable.xml");
  static const auto scpts = LoadDocument(KOLVANE_SOURCE_DIR "/examples/scpts.xml");
  const std::string text(reinterpret_cast<const char*>(data), size);
  kolvane::xif::DeviceInterface device;
  try {
    device = kolvane::xif::ReadDeviceInterface(text);
  } catch (const kolvane::xif::XifError&) {
    return 0;
  }
  // What was read is written so that it reads back the same.
  const std::string written = kolvane::xif::WriteDeviceInterface(device);
  const std::string again =
      kolvane::xif::WriteDeviceInterface(kolvane::xif::ReadDeviceInterface(written));
  if (again != written) __builtin_trap();
  for (const auto& variable : device.variables) (void)variable.ParsedDoc();
  (void)device.FileProperties();
  Try([&] {
    const auto imported = kolvane::xif::ImportDeviceInterface(device, catalogue, *scpts, "fuzz");
    const auto types = kolvane::xif::CatalogueWithCarriedTypes(catalogue, *imported.document);
    auto profile = kolvane::CreateProfile();
    profile->Iprofile_SetXmlDomDocs(types, table);
    std::string name;
    profile->IProfile_FriendSet(imported.document, name, nullptr, types, table, "");
    for (const auto& cp : profile->IProfile_CPs()->IConfigProperties_NewEnum()) {
      (void)kolvane::CheckedRawBytes(cp);
    }
  });
  return 0;
}
