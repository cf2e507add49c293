#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <vector>

namespace kolvane::app {

// One record of a CSV file, with the line it starts on.
struct CsvRecord {
  int line = 0;
  std::vector<std::string> fields;
};

// The records of RFC 4180 text: fields separated by commas, a field in double quotes may hold
// commas, line breaks and doubled quotes; lines end in CRLF or LF. False with error (naming the
// line) for a quote that is never closed.
bool ReadCsv(std::istream& in, std::vector<CsvRecord>& records, std::string& error);

// Writes one record: fields quoted where they hold a comma, a quote or a line break; CRLF.
void WriteCsvRecord(std::ostream& out, const std::vector<std::string>& fields);

}  // namespace kolvane::app
