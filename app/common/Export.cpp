#include "Export.h"

#include <nlohmann/json.hpp>

#include "Csv.h"
#include "conversion/SNVTDataConversion.h"
#include "foundation/ContinueOnError.h"
#include "foundation/HostServices.h"

namespace kolvane::app {

namespace {

std::string DirectionOf(const ItemRef& item) {
  return item.kind == "in" || item.kind == "out" ? item.kind : "";
}

std::string ValueText(const ItemRef& item) {
  std::string value;
  ContinueOnError([&] { value = LeafValueOf(item); });
  return value;
}

// One row of an item: texts in the chosen display units, a number's unit in a column of its own.
std::vector<std::string> RowOf(const ItemRef& item, const std::string& direction) {
  const std::string id = TypeIdOf(item);
  const RawBytes bytes = RawBytesOf(item);
  if (!item.fields && IsNumberType(item.type.get())) {
    std::string default_value;
    ContinueOnError([&] { default_value = LeafDefaultOf(item); });
    return {item.path,
            item.kind,
            id,
            direction,
            ExportedValueOf(item),
            InDisplayUnits(id, default_value),
            InDisplayUnits(id, item.type->ISNVType_Min()),
            InDisplayUnits(id, item.type->ISNVType_Max()),
            DisplayConverter()->DisplayUnits(id),
            bytes.raw,
            bytes.problem};
  }
  const std::vector<std::string> shown = DisplayOf(item);
  return {item.path, item.kind, id, direction, ExportedValueOf(item), shown[1], shown[2], shown[3], "",
          bytes.raw, bytes.problem};
}

void AddRows(const ItemRef& item, const std::string& direction,
             std::vector<std::vector<std::string>>& rows) {
  rows.push_back(RowOf(item, direction));
  for (const ItemRef& field : FieldsOf(item)) AddRows(field, direction, rows);
}

}  // namespace

const std::vector<std::string>& ExportColumns() {
  static const std::vector<std::string> columns = {"path",    "kind",    "type",    "direction",
                                                   "value",   "default", "minimum", "maximum",
                                                   "unit",    "raw",     "raw_problem"};
  return columns;
}

std::shared_ptr<IUnitConverter> DisplayConverter() {
  return CreateObjectAs<IUnitConverter>("UnitManager.Converter");
}

std::string InDisplayUnits(const std::string& id, const std::string& value) {
  if (value.empty() || value == "Invalid") return value;
  return DisplayConverter()->ToDisplayUnits(id, SNVTDataConversion::LocalizeNumber(value));
}

std::string EnforcedLimitsOf(const ItemRef& item, const std::vector<std::string>& display) {
  if (!IsNumberType(item.type.get())) return LimitsOf(item, display);
  const std::string id = item.type->ISNVType_ID();
  const std::string unit = DisplayConverter()->DisplayUnits(id);
  const auto shown = [&](const std::string& limit) {
    if (limit.empty()) return std::string();
    const std::string number = InDisplayUnits(id, limit);
    return unit.empty() ? number : number + " " + unit;
  };
  const std::string minimum = item.type->ISNVType_Min();
  const std::string maximum = item.type->ISNVType_Max();
  if (minimum.empty() && maximum.empty()) return "";
  return shown(minimum) + " .. " + shown(maximum);
}

std::string ExportedValueOf(const ItemRef& item) {
  if (item.fields) return DisplayOf(item)[0];
  const std::string value = ValueText(item);
  if (!IsNumberType(item.type.get())) return value;
  return InDisplayUnits(item.type->ISNVType_ID(), value);
}

std::vector<std::vector<std::string>> ExportRows(const IProfile& profile) {
  std::vector<std::vector<std::string>> rows;
  for (const ItemRef& item : TopItems(profile)) AddRows(item, DirectionOf(item), rows);
  return rows;
}

void WriteExportCsv(std::ostream& out, const std::vector<std::vector<std::string>>& rows) {
  WriteCsvRecord(out, ExportColumns());
  for (const auto& row : rows) WriteCsvRecord(out, row);
}

void WriteExportJson(std::ostream& out, const std::string& profile_name,
                     const std::vector<std::vector<std::string>>& rows) {
  nlohmann::ordered_json document = {{"profile", profile_name}, {"rows", nlohmann::ordered_json::array()}};
  const auto& columns = ExportColumns();
  for (const auto& row : rows) {
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (size_t i = 0; i < columns.size() && i < row.size(); ++i) object[columns[i]] = row[i];
    document["rows"].push_back(std::move(object));
  }
  out << document.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

}  // namespace kolvane::app
