// Export of every item and field, and differences between two profiles or values documents.

#include <fstream>
#include <map>
#include <set>

#include "Commands.h"
#include "Export.h"
#include "Documents.h"
#include "Files.h"
#include "Items.h"
#include "Json.h"
#include "conversion/SNVTDataConversion.h"
#include "foundation/ContinueOnError.h"
#include "foundation/Globals.h"
#include "types/CSNVTType.h"

namespace kolvane::cli {

namespace {

constexpr int kTrouble = 2;

using app::DisplayConverter;
using app::ExportRows;
using app::InDisplayUnits;

bool IsNumber(const ISNVType* type) { return app::IsNumberType(type); }

// What a document is: a profile, a values document, or neither.
enum class Document { kProfile, kValues, kOther };

Document KindOfDocument(const pugi::xml_document& document) {
  const std::string root = document.document_element().name();
  if (root == "Profile") return Document::kProfile;
  if (root == "ApplicationProfile" || document.select_node("//ApplicationProfile")) {
    return Document::kValues;
  }
  return Document::kOther;
}

// Whether two number texts of a type, in the display units, are the same bytes.
bool SameBytes(const std::string& id, const std::string& first, const std::string& second) {
  const auto type = CSNVTType::Shared(id);
  if (first.empty() || second.empty() || !IsNumber(type.get())) return false;
  try {
    const auto raw = [&](const std::string& text) {
      return SNVTDataConversion::CheckedValueToRaw(
          DisplayConverter()->FromDisplayUnits(id, SNVTDataConversion::LocalizeNumber(text)), *type);
    };
    return raw(first) == raw(second);
  } catch (const Error&) {
    return false;
  }
}

struct Difference {
  std::string path;
  std::string what;  // "only in first", "only in second", "type", "value", "default", ...
  std::string first;
  std::string second;
};

// Rows by path, in first-seen order.
std::vector<Difference> Compare(const std::vector<std::vector<std::string>>& first,
                                const std::vector<std::vector<std::string>>& second) {
  std::map<std::string, const std::vector<std::string>*> by_path;
  for (const auto& row : second) by_path.emplace(row[0], &row);
  std::set<std::string> seen;
  std::vector<Difference> differences;
  // Compared columns (index into the export columns): type, direction, value, default, minimum, maximum.
  const int compared[] = {2, 3, 4, 5, 6, 7, 8};
  for (const auto& row : first) {
    seen.insert(row[0]);
    const auto found = by_path.find(row[0]);
    if (found == by_path.end()) {
      differences.push_back({row[0], "only in first", row[2], ""});
      continue;
    }
    const auto& other = *found->second;
    if (row[2] != other[2]) {
      differences.push_back({row[0], "type", row[2], other[2]});
      continue;  // the other texts of another type say little
    }
    for (const int column : compared) {
      if (column == 2 || row[column] == other[column]) continue;
      // Values are compared as the bytes they are: 21.5 and 21.504 are one value.
      if (column == 4 && !row[9].empty() && row[9] == other[9]) continue;
      if (column >= 4 && column <= 7 && SameBytes(row[2], row[column], other[column])) continue;
      const std::string unit = column >= 4 && column <= 7 && !row[8].empty() ? " " + row[8] : "";
      differences.push_back({row[0], app::ExportColumns()[static_cast<size_t>(column)], row[column] + unit,
                             other[column] + (column >= 4 && column <= 7 && !other[8].empty()
                                                  ? " " + other[8]
                                                  : "")});
    }
  }
  for (const auto& row : second) {
    if (!seen.count(row[0])) differences.push_back({row[0], "only in second", "", row[2]});
  }
  return differences;
}

// The records of a values document: name, type and value (in display units) per point.
std::vector<std::vector<std::string>> ValuesRows(const pugi::xml_document& document) {
  std::vector<std::vector<std::string>> rows;
  for (const auto& found : document.select_nodes("//ApplicationProfile/ApPoint")) {
    const pugi::xml_node point = found.node();
    const std::string id = point.attribute("Type").value();
    const std::string value = point.attribute("Value").value();
    const auto type = CSNVTType::Shared(id);
    const bool number = IsNumber(type.get());
    std::vector<std::string> row(app::ExportColumns().size());
    row[0] = point.attribute("Name").value();
    row[1] = "point";
    row[2] = id;
    row[3] = point.attribute("Direction").value();
    row[4] = number ? InDisplayUnits(id, value) : value;
    row[8] = number ? DisplayConverter()->DisplayUnits(id) : "";
    rows.push_back(row);
  }
  return rows;
}

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
  const auto first = app::ReadDocument(options.first, "", "", error);
  const auto second = first ? app::ReadDocument(options.second, "", "", error) : nullptr;
  if (!second) {
    err << "kolvane: error: " << error << '\n';
    return kTrouble;
  }
  const Document kind = KindOfDocument(*first);
  for (const auto& [path, document] : {std::pair{options.first, first}, {options.second, second}}) {
    if (KindOfDocument(*document) == Document::kOther) {
      err << "kolvane: error: " << path
          << ": expected a profile (root \"Profile\") or a values document (\"ApplicationProfile\"), "
             "not \""
          << document->document_element().name() << "\"\n";
      return kTrouble;
    }
    if (KindOfDocument(*document) != kind) {
      err << "kolvane: error: " << path << ": expected a "
          << (kind == Document::kProfile ? "profile" : "values document") << " like "
          << options.first << '\n';
      return kTrouble;
    }
  }
  std::vector<Difference> differences;
  if (kind == Document::kProfile) {
    // Each profile's rows are read before the next load replaces the shared documents.
    const auto a = session.LoadProfile(options.first);
    if (!a) return kTrouble;
    const auto first_rows = ExportRows(*a);
    const auto b = session.LoadProfile(options.second);
    if (!b) return kTrouble;
    differences = Compare(first_rows, ExportRows(*b));
  } else {
    // Types are read from the catalogue, as a profile's are.
    Globals::SetSnvtCatalogDocument(session.catalogue());
    differences = Compare(ValuesRows(*first), ValuesRows(*second));
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
    for (const Difference& d : differences) {
      if (d.what == "only in first") {
        out << "- " << d.path << " (" << d.first << ")\n";
      } else if (d.what == "only in second") {
        out << "+ " << d.path << " (" << d.second << ")\n";
      } else {
        out << "~ " << d.path << ": " << d.what << " " << d.first << " -> " << d.second << '\n';
      }
    }
  }
  return differences.empty() ? 0 : 1;
}

}  // namespace kolvane::cli
