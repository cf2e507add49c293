#include "Commands.h"
#include "Documents.h"
#include "Json.h"
#include "conversion/SNVTDataConversion.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"

namespace kolvane::cli {

int RunRaw(const RawOptions& options, std::ostream& out, std::ostream& err) {
  if (!UseCatalogue(options.common.catalogue, err)) return 1;
  Globals::DetectDecimalSeparator();
  const std::string name = "SNVT_" + options.type;
  if (!internal::FindSnvtElement(options.type)) {
    err << "kolvane: error: no type " << name << " in the catalogue\n";
    return 1;
  }
  CSNVTType type;
  type.Load(options.type);
  const std::string kind = type.ISNVType_GenType();
  if (kind == "Struct") {
    err << "kolvane: error: " << name
        << " is a structure: its raw value is made from its fields' values\n";
    return 1;
  }
  std::string raw;
  try {
    SNVTDataConversion::internal::AppendValueToRaw(raw, options.value, type.Kind(),
                                                   type.ISNVType_Length(),
                                                   static_cast<int16_t>(type.ISNVType_ACoef()),
                                                   static_cast<int16_t>(type.ISNVType_BCoef()),
                                                   static_cast<int16_t>(type.ISNVType_CCoef()));
  } catch (const Error& error) {
    err << "kolvane: error: \"" << options.value << "\" has no raw form as " << name << ": "
        << error.what() << '\n';
    return 1;
  }
  const size_t expected = 2 * static_cast<size_t>(type.ISNVType_Length());
  if (raw.size() != expected) {
    err << "kolvane: error: " << name << " (" << kind << ", " << type.ISNVType_Length()
        << " bytes) has no raw form of its length; the conversion gave \"" << raw << "\"\n";
    return 1;
  }
  if (options.common.json) {
    JsonWriter json(out);
    json.BeginObject().Member("type", options.type).Member("value", options.value);
    json.Member("raw", raw).EndObject();
  } else {
    out << raw << '\n';
  }
  return 0;
}

}  // namespace kolvane::cli
