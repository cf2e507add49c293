// Export of every item and field, and differences between two profiles or values documents.

#include <fstream>

#include "Commands.h"
#include "Compare.h"
#include "Export.h"
#include "Documents.h"
#include "Files.h"
#include "Items.h"
#include "Json.h"
#include "foundation/Globals.h"

namespace kolvane::cli {

namespace {

constexpr int kTrouble = 2;

using app::Difference;
using app::DocumentKind;
using app::ExportRows;

}  // namespace

int RunExport(const ExportOptions& options, std::ostream& out, std::ostream& err) {
  Session session(options.common, err);
  if (!session.Open()) return 1;
  const auto profile = session.LoadProfile(options.profile);
  if (!profile) return 1;
  const auto rows = ExportRows(*profile);
  if (options.format == "json" || options.common.json) {
    app::WriteExportJson(out, profile->IProfile_Name(), rows);
  } else {
    app::WriteExportCsv(out, rows);
  }
  return 0;
}

int RunDiff(const DiffOptions& options, std::ostream& out, std::ostream& err) {
  Session session(options.common, err);
  if (!session.Open()) return kTrouble;
  std::string error;
  const auto first = app::ReadComparedFile(options.first, error);
  const auto second = first ? app::ReadComparedFile(options.second, error) : std::nullopt;
  if (!second) {
    err << "kolvane: error: " << error << '\n';
    return kTrouble;
  }
  const DocumentKind kind = first->kind;
  if (second->kind != kind) {
    err << "kolvane: error: " << options.second << ": expected a "
        << (kind == DocumentKind::kProfile ? "profile" : "values document") << " like "
        << options.first << '\n';
    return kTrouble;
  }
  std::vector<Difference> differences;
  if (kind == DocumentKind::kProfile) {
    // Each profile's rows are read before the next load replaces the shared documents.
    const auto a = session.LoadProfile(options.first);
    if (!a) return kTrouble;
    const auto first_rows = ExportRows(*a);
    const auto b = session.LoadProfile(options.second);
    if (!b) return kTrouble;
    differences = app::CompareRows(first_rows, ExportRows(*b));
  } else {
    // Types are read from the catalogue, as a profile's are.
    Globals::SetSnvtCatalogDocument(session.catalogue());
    differences = app::CompareRows(app::ValuesRows(*first->document), app::ValuesRows(*second->document));
  }
  if (options.common.json) {
    JsonWriter json(out);
    json.BeginObject().Key("equal").Bool(differences.empty()).Key("differences").BeginArray();
    for (const Difference& d : differences) {
      json.BeginObject()
          .Member("path", d.path)
          .Member("what", d.what)
          .Member("first", d.first)
          .Member("second", d.second)
          .EndObject();
    }
    json.EndArray().EndObject();
  } else {
    for (const Difference& d : differences) out << app::DifferenceLine(d) << '\n';
  }
  return differences.empty() ? 0 : 1;
}

}  // namespace kolvane::cli
