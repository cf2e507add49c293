#include "Csv.h"

namespace kolvane::app {

bool ReadCsv(std::istream& in, std::vector<CsvRecord>& records, std::string& error) {
  const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  int line = 1;
  CsvRecord record{line, {}};
  std::string field;
  bool quoted = false;
  bool any = false;  // the record has begun
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quoted) {
      if (c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
        field += '"';
        ++i;
      } else if (c == '"') {
        quoted = false;
      } else {
        if (c == '\n') ++line;
        field += c;
      }
      continue;
    }
    if (c == '"') {
      quoted = true;
      any = true;
    } else if (c == ',') {
      record.fields.push_back(field);
      field.clear();
      any = true;
    } else if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
      continue;
    } else if (c == '\n') {
      if (any || !field.empty()) {
        record.fields.push_back(field);
        records.push_back(record);
      }
      field.clear();
      any = false;
      record = CsvRecord{++line, {}};
    } else {
      field += c;
      any = true;
    }
  }
  if (quoted) {
    error = "line " + std::to_string(record.line) + ": a quoted field is never closed";
    return false;
  }
  if (any || !field.empty()) {
    record.fields.push_back(field);
    records.push_back(record);
  }
  return true;
}

void WriteCsvRecord(std::ostream& out, const std::vector<std::string>& fields) {
  for (size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) out << ',';
    const std::string& field = fields[i];
    if (field.find_first_of(",\"\r\n") == std::string::npos) {
      out << field;
      continue;
    }
    out << '"';
    for (const char c : field) out << (c == '"' ? "\"\"" : std::string(1, c));
    out << '"';
  }
  out << "\r\n";
}

}  // namespace kolvane::app
