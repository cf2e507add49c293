// Export of every item and field, and differences between two profiles or values documents.

#include <fstream>
#include <map>
#include <set>

#include "Commands.h"
#include "Csv.h"
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

// "raw" holds the bytes a device holds; "raw_problem" why there are none.
const std::vector<std::string> kColumns = {"path",    "kind",    "type",    "direction",
                                           "value",   "default", "minimum", "maximum",
                                           "unit",    "raw",     "raw_problem"};

std::shared_ptr<IUnitConverter> Converter() {
  return CreateObjectAs<IUnitConverter>("UnitManager.Converter");
}

bool IsNumber(const ISNVType* type) { return type && IsNumeric(KindOf(*type)); }

// A number text of a type's own unit in the chosen display units (no unit text).
std::string InDisplayUnits(const std::string& id, const std::string& value) {
  if (value.empty() || value == "Invalid") return value;
  return Converter()->ToDisplayUnits(id, SNVTDataConversion::LocalizeNumber(value));
}

std::string DefaultOf(const ItemRef& item) {
  std::string text;
  ContinueOnError([&] {
    if (auto nv = std::dynamic_pointer_cast<INetworkVariable>(item.object)) {
      text = nv->INetworkVariable_DefaultValue();
    } else if (auto cp = std::dynamic_pointer_cast<IConfigProperty>(item.object)) {
      text = cp->IConfigProperty_DefaultValue();
    } else if (auto field = std::dynamic_pointer_cast<IField>(item.object)) {
      text = field->IField_DefaultValue();
    }
  });
  return text;
}

std::string DirectionOf(const ItemRef& item) {
  return item.kind == "in" || item.kind == "out" ? item.kind : "";
}

}  // namespace

std::string ExportedValueOf(const ItemRef& item) {
  // A structure as its fields show: each number in the display units, with its unit.
  if (item.fields) return DisplayOf(item)[0];
  std::string value;
  ContinueOnError([&] { value = ValueOf(item); });
  if (!IsNumber(item.type.get())) return value;
  return InDisplayUnits(item.type->ISNVType_ID(), value);
}

namespace {

// One row of an item: texts in the chosen display units, a number's unit in a column of its own.
std::vector<std::string> RowOf(const ItemRef& item, const std::string& direction) {
  const std::string id = item.type ? item.type->ISNVType_ID() : "";
  const std::vector<std::string> shown = DisplayOf(item);
  std::string value;
  ContinueOnError([&] { value = ValueOf(item); });
  const RawBytes bytes = RawBytesOf(item);
  if (IsNumber(item.type.get())) {
    return {item.path,
            item.kind,
            id,
            direction,
            ExportedValueOf(item),
            InDisplayUnits(id, DefaultOf(item)),
            InDisplayUnits(id, item.type->ISNVType_Min()),
            InDisplayUnits(id, item.type->ISNVType_Max()),
            Converter()->DisplayUnits(id),
            bytes.raw,
            bytes.problem};
  }
  return {item.path, item.kind, id, direction, ExportedValueOf(item), shown[1], shown[2], shown[3], "",
          bytes.raw, bytes.problem};
}

void AddRows(const ItemRef& item, const std::string& direction,
             std::vector<std::vector<std::string>>& rows) {
  rows.push_back(RowOf(item, direction));
  for (const ItemRef& field : FieldsOf(item)) AddRows(field, direction, rows);
}

std::vector<std::vector<std::string>> Rows(const IProfile& profile) {
  std::vector<std::vector<std::string>> rows;
  for (const ItemRef& item : TopItems(profile)) AddRows(item, DirectionOf(item), rows);
  return rows;
}

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
          Converter()->FromDisplayUnits(id, SNVTDataConversion::LocalizeNumber(text)), *type);
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
  // Compared columns (index into kColumns): type, direction, value, default, minimum, maximum.
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
      differences.push_back({row[0], kColumns[static_cast<size_t>(column)], row[column] + unit,
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
    std::vector<std::string> row(kColumns.size());
    row[0] = point.attribute("Name").value();
    row[1] = "point";
    row[2] = id;
    row[3] = point.attribute("Direction").value();
    row[4] = number ? InDisplayUnits(id, value) : value;
    row[8] = number ? Converter()->DisplayUnits(id) : "";
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
  const auto rows = Rows(*profile);
  if (options.format == "json" || options.common.json) {
    JsonWriter json(out);
    json.BeginObject().Member("profile", profile->IProfile_Name()).Key("rows").BeginArray();
    for (const auto& row : rows) {
      json.BeginObject();
      for (size_t i = 0; i < kColumns.size(); ++i) json.Member(kColumns[i], row[i]);
      json.EndObject();
    }
    json.EndArray().EndObject();
    return 0;
  }
  WriteCsvRecord(out, kColumns);
  for (const auto& row : rows) WriteCsvRecord(out, row);
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
    const auto first_rows = Rows(*a);
    const auto b = session.LoadProfile(options.second);
    if (!b) return kTrouble;
    differences = Compare(first_rows, Rows(*b));
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
