#include "Json.h"

namespace kolvane::cli {

nlohmann::ordered_json& JsonWriter::Place(nlohmann::ordered_json value) {
  if (open_.empty()) {
    root_ = std::move(value);
    return root_;
  }
  nlohmann::ordered_json& container = *open_.back();
  if (container.is_array()) {
    container.push_back(std::move(value));
    return container.back();
  }
  nlohmann::ordered_json& member = container[key_];
  member = std::move(value);
  return member;
}

bool ReadExportedRows(const std::string& text, std::vector<app::CsvRecord>& records, std::string& error) {
  const nlohmann::json document = nlohmann::json::parse(text, nullptr, false);
  if (document.is_discarded()) {
    error = "not JSON text";
    return false;
  }
  if (!document.is_object() || !document.contains("rows") || !document["rows"].is_array()) {
    error = "expected the object \"kolvane export --format json\" writes, with \"rows\"";
    return false;
  }
  records.push_back({0, {"path", "value", "unit"}});
  int number = 0;
  for (const nlohmann::json& row : document["rows"]) {
    ++number;
    app::CsvRecord record{number, {}};
    for (const char* key : {"path", "value", "unit"}) {
      const bool present = row.is_object() && row.contains(key);
      if ((present && !row[key].is_string()) || (!present && key != std::string_view("unit"))) {
        error = "row " + std::to_string(number) + ": expected a text \"" + key + "\"";
        return false;
      }
      record.fields.push_back(present ? row[key].get<std::string>() : "");
    }
    records.push_back(std::move(record));
  }
  return true;
}

}  // namespace kolvane::cli

