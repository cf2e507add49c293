#include <sstream>

#include "Commands.h"
#include "Documents.h"
#include "Json.h"
#include "types/NvoTable.h"
#include "types/SnvtCatalogue.h"

namespace kolvane::cli {

namespace {

std::string Readable(const std::string& list) {
  if (list.empty()) return "(none)";
  std::string text = list;
  for (size_t at = text.find(','); at != std::string::npos; at = text.find(',', at + 2)) {
    text.replace(at, 1, ", ");
  }
  return text;
}

}  // namespace

int RunCompat(const CompatOptions& given, std::ostream& out, std::ostream& err) {
  CompatOptions options = given;
  if (options.type.rfind("SNVT_", 0) == 0) options.type.erase(0, 5);  // "SNVT_temp_p" is temp_p
  if (!UseCatalogue(options.common.catalogue, err)) return 1;
  const auto table_document = ReadDocument(options.common.nvo, "nvotable.xml", "NVOTable", err);
  if (!table_document) return 1;
  if (!internal::FindSnvtElement(options.type)) {
    err << "kolvane: error: no type SNVT_" << options.type << " in the catalogue\n";
    return 1;
  }
  const internal::NvoTable table(*table_document);
  if (options.common.json) {
    const auto list = [](const std::string& text) {
      std::vector<std::string> ids;
      std::istringstream tokens(text);
      for (std::string id; std::getline(tokens, id, ',');) {
        if (!id.empty()) ids.push_back(id);
      }
      return ids;
    };
    JsonWriter json(out);
    json.BeginObject().Member("type", options.type).Key("outputs").BeginArray();
    for (const auto& id : list(table.OutputsListing(options.type))) json.String(id);
    json.EndArray().Key("inputs").BeginArray();
    for (const auto& id : list(table.CompatibleTypes(options.type))) json.String(id);
    json.EndArray().EndObject();
    return 0;
  }
  out << "Outputs an input of SNVT_" << options.type
      << " connects to: " << Readable(table.OutputsListing(options.type)) << '\n';
  out << "Inputs an output of SNVT_" << options.type
      << " connects to: " << Readable(table.CompatibleTypes(options.type)) << '\n';
  return 0;
}

}  // namespace kolvane::cli
