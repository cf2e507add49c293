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

namespace {

// The code point starting at text[i], and the bytes it takes.
char32_t CodePoint(const std::string& text, size_t i, size_t& length) {
  const auto lead = static_cast<unsigned char>(text[i]);
  length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xE ? 3 : (lead >> 3) == 0x1E ? 4 : 1;
  if (i + length > text.size()) length = 1;
  if (length == 1) return lead;
  char32_t point = lead & (0x7F >> length);
  for (size_t k = 1; k < length; ++k) point = point << 6 | (static_cast<unsigned char>(text[i + k]) & 0x3F);
  return point;
}

// Columns a terminal gives a code point: two for the wide East Asian scripts.
size_t Columns(char32_t point) {
  const bool wide = (point >= 0x1100 && point <= 0x115F) || (point >= 0x2E80 && point <= 0xA4CF) ||
                    (point >= 0xAC00 && point <= 0xD7A3) || (point >= 0xF900 && point <= 0xFAFF) ||
                    (point >= 0xFE30 && point <= 0xFE4F) || (point >= 0xFF00 && point <= 0xFF60) ||
                    (point >= 0xFFE0 && point <= 0xFFE6) || (point >= 0x20000 && point <= 0x3FFFD);
  return wide ? 2 : 1;
}

// A cell cut to at most kMaxCell columns, with an ellipsis where it was cut.
constexpr size_t kMaxCell = 60;

std::string Fitted(const std::string& cell) {
  if (DisplayWidth(cell) <= kMaxCell) return cell;
  std::string cut;
  size_t columns = 0;
  for (size_t i = 0, length = 0; i < cell.size(); i += length) {
    const size_t width = Columns(CodePoint(cell, i, length));
    if (columns + width > kMaxCell - 1) break;
    cut.append(cell, i, length);
    columns += width;
  }
  return cut + "\u2026";
}

}  // namespace

size_t DisplayWidth(const std::string& text) {
  size_t columns = 0;
  for (size_t i = 0, length = 0; i < text.size(); i += length) columns += Columns(CodePoint(text, i, length));
  return columns;
}

void Table::AddRow(std::vector<std::string> cells, std::string note) {
  for (std::string& cell : cells) cell = Fitted(cell);
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
