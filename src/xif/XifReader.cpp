#include <algorithm>
#include <cctype>
#include <cstdint>
#include <sstream>

#include "xif/DeviceInterface.h"

namespace kolvane::xif {

namespace {

std::vector<std::string> Words(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

bool IsInteger(const std::string& word) {
  size_t i = word[0] == '-' ? 1 : 0;
  if (i == word.size() || word.size() > 18) return false;
  for (; i < word.size(); ++i) {
    if (!std::isdigit(static_cast<unsigned char>(word[i]))) return false;
  }
  return true;
}

// Limits that keep every size an int: the bytes of one variable, the elements of an array.
constexpr int64_t kMaxBytes = 65535;
constexpr int kMaxArray = 4096;

// A word already checked by IsInteger, as an int; XifError beyond an int's range.
int IntOf(const std::string& word, int line) {
  const long long value = std::stoll(word);
  if (value < INT32_MIN || value > INT32_MAX) throw XifError(line, word + " is out of range");
  return static_cast<int>(value);
}

bool StartsWith(const std::string& text, const char* prefix) { return text.rfind(prefix, 0) == 0; }

// A record or section keyword line.
bool IsKeyword(const std::string& line) {
  return StartsWith(line, "VAR ") || StartsWith(line, "TAG ") || StartsWith(line, "FILE ") ||
         line == "NVVAL" || StartsWith(line, "NVVAL ");
}

// The node string "&3.4@0NodeObject,4[2Lamp;text" parsed into its blocks; an older form stays
// text only.
NodeDoc ParseNodeDoc(const std::string& text) {
  NodeDoc doc;
  doc.text = text;
  std::string rest = text;
  if (!rest.empty() && rest[0] == '&') {
    const size_t at = rest.find('@');
    if (at == std::string::npos) return doc;
    doc.version = rest.substr(1, at - 1);
    rest = rest.substr(at);
  }
  if (rest.size() < 2 || rest[0] != '@' || !std::isdigit(static_cast<unsigned char>(rest[1]))) {
    doc.version.clear();
    return doc;
  }
  const size_t semicolon = rest.find(';');
  if (semicolon != std::string::npos) doc.free_text = rest.substr(semicolon + 1);
  std::string list = rest.substr(1, semicolon == std::string::npos ? std::string::npos : semicolon - 1);
  std::istringstream entries(list);
  for (std::string entry; std::getline(entries, entry, ',');) {
    FunctionalBlock block;
    size_t i = 0;
    while (i < entry.size() && std::isdigit(static_cast<unsigned char>(entry[i]))) ++i;
    if (i == 0 || i > 9) return NodeDoc{text, false, "", {}, ""};
    block.key_text = entry.substr(0, i);
    block.profile_key = std::stoi(block.key_text);
    if (i < entry.size() && entry[i] == '[') {
      size_t j = i + 1;
      while (j < entry.size() && std::isdigit(static_cast<unsigned char>(entry[j]))) ++j;
      if (j == i + 1 || j - i > 6) return NodeDoc{text, false, "", {}, ""};
      block.array_count = std::stoi(entry.substr(i + 1, j - i - 1));
      i = j;
    }
    block.name = entry.substr(i);
    doc.blocks.push_back(block);
  }
  doc.parsed = true;
  return doc;
}

// Reads lines one by one, knowing each one's number.
class Lines {
 public:
  explicit Lines(const std::string& text) {
    size_t start = 0;
    while (start < text.size()) {
      size_t end = text.find('\n', start);
      const bool last = end == std::string::npos;
      if (last) end = text.size();
      std::string line = text.substr(start, end - start);
      if (!line.empty() && line.back() == '\r') {
        line.pop_back();
        ++crlf_;
      }
      lines_.push_back(std::move(line));
      final_newline_ = !last;
      start = end + 1;
    }
  }

  bool AtEnd() const { return next_ >= lines_.size(); }
  // The line number of the next line (1-based).
  int Number() const { return static_cast<int>(next_) + 1; }
  const std::string& Peek() const { return lines_[next_]; }
  const std::string& Take(const char* what) {
    if (AtEnd()) throw XifError(Number(), "the file ends where " + std::string(what) + " should be");
    return lines_[next_++];
  }
  bool Crlf() const { return crlf_ * 2 > lines_.size(); }
  bool FinalNewline() const { return final_newline_; }

 private:
  std::vector<std::string> lines_;
  size_t next_ = 0;
  size_t crlf_ = 0;
  bool final_newline_ = false;
};

std::vector<int64_t> Integers(const std::string& line, int number, const char* what) {
  std::vector<int64_t> values;
  for (const std::string& word : Words(line)) {
    if (!IsInteger(word)) throw XifError(number, std::string(what) + ": \"" + word + "\" is no integer");
    values.push_back(std::stoll(word));
  }
  return values;
}

Flags ReadFlags(Lines& lines) {
  const int number = lines.Number();
  const auto values = Integers(lines.Take("13 flags"), number, "flags");
  if (values.size() != 13) {
    throw XifError(number, "expected 13 flags, found " + std::to_string(values.size()));
  }
  Flags flags;
  for (size_t i = 0; i < 13; ++i) flags.values[i] = static_cast<int>(values[i]);
  return flags;
}

// A record's first line: keyword, name and four integers.
void ReadRecordLine(const std::string& line, int number, std::string& name,
                    std::array<int, 4>& numbers) {
  const auto words = Words(line);
  if (words.size() != 6) {
    throw XifError(number, "expected " + words[0] + " name index rate rate count, found \"" +
                               line + "\"");
  }
  name = words[1];
  for (size_t i = 0; i < 4; ++i) {
    if (!IsInteger(words[i + 2])) throw XifError(number, "\"" + words[i + 2] + "\" is no integer");
    numbers[i] = IntOf(words[i + 2], number);
  }
}

// Self-documentation lines: '"' pieces, or a lone "*".
void ReadDoc(Lines& lines, std::string& text, std::vector<std::string>& pieces) {
  const std::string& first = lines.Take("a self-documentation string");
  if (first == "*") return;
  if (first.empty() || first[0] != '"') {
    throw XifError(lines.Number() - 1, "expected a self-documentation string or *");
  }
  pieces.push_back(first.substr(1));
  while (!lines.AtEnd() && !lines.Peek().empty() && lines.Peek()[0] == '"') {
    pieces.push_back(lines.Take("").substr(1));
  }
  for (const std::string& piece : pieces) text += piece;
}

// style: how the type and element lines are written, taken from the first record that shows
// it; known_width tells whether an element line with an array count has been seen.
Variable ReadVariable(Lines& lines, Style& style, bool first, bool& known_width) {
  Variable variable;
  std::array<int, 4> numbers{};
  const int number = lines.Number();
  ReadRecordLine(lines.Take("a VAR line"), number, variable.name, numbers);
  variable.index = numbers[0];
  variable.average_rate = numbers[1];
  variable.maximum_rate = numbers[2];
  variable.array_count = numbers[3];
  if (variable.array_count < 0 || variable.array_count > kMaxArray) {
    throw XifError(number, "array count " + std::to_string(variable.array_count));
  }
  variable.flags = ReadFlags(lines);
  ReadDoc(lines, variable.doc, variable.doc_pieces);
  const int type_line = lines.Number();
  const std::string& type_text = lines.Take("a type line");
  const auto type = Words(type_text);
  if (type.size() != 3 || !IsInteger(type[0]) || type[1] != "*" || !IsInteger(type[2])) {
    throw XifError(type_line, "expected \"<type index> * <element count>\"");
  }
  variable.type_index = IntOf(type[0], type_line);
  if (first) {
    // "92 *   2" right-aligns the count in 4 columns; "95 * 1" writes one blank.
    const size_t star = type_text.find('*');
    style.type_count_width = type_text.size() - star - 1 > 1 + type[2].size() ? 4 : 1;
  }
  const int count = IntOf(type[2], type_line);
  if (count < 0 || count > 10000) throw XifError(type_line, "element count " + type[2]);
  int64_t total = 0;
  for (int i = 0; i < count; ++i) {
    const int at = lines.Number();
    const std::string& element_text = lines.Take("an element line");
    const auto values = Integers(element_text, at, "element");
    if (values.size() != 5) throw XifError(at, "an element line holds 5 integers");
    if (first && i == 0) style.element_trailing_blank = element_text.back() == ' ';
    if (!known_width && values[4] > 0 && values[4] < 10) {
      // "0 0 0 0  4": an array count right-aligned in 2 columns.
      const size_t last = element_text.find_last_not_of(' ');
      const size_t start = element_text.find_last_of(' ', last);
      known_width = true;
      style.element_count_width =
          start != std::string::npos && start > 0 && element_text[start - 1] == ' ' ? 2 : 1;
    }
    for (const int64_t value : values) {
      if (value < 0 || value > 65535) throw XifError(at, "element value " + std::to_string(value));
    }
    variable.elements.push_back({static_cast<int>(values[0]), static_cast<int>(values[1]),
                                 static_cast<int>(values[2]), static_cast<int>(values[3]),
                                 static_cast<int>(values[4])});
    // Sizes are added up in ints: no element, and no variable, may pass 64 KiB.
    const int64_t bytes = std::max<int64_t>(values[2], 2) * std::max<int64_t>(values[4], 1);
    total += bytes;
    if (total > kMaxBytes) throw XifError(at, variable.name + " takes more than 65535 bytes");
  }
  return variable;
}

Tag ReadTag(Lines& lines) {
  Tag tag;
  std::array<int, 4> numbers{};
  const int number = lines.Number();
  ReadRecordLine(lines.Take("a TAG line"), number, tag.name, numbers);
  tag.index = numbers[0];
  tag.average_rate = numbers[1];
  tag.maximum_rate = numbers[2];
  tag.fifth = numbers[3];
  tag.flags = ReadFlags(lines);
  return tag;
}

// The lines of a section up to the next keyword line or the end (a FILE section also ends at
// an empty line).
std::vector<std::string> SectionLines(Lines& lines, bool stop_at_blank) {
  std::vector<std::string> section;
  while (!lines.AtEnd() && !IsKeyword(lines.Peek()) && !(stop_at_blank && lines.Peek().empty())) {
    section.push_back(lines.Take(""));
  }
  return section;
}

ConfigFile ReadFile(Lines& lines) {
  ConfigFile file;
  const int number = lines.Number();
  const auto words = Words(lines.Take("a FILE line"));
  if (words.size() < 4 || words.size() > 5 || !IsInteger(words[2]) || !IsInteger(words[3]) ||
      (words.size() == 5 && !IsInteger(words[4]))) {
    throw XifError(number, "expected FILE <kind> <directory index> <n> [<byte count>]");
  }
  file.kind = words[1];
  file.directory_index = IntOf(words[2], number);
  file.type_code = IntOf(words[3], number);
  if (words.size() == 5) file.byte_count = IntOf(words[4], number);
  const int first = lines.Number();
  file.lines = SectionLines(lines, true);
  if (file.kind == "template") {
    for (size_t i = 0; i < file.lines.size(); ++i) {
      const std::string& line = file.lines[i];
      const int at = first + static_cast<int>(i);
      if (line.empty() || line[0] != '"') throw XifError(at, "a template line starts with \"");
      const size_t end = line.find(';');
      if (end == std::string::npos) throw XifError(at, "a template line ends in ;");
      const std::string entry = line.substr(1, end - 1);
      if (i == 0) {
        file.version = entry;
        continue;
      }
      PropertyDescriptor descriptor;
      Variable probe;  // descriptors read as a CP variable's string reads them
      probe.doc = "&" + entry;
      const VariableDoc parsed = probe.ParsedDoc();
      if (parsed.form != VariableDoc::Form::kProperty || !parsed.property.size) {
        throw XifError(at, "\"" + entry + "\" is no property descriptor with a size");
      }
      file.entries.push_back(parsed.property);
    }
    if (file.version.empty()) throw XifError(number, "a template without its version line");
  } else if (file.kind == "value" || file.kind == "readOnly") {
    auto bytes = ParseBytes(file.lines);
    if (!bytes) throw XifError(first, "FILE " + file.kind + " holds what is no byte");
    file.bytes = std::move(*bytes);
    if (file.byte_count && static_cast<size_t>(*file.byte_count) != file.bytes.size()) {
      throw XifError(number, "FILE " + file.kind + " says " + std::to_string(*file.byte_count) +
                                 " bytes and holds " + std::to_string(file.bytes.size()));
    }
  }
  return file;
}

// Counts and sizes the records must agree with.
// values_line: the line of NVVAL (0 without one); last_line: the file's last line.
void CheckAgreement(const DeviceInterface& device, int values_line, int last_line) {
  const auto& counts = device.header[0];
  if (counts.size() >= 5) {
    if (counts[3] != static_cast<int64_t>(device.variables.size())) {
      throw XifError(6, "the header counts " + std::to_string(counts[3]) +
                            " network variables, the file holds " +
                            std::to_string(device.variables.size()));
    }
    if (counts[4] != static_cast<int64_t>(device.tags.size())) {
      throw XifError(6, "the header counts " + std::to_string(counts[4]) +
                            " message tags, the file holds " + std::to_string(device.tags.size()));
    }
  }
  size_t expected = 0;
  for (const Variable& variable : device.variables) {
    if (variable.flags.ConfigurationClass()) expected += static_cast<size_t>(variable.TotalSize());
  }
  if (expected != device.values.size()) {
    if (values_line == 0) values_line = last_line;
    throw XifError(values_line, "NVVAL holds " + std::to_string(device.values.size()) +
                                    " bytes; the configuration variables take " +
                                    std::to_string(expected));
  }
  if (const ConfigFile* layout = device.File("template")) {
    size_t writable = 0;
    size_t constant = 0;
    for (const PropertyDescriptor& entry : layout->entries) {
      const size_t size = static_cast<size_t>(*entry.size) *
                          static_cast<size_t>(entry.dimension.value_or(0) > 0 ? *entry.dimension : 1);
      ((entry.flags & PropertyDescriptor::kConstant) ? constant : writable) += size;
    }
    const ConfigFile* value = device.File("value");
    const ConfigFile* read_only = device.File("readOnly");
    const size_t in_value = value ? value->bytes.size() : 0;
    const size_t in_read_only = read_only ? read_only->bytes.size() : 0;
    const bool split = in_value == writable && in_read_only == constant;
    const bool together = !read_only && in_value == writable + constant;
    if (!split && !together) {
      throw XifError(values_line > 0 ? values_line : last_line,
                     "the configuration files hold " + std::to_string(in_value) + " and " +
                         std::to_string(in_read_only) + " bytes; the template takes " +
                         std::to_string(writable) + " and " + std::to_string(constant));
    }
  }
}

}  // namespace

DeviceInterface ReadDeviceInterface(const std::string& text) {
  Lines lines(text);
  DeviceInterface device;
  device.style.newline = lines.Crlf() ? "\r\n" : "\n";
  device.style.final_newline = lines.FinalNewline();
  const std::string& first = lines.Take("the first line");
  const size_t version_at = first.rfind("XIF Version ");
  if (!StartsWith(first, "File:") || version_at == std::string::npos) {
    throw XifError(1, "not a device interface file: the first line names no XIF version");
  }
  device.banner[0] = first;
  device.version = Words(first.substr(version_at + 12)).empty()
                       ? ""
                       : Words(first.substr(version_at + 12)).front();
  device.banner[1] = lines.Take("the copyright line");
  device.banner[2] = lines.Take("the run line");
  if (!lines.Take("an empty line").empty()) throw XifError(4, "expected an empty line");
  const auto id = ProgramId::Parse(lines.Take("the program ID"));
  if (!id) throw XifError(5, "expected the program ID as 8 hex bytes (9F:FF:FF:05:01:84:04:60)");
  device.program_id = *id;
  for (size_t i = 0; i < 5; ++i) {
    const int number = lines.Number();
    device.header_lines[i] = lines.Take("a header line");
    device.header[i] = Integers(device.header_lines[i], number, "header");
    if (device.header[i].empty()) throw XifError(number, "an empty header line");
  }
  if (device.header[0].size() < 5) throw XifError(6, "the counts line holds fewer than 5 numbers");
  if (lines.Take("*") != "*") throw XifError(11, "expected *");
  std::string node_text;
  ReadDoc(lines, node_text, device.node_doc_pieces);
  device.node_doc = ParseNodeDoc(node_text);

  int values_line = 0;
  bool known_width = false;
  while (!lines.AtEnd()) {
    const std::string& line = lines.Peek();
    if (StartsWith(line, "VAR ")) {
      const int number = lines.Number();
      Variable variable =
          ReadVariable(lines, device.style, device.variables.empty(), known_width);
      if (variable.index != static_cast<int>(device.variables.size())) {
        throw XifError(number, "network variable " + variable.name + " has index " +
                                   std::to_string(variable.index) + ", expected " +
                                   std::to_string(device.variables.size()));
      }
      if (variable.type_index > 0 || !variable.elements.empty()) {
        for (const Element& element : variable.elements) {
          if (element.kind == 3 && element.offset + element.size > 8) {
            throw XifError(number, "a bit field of " + variable.name + " leaves its byte");
          }
        }
      }
      device.layout.push_back({LayoutEntry::Kind::kVariable, device.variables.size(), ""});
      device.variables.push_back(std::move(variable));
    } else if (StartsWith(line, "TAG ")) {
      device.layout.push_back({LayoutEntry::Kind::kTag, device.tags.size(), ""});
      device.tags.push_back(ReadTag(lines));
    } else if (StartsWith(line, "FILE ")) {
      if (values_line == 0) values_line = lines.Number();
      device.layout.push_back({LayoutEntry::Kind::kFile, device.files.size(), ""});
      device.files.push_back(ReadFile(lines));
    } else if (line == "NVVAL" || StartsWith(line, "NVVAL ")) {
      if (!device.values_lines.empty() || device.values.size() > 0) {
        throw XifError(lines.Number(), "a second NVVAL section");
      }
      values_line = lines.Number();
      lines.Take("NVVAL");
      device.values_lines = SectionLines(lines, false);
      // Blank lines at its end, and a DOS end-of-file mark (^Z), belong to the layout.
      size_t kept = device.values_lines.size();
      while (kept > 0 && (device.values_lines[kept - 1].empty() ||
                          device.values_lines[kept - 1] == "\x1A")) {
        --kept;
      }
      std::vector<std::string> trailing(device.values_lines.begin() + static_cast<long>(kept),
                                        device.values_lines.end());
      device.values_lines.resize(kept);
      auto bytes = ParseBytes(device.values_lines);
      if (!bytes) throw XifError(values_line, "NVVAL holds what is no byte");
      device.values = std::move(*bytes);
      device.layout.push_back({LayoutEntry::Kind::kValues, 0, ""});
      for (const std::string& blank : trailing) {
        device.layout.push_back({LayoutEntry::Kind::kText, 0, blank});
      }
    } else {
      device.layout.push_back({LayoutEntry::Kind::kText, 0, lines.Take("")});
    }
  }
  CheckAgreement(device, values_line, lines.Number() - 1);
  return device;
}

}  // namespace kolvane::xif
