#include "Compare.h"

#include <map>
#include <set>

#include "DeviceFiles.h"
#include "Export.h"
#include "Files.h"
#include "conversion/SNVTDataConversion.h"

namespace kolvane::app {

namespace {

// Whether two number texts of a type, in the display units, are the same bytes.
bool SameBytes(const std::string& id, const std::string& first, const std::string& second) {
  const auto type = CatalogueType(id);
  if (first.empty() || second.empty() || !IsNumberType(type.get())) return false;
  const auto raw = [&](const std::string& text) {
    return CheckedRawBytes(
        DisplayConverter()->FromDisplayUnits(id, SNVTDataConversion::LocalizeNumber(text)), *type);
  };
  try {
    const RawBytes a = raw(first);
    const RawBytes b = raw(second);
    return a.problem.empty() && b.problem.empty() && a.raw == b.raw;
  } catch (const Error&) {
    return false;  // a text the converter cannot read
  }
}

}  // namespace

DocumentKind KindOfDocument(const pugi::xml_document& document) {
  const std::string root = document.document_element().name();
  if (root == "Profile") return DocumentKind::kProfile;
  if (root == "ApplicationProfile" || document.select_node("//ApplicationProfile")) {
    return DocumentKind::kValues;
  }
  return DocumentKind::kOther;
}

std::shared_ptr<pugi::xml_document> ReadValuesDocument(const std::string& path, std::string& error) {
  auto document = ReadDocument(path, "", "", error);
  if (document && KindOfDocument(*document) != DocumentKind::kValues) {
    error = path + ": no ApplicationProfile: not a values document";
    return nullptr;
  }
  return document;
}

std::optional<ComparedFile> ReadComparedFile(const std::string& path, std::string& error) {
  if (IsDeviceFile(path)) return ComparedFile{DocumentKind::kProfile, nullptr};
  auto document = ReadDocument(path, "", "", error);
  if (!document) return std::nullopt;
  const DocumentKind kind = KindOfDocument(*document);
  if (kind == DocumentKind::kOther) {
    error = path +
            ": expected a profile (root \"Profile\") or a values document (\"ApplicationProfile\"), "
            "not \"" +
            document->document_element().name() + "\"";
    return std::nullopt;
  }
  return ComparedFile{kind, std::move(document)};
}

std::vector<Difference> CompareRows(const std::vector<std::vector<std::string>>& first,
                                    const std::vector<std::vector<std::string>>& second) {
  std::map<std::string, const std::vector<std::string>*> by_path;
  for (const auto& row : second) by_path.emplace(row[0], &row);
  std::set<std::string> seen;
  std::vector<Difference> differences;
  // Columns of an export row: 2 type, 3 direction, 4 value, 5 default, 6 minimum, 7 maximum,
  // 8 unit, 9 raw.
  const auto with_unit = [](const std::vector<std::string>& row, int column) {
    return column >= 4 && column <= 7 && !row[8].empty() ? row[column] + " " + row[8]
                                                         : row[column];
  };
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
    for (int column = 3; column <= 8; ++column) {
      if (row[column] == other[column]) continue;
      // Values are compared as the bytes they are: 21.5 and 21.504 are one value.
      if (column == 4 && !row[9].empty() && row[9] == other[9]) continue;
      if (column >= 4 && column <= 7 && SameBytes(row[2], row[column], other[column])) continue;
      differences.push_back({row[0], ExportColumns()[static_cast<size_t>(column)],
                             with_unit(row, column), with_unit(other, column)});
    }
  }
  for (const auto& row : second) {
    if (!seen.count(row[0])) differences.push_back({row[0], "only in second", "", row[2]});
  }
  return differences;
}

std::vector<std::vector<std::string>> ValuesRows(const pugi::xml_document& document) {
  std::vector<std::vector<std::string>> rows;
  for (const auto& found : document.select_nodes("//ApplicationProfile/ApPoint")) {
    const pugi::xml_node point = found.node();
    const std::string id = point.attribute("Type").value();
    const std::string value = point.attribute("Value").value();
    const bool number = IsNumberType(CatalogueType(id).get());
    std::vector<std::string> row(ExportColumns().size());
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

std::string DifferenceLine(const Difference& difference) {
  if (difference.what == "only in first") return "- " + difference.path + " (" + difference.first + ")";
  if (difference.what == "only in second") {
    return "+ " + difference.path + " (" + difference.second + ")";
  }
  return "~ " + difference.path + ": " + difference.what + " " + difference.first + " -> " +
         difference.second;
}

}  // namespace kolvane::app
