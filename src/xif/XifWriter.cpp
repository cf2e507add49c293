#include <cstdio>
#include <sstream>

#include "xif/DeviceInterface.h"

namespace kolvane::xif {

namespace {

std::string Joined(const std::vector<int64_t>& values) {
  std::string text;
  for (const int64_t value : values) text += (text.empty() ? "" : " ") + std::to_string(value);
  return text;
}

// A header line as read when it still says the same numbers, else the numbers joined.
std::string HeaderLine(const std::string& read, const std::vector<int64_t>& values) {
  std::istringstream in(read);
  std::vector<int64_t> words;
  for (int64_t value = 0; in >> value;) words.push_back(value);
  return !read.empty() && words == values ? read : Joined(values);
}

std::string Hex(uint8_t byte) {
  char digits[8];
  std::snprintf(digits, sizeof digits, "\\x%02X", byte);
  return digits;
}

// Self-documentation lines: the pieces as read when they still make the text, else the text
// wrapped at 60 characters; "*" for none.
std::vector<std::string> DocLines(const std::string& text, const std::vector<std::string>& pieces) {
  if (text.empty()) return {"*"};
  std::string joined;
  for (const std::string& piece : pieces) joined += piece;
  std::vector<std::string> lines;
  for (const std::string& piece : joined == text ? pieces : WrapDoc(text)) lines.push_back('"' + piece);
  return lines;
}

std::string FlagsLine(const Flags& flags) {
  std::string text;
  for (const int value : flags.values) text += (text.empty() ? "" : " ") + std::to_string(value);
  return text;
}

// Byte lines as the compiler writes them: "\x0D \xAC", at most 8 a line, continued after a tab.
std::vector<std::string> ByteLines(const std::vector<uint8_t>& bytes) {
  std::vector<std::string> lines;
  for (size_t i = 0; i < bytes.size(); i += 8) {
    std::string line = i == 0 ? "" : "\t";
    for (size_t j = i; j < bytes.size() && j < i + 8; ++j) line += (j == i ? "" : " ") + Hex(bytes[j]);
    lines.push_back(line);
  }
  return lines;
}

std::string DescriptorText(const PropertyDescriptor& descriptor, bool with_size) {
  std::string text = std::to_string(descriptor.applies_to) + "," + descriptor.select + "," +
                     std::to_string(descriptor.scope) + Hex(static_cast<uint8_t>(descriptor.flags)) +
                     "," + std::to_string(descriptor.index);
  if (!with_size) return text;
  text += "," + std::to_string(descriptor.size.value_or(0));
  if (descriptor.dimension || !descriptor.range.empty()) {
    text += "," + (descriptor.dimension ? std::to_string(*descriptor.dimension) : "");
  }
  if (!descriptor.range.empty()) text += "," + descriptor.range;
  return text;
}

class Writer {
 public:
  explicit Writer(const Style& style) : style_(style) {}

  void Line(const std::string& line) { out_ += line + style_.newline; }
  void Lines(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) Line(line);
  }

  void Variable(const xif::Variable& variable) {
    Line("VAR " + variable.name + " " + std::to_string(variable.index) + " " +
         std::to_string(variable.average_rate) + " " + std::to_string(variable.maximum_rate) + " " +
         std::to_string(variable.array_count));
    Line(FlagsLine(variable.flags));
    Lines(DocLines(variable.doc, variable.doc_pieces));
    std::string count = std::to_string(variable.elements.size());
    if (style_.type_count_width > 1 && count.size() < 4) count.insert(0, 4 - count.size(), ' ');
    else count.insert(0, 1, ' ');
    Line(std::to_string(variable.type_index) + " *" + count);
    for (const Element& element : variable.elements) {
      std::string count = std::to_string(element.count);
      if (element.count == 0) {
        count += style_.element_trailing_blank ? " " : "";
      } else if (count.size() < static_cast<size_t>(style_.element_count_width)) {
        count.insert(0, static_cast<size_t>(style_.element_count_width) - count.size(), ' ');
      }
      Line(std::to_string(element.kind) + " " + std::to_string(element.offset) + " " +
           std::to_string(element.size) + " " + std::to_string(element.is_signed) + " " + count);
    }
  }

  void Tag(const xif::Tag& tag) {
    Line("TAG " + tag.name + " " + std::to_string(tag.index) + " " +
         std::to_string(tag.average_rate) + " " + std::to_string(tag.maximum_rate) + " " +
         std::to_string(tag.fifth));
    Line(FlagsLine(tag.flags));
  }

  void File(const ConfigFile& file) {
    std::string header = "FILE " + file.kind + " " + std::to_string(file.directory_index) + " " +
                         std::to_string(file.type_code);
    if (file.byte_count) header += " " + std::to_string(file.bytes.size());
    Line(header);
    if (file.kind == "template") {
      Lines(SameTemplate(file) ? file.lines : TemplateLines(file));
    } else if (file.kind == "value" || file.kind == "readOnly") {
      const auto read = ParseBytes(file.lines);
      Lines(read && *read == file.bytes ? file.lines : ByteLines(file.bytes));
    } else {
      Lines(file.lines);
    }
  }

  void Values(const DeviceInterface& device) {
    Line("NVVAL");
    const auto read = ParseBytes(device.values_lines);
    if (read && *read == device.values && !device.values_lines.empty()) {
      Lines(device.values_lines);
      return;
    }
    // One configuration variable a line (or more, 8 bytes each).
    for (const auto& [variable, bytes] : device.VariableValues()) Lines(ByteLines(bytes));
  }

  std::string Text() {
    if (!style_.final_newline && out_.size() >= style_.newline.size()) {
      out_.resize(out_.size() - style_.newline.size());
    }
    return out_;
  }

 private:
  static std::vector<std::string> TemplateLines(const ConfigFile& file) {
    std::vector<std::string> lines = {'"' + file.version + ";"};
    for (const PropertyDescriptor& entry : file.entries) lines.push_back('"' + DescriptorText(entry, true) + ";");
    return lines;
  }

  // Whether the lines as read still say what the entries say.
  static bool SameTemplate(const ConfigFile& file) {
    if (file.lines.size() != file.entries.size() + 1) return false;
    for (size_t i = 0; i < file.entries.size(); ++i) {
      const std::string& line = file.lines[i + 1];
      const size_t end = line.find(';');
      if (end == std::string::npos || line.substr(1, end - 1) != DescriptorText(file.entries[i], true)) {
        return false;
      }
    }
    return true;
  }

  const Style& style_;
  std::string out_;
};

}  // namespace

std::string WriteDeviceInterface(const DeviceInterface& device) {
  Writer writer(device.style);
  for (const std::string& line : device.banner) writer.Line(line);
  writer.Line("");
  writer.Line(device.program_id.Text());
  for (size_t i = 0; i < device.header.size(); ++i) {
    writer.Line(HeaderLine(device.header_lines[i], device.header[i]));
  }
  writer.Line("*");
  writer.Lines(DocLines(device.node_doc.text, device.node_doc_pieces));
  for (const LayoutEntry& entry : device.layout) {
    switch (entry.kind) {
      case LayoutEntry::Kind::kTag:
        writer.Tag(device.tags.at(entry.index));
        break;
      case LayoutEntry::Kind::kVariable:
        writer.Variable(device.variables.at(entry.index));
        break;
      case LayoutEntry::Kind::kFile:
        writer.File(device.files.at(entry.index));
        break;
      case LayoutEntry::Kind::kValues:
        writer.Values(device);
        break;
      case LayoutEntry::Kind::kText:
        writer.Line(entry.text);
        break;
    }
  }
  return writer.Text();
}

}  // namespace kolvane::xif
