#include "Commands.h"
#include "Documents.h"
#include "Json.h"
#include "Values.h"
#include "conversion/SNVTDataConversion.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"

namespace kolvane::cli {

int RunRaw(const RawOptions& options, std::ostream& out, std::ostream& err) {
  // A session for the display units a typed value is read in.
  Session session(options.common, err);
  if (!session.Open()) return 1;
  Globals::SetSnvtCatalogDocument(session.catalogue());
  Globals::DetectDecimalSeparator();
  std::string id = options.type;
  if (id.rfind("SNVT_", 0) == 0) id.erase(0, 5);
  const std::string name = "SNVT_" + id;
  if (!internal::FindSnvtElement(id)) {
    err << "kolvane: error: no type " << name << " in the catalogue\n";
    return 1;
  }
  auto type = std::make_shared<CSNVTType>();
  type->Load(id);
  if (type->Kind() == TypeKind::kStruct) {
    err << "kolvane: error: " << name
        << " is a structure: its raw value is made from its fields' values\n";
    return 1;
  }
  // The value is read as "save --set" reads it: display units, a typed unit, state names.
  const ItemRef item{name, "type", nullptr, type, nullptr};
  std::string value;
  std::string error;
  if (!ParseTypedValue(item, options.value, value, error)) {
    err << "kolvane: error: " << error << '\n';
    return 1;
  }
  std::string raw;
  try {
    raw = SNVTDataConversion::CheckedValueToRaw(value, *type);
  } catch (const Error& refused) {
    err << "kolvane: error: " << name << ": " << refused.detail() << '\n';
    return 1;
  }
  if (options.common.json) {
    JsonWriter json(out);
    json.BeginObject().Member("type", id).Member("value", options.value);
    json.Member("raw", raw).EndObject();
  } else {
    out << raw << '\n';
  }
  return 0;
}

}  // namespace kolvane::cli
