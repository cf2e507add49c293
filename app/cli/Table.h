#pragma once

#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

namespace kolvane::cli {

// A plain-text table with a header row and aligned columns; UTF-8 aware.
class Table {
 public:
  explicit Table(std::vector<std::string> header) : header_(std::move(header)) {}

  // Adds a row; a row may carry an indented note printed on the lines below it. A cell wider
  // than its column's limit (60 unless set) is cut with an ellipsis (export and --json keep
  // every character).
  void AddRow(std::vector<std::string> cells, std::string note = "");
  // Cuts the cells of a column added from now on at columns.
  void Limit(size_t column, size_t columns);

  // Narrows the columns listed, widest first and to no fewer than 10 columns each, so that the
  // printed lines fit width (a terminal's); cells cut end in an ellipsis. 0 fits nothing.
  void FitTo(size_t width, std::vector<size_t> narrowable);

  // Writes the table; notes are wrapped at width columns.
  void Print(std::ostream& out, size_t width = 100) const;

 private:
  struct Row {
    std::vector<std::string> cells;
    std::string note;
  };
  std::vector<std::string> header_;
  std::vector<size_t> limits_;
  std::vector<Row> rows_;
  size_t fit_width_ = 0;
  std::vector<size_t> narrowable_;
};

// Columns a terminal gives a UTF-8 text: one a character, two a wide East Asian one.
size_t DisplayWidth(const std::string& text);

// A message with every echoed run of more than 160 non-blank columns cut to its first 60 and its
// length, and a message longer than 2,000 columns cut in the middle: input is never echoed whole.
std::string Bounded(const std::string& message);

// A stream buffer that writes each line to target through Bounded.
class BoundedLines : public std::streambuf {
 public:
  explicit BoundedLines(std::ostream& target) : target_(target) {}
  ~BoundedLines() override;

 protected:
  int overflow(int character) override;

 private:
  std::ostream& target_;
  std::string line_;
};

}  // namespace kolvane::cli
