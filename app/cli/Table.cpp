#include "Table.h"

#include <algorithm>
#include <sstream>

namespace kolvane::cli {

namespace {

void PrintCells(std::ostream& out, const std::vector<std::string>& cells,
                const std::vector<size_t>& widths) {
  std::string line;
  for (size_t i = 0; i < widths.size(); ++i) {
    const std::string cell = i < cells.size() ? cells[i] : "";
    line += cell;
    if (i + 1 < widths.size()) line += std::string(widths[i] - DisplayWidth(cell) + 2, ' ');
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  out << line << '\n';
}

// Writes note indented, words wrapped at width.
void PrintNote(std::ostream& out, const std::string& note, size_t width) {
  const std::string indent = "    ";
  std::istringstream words(note);
  std::string word;
  std::string line = indent;
  while (words >> word) {
    if (line.size() > indent.size() && DisplayWidth(line) + 1 + DisplayWidth(word) > width) {
      out << line << '\n';
      line = indent + "  ";
    }
    if (line.size() > indent.size() && line.back() != ' ') line += ' ';
    line += word;
  }
  if (line.size() > indent.size()) out << line << '\n';
}

}  // namespace

size_t DisplayWidth(const std::string& text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

void Table::AddRow(std::vector<std::string> cells, std::string note) {
  rows_.push_back({std::move(cells), std::move(note)});
}

void Table::Print(std::ostream& out, size_t width) const {
  std::vector<size_t> widths(header_.size());
  for (size_t i = 0; i < header_.size(); ++i) widths[i] = DisplayWidth(header_[i]);
  for (const Row& row : rows_) {
    for (size_t i = 0; i < row.cells.size() && i < widths.size(); ++i) {
      widths[i] = std::max(widths[i], DisplayWidth(row.cells[i]));
    }
  }
  PrintCells(out, header_, widths);
  for (const Row& row : rows_) {
    PrintCells(out, row.cells, widths);
    if (!row.note.empty()) PrintNote(out, row.note, width);
  }
}

}  // namespace kolvane::cli
