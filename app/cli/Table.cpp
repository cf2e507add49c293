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

// A cell is cut to at most kMaxCell columns unless its column says otherwise, with an
// ellipsis where it was cut.
constexpr size_t kMaxCell = 60;

// The first columns of text, cut at a character boundary.
std::string Head(const std::string& text, size_t columns) {
  std::string head;
  size_t used = 0;
  for (size_t i = 0, length = 0; i < text.size(); i += length) {
    const size_t width = Columns(CodePoint(text, i, length));
    if (used + width > columns) break;
    head.append(text, i, length);
    used += width;
  }
  return head;
}

std::string Fitted(const std::string& cell, size_t limit) {
  if (DisplayWidth(cell) <= limit) return cell;
  return Head(cell, limit - 1) + "\u2026";
}

}  // namespace

size_t DisplayWidth(const std::string& text) {
  size_t columns = 0;
  for (size_t i = 0, length = 0; i < text.size(); i += length) columns += Columns(CodePoint(text, i, length));
  return columns;
}

namespace {

constexpr size_t kMaxEcho = 160;
constexpr size_t kEchoKept = 60;
constexpr size_t kMaxMessage = 2000;

}  // namespace

std::string Bounded(const std::string& message) {
  std::string bounded;
  for (size_t start = 0; start < message.size();) {
    const size_t blank = message.find_first_of(" \t\n", start);
    const size_t end = blank == std::string::npos ? message.size() : blank;
    const std::string word = message.substr(start, end - start);
    if (DisplayWidth(word) > kMaxEcho) {
      // A closing quote or mark stays, so the message still reads.
      const size_t mark = word.find_last_not_of("\"'),.;:");
      const std::string closing = mark == std::string::npos ? "" : word.substr(mark + 1);
      bounded += Head(word, kEchoKept) + "\u2026 (" + std::to_string(word.size()) + " bytes)" + closing;
    } else {
      bounded += word;
    }
    if (end < message.size()) bounded += message[end];
    start = end + 1;
  }
  if (DisplayWidth(bounded) <= kMaxMessage) return bounded;
  // Keep the head and the tail, where a message names the item and the reason.
  const std::string head = Head(bounded, kMaxMessage / 2);
  const size_t total = DisplayWidth(bounded);
  size_t cut = head.size();
  for (size_t used = DisplayWidth(head), length = 0; total - used > kMaxMessage / 2; cut += length) {
    used += Columns(CodePoint(bounded, cut, length));
  }
  return head + " \u2026 (" + std::to_string(cut - head.size()) + " bytes) \u2026 " + bounded.substr(cut);
}

BoundedLines::~BoundedLines() {
  if (!line_.empty()) target_ << Bounded(line_) << std::flush;
}

int BoundedLines::overflow(int character) {
  if (character == traits_type::eof()) return traits_type::not_eof(character);
  line_.push_back(static_cast<char>(character));
  if (character == '\n') {
    target_ << Bounded(line_) << std::flush;
    line_.clear();
  }
  return character;
}

void Table::Limit(size_t column, size_t columns) {
  if (limits_.size() <= column) limits_.resize(column + 1, kMaxCell);
  limits_[column] = std::max<size_t>(columns, 2);
}

void Table::AddRow(std::vector<std::string> cells, std::string note) {
  for (size_t i = 0; i < cells.size(); ++i) {
    cells[i] = Fitted(cells[i], i < limits_.size() ? limits_[i] : kMaxCell);
  }
  rows_.push_back({std::move(cells), std::move(note)});
}

void Table::FitTo(size_t width, std::vector<size_t> narrowable) {
  fit_width_ = width;
  narrowable_ = std::move(narrowable);
}

void Table::Print(std::ostream& out, size_t width) const {
  std::vector<size_t> widths(header_.size());
  for (size_t i = 0; i < header_.size(); ++i) widths[i] = DisplayWidth(header_[i]);
  for (const Row& row : rows_) {
    for (size_t i = 0; i < row.cells.size() && i < widths.size(); ++i) {
      widths[i] = std::max(widths[i], DisplayWidth(row.cells[i]));
    }
  }
  if (fit_width_ > 0) {
    constexpr size_t kNarrowest = 10;
    size_t total = widths.empty() ? 0 : 2 * (widths.size() - 1);
    for (const size_t column : widths) total += column;
    while (total > fit_width_) {
      size_t* widest = nullptr;
      for (const size_t i : narrowable_) {
        if (i < widths.size() && widths[i] > kNarrowest && (!widest || widths[i] > *widest)) {
          widest = &widths[i];
        }
      }
      if (!widest) break;  // as narrow as the columns go
      --*widest;
      --total;
    }
  }
  const auto fitted = [&](std::vector<std::string> cells) {
    for (size_t i = 0; i < cells.size() && i < widths.size(); ++i) cells[i] = Fitted(cells[i], widths[i]);
    return cells;
  };
  PrintCells(out, fitted(header_), widths);
  for (const Row& row : rows_) {
    PrintCells(out, fitted(row.cells), widths);
    if (!row.note.empty()) PrintNote(out, row.note, width);
  }
}

}  // namespace kolvane::cli
