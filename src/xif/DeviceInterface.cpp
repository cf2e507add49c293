#include "xif/DeviceInterface.h"

#include <cctype>
#include <cstdio>

namespace kolvane::xif {

namespace {

bool IsHex(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  return std::toupper(static_cast<unsigned char>(c)) - 'A' + 10;
}

// A whole decimal text as an int; nothing when it is none.
std::optional<int> ToInt(const std::string& text) {
  if (text.empty() || text.size() > 9) return std::nullopt;
  size_t i = text[0] == '-' ? 1 : 0;
  if (i == text.size()) return std::nullopt;
  int value = 0;
  for (; i < text.size(); ++i) {
    if (!std::isdigit(static_cast<unsigned char>(text[i]))) return std::nullopt;
    value = value * 10 + (text[i] - '0');
  }
  return text[0] == '-' ? -value : value;
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  size_t start = 0;
  for (;;) {
    const size_t end = text.find(separator, start);
    parts.push_back(text.substr(start, end - start));
    if (end == std::string::npos) return parts;
    start = end + 1;
  }
}

// "&hdr,select,scope\xHH,index[,size[,dim[,range]]]" without "&" and what follows ";".
std::optional<PropertyDescriptor> ParseDescriptor(const std::string& text) {
  const std::vector<std::string> parts = Split(text, ',');
  if (parts.size() < 4) return std::nullopt;
  PropertyDescriptor descriptor;
  const auto applies_to = ToInt(parts[0]);
  if (!applies_to) return std::nullopt;
  descriptor.applies_to = *applies_to;
  descriptor.select = parts[1];
  const std::string& scope_flags = parts[2];
  const size_t escape = scope_flags.find("\\x");
  if (escape == std::string::npos || escape + 4 != scope_flags.size() ||
      !IsHex(scope_flags[escape + 2]) || !IsHex(scope_flags[escape + 3])) {
    return std::nullopt;
  }
  const auto scope = ToInt(scope_flags.substr(0, escape));
  if (!scope) return std::nullopt;
  descriptor.scope = *scope;
  descriptor.flags = HexValue(scope_flags[escape + 2]) * 16 + HexValue(scope_flags[escape + 3]);
  const auto index = ToInt(parts[3]);
  if (!index) return std::nullopt;
  descriptor.index = *index;
  if (parts.size() > 4 && !parts[4].empty()) {
    descriptor.size = ToInt(parts[4]);
    if (!descriptor.size) return std::nullopt;
  }
  if (parts.size() > 5 && !parts[5].empty()) {
    descriptor.dimension = ToInt(parts[5]);
    if (!descriptor.dimension) return std::nullopt;
  }
  if (parts.size() > 6) descriptor.range = parts[6];
  if (parts.size() > 7) return std::nullopt;
  return descriptor;
}

}  // namespace

uint32_t ProgramId::Manufacturer() const {
  return static_cast<uint32_t>(bytes[0] & 0x0F) << 16 | static_cast<uint32_t>(bytes[1]) << 8 |
         bytes[2];
}

std::string ProgramId::Text() const {
  std::string text;
  for (size_t i = 0; i < bytes.size(); ++i) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02X", bytes[i]);
    if (i > 0) text += ':';
    text += digits;
  }
  return text;
}

std::optional<ProgramId> ProgramId::Parse(const std::string& text) {
  std::string digits;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == ':' && i % 3 == 2 && text.size() == 23) continue;
    if (!IsHex(text[i])) return std::nullopt;
    digits += text[i];
  }
  if (digits.size() != 16) return std::nullopt;
  ProgramId id;
  for (size_t i = 0; i < 8; ++i) {
    id.bytes[i] = static_cast<uint8_t>(HexValue(digits[2 * i]) * 16 + HexValue(digits[2 * i + 1]));
  }
  return id;
}

int NodeDoc::BlockIndexCount() const {
  int count = 0;
  for (const FunctionalBlock& block : blocks) count += block.array_count > 0 ? block.array_count : 1;
  return count;
}

std::vector<int> PropertyDescriptor::Selected() const {
  std::vector<int> indices;
  for (const std::string& part : Split(select, '.')) {
    if (part.empty()) continue;
    const size_t range = part.find_first_of("~-", 1);
    if (range == std::string::npos) {
      const auto index = ToInt(part);
      if (!index) return {};
      indices.push_back(*index);
      continue;
    }
    const auto first = ToInt(part.substr(0, range));
    const auto last = ToInt(part.substr(range + 1));
    if (!first || !last || *last < *first || *last - *first > 4096) return {};
    for (int i = *first; i <= *last; ++i) indices.push_back(i);
  }
  return indices;
}

const std::array<const char*, 13>& Flags::Names() {
  static const std::array<const char*, 13> names = {
      "offline",        "bindable", "reserved",     "output",     "service",
      "service_config", "authenticated", "auth_config", "priority", "priority_config",
      "polled",         "sync",     "config_class"};
  return names;
}

VariableDoc Variable::ParsedDoc() const {
  VariableDoc parsed;
  if (doc.empty()) return parsed;
  const size_t semicolon = doc.find(';');
  const std::string head = doc.substr(0, semicolon);
  const std::string rest = semicolon == std::string::npos ? "" : doc.substr(semicolon + 1);
  if (head.size() > 1 && head[0] == '&') {
    if (auto descriptor = ParseDescriptor(head.substr(1))) {
      parsed.form = VariableDoc::Form::kProperty;
      parsed.property = *descriptor;
      parsed.text = rest;
      return parsed;
    }
  } else if (head.size() > 1 && head[0] == '@') {
    std::string member = head.substr(1);
    if (!member.empty() && member.back() == '?') {
      parsed.changeable_type = true;
      member.pop_back();
    }
    const size_t selector = member.find_first_of("|#");
    if (selector != std::string::npos) {
      const auto block = ToInt(member.substr(0, selector));
      const auto number = ToInt(member.substr(selector + 1));
      if (block && number && *block >= 0) {
        parsed.form = VariableDoc::Form::kMember;
        parsed.block = *block;
        parsed.standard_member = member[selector] == '|';
        parsed.member = *number;
        parsed.text = rest;
        return parsed;
      }
    }
    parsed.changeable_type = false;
  }
  parsed.form = VariableDoc::Form::kText;
  parsed.text = doc;
  return parsed;
}

std::vector<Piece> Pieces(const std::vector<Element>& elements) {
  std::vector<Piece> pieces;
  int bit_end = 0;  // bits used of the current bit-field byte; 0 when none is open
  for (const Element& element : elements) {
    const int count = element.count > 0 ? element.count : 1;
    if (element.kind == 3) {
      // Bit fields share a byte while their offsets rise.
      if (bit_end == 0 || element.offset < bit_end) pieces.push_back({Piece::Kind::kBits, 1, false});
      bit_end = element.offset + element.size;
      if (bit_end >= 8) bit_end = 0;
      continue;
    }
    bit_end = 0;
    const bool is_signed = element.is_signed != 0;
    switch (element.kind) {
      case 0:
        for (int i = 0; i < count; ++i) pieces.push_back({Piece::Kind::kCharacter, 1, false});
        break;
      case 1:
        for (int i = 0; i < count; ++i) pieces.push_back({Piece::Kind::kNumber, 1, is_signed});
        break;
      case 2:
        for (int i = 0; i < count; ++i) pieces.push_back({Piece::Kind::kNumber, 2, is_signed});
        break;
      case 4:
        for (int i = 0; i < element.size * count; ++i) pieces.push_back({Piece::Kind::kOpaque, 1, false});
        break;
      default:
        break;
    }
  }
  return pieces;
}

int Variable::Size() const {
  int size = 0;
  for (const Piece& piece : Pieces(elements)) size += piece.bytes;
  return size;
}

std::vector<std::pair<const Variable*, std::vector<uint8_t>>> DeviceInterface::VariableValues()
    const {
  std::vector<std::pair<const Variable*, std::vector<uint8_t>>> result;
  size_t at = 0;
  for (const Variable& variable : variables) {
    if (!variable.flags.ConfigurationClass()) continue;
    const auto size = static_cast<size_t>(variable.TotalSize());
    const size_t end = std::min(values.size(), at + size);
    result.emplace_back(&variable, std::vector<uint8_t>(values.begin() + static_cast<long>(at),
                                                        values.begin() + static_cast<long>(end)));
    at = end;
  }
  return result;
}

const ConfigFile* DeviceInterface::File(const std::string& kind) const {
  for (const ConfigFile& file : files) {
    if (file.kind == kind) return &file;
  }
  return nullptr;
}

std::vector<FileProperty> DeviceInterface::FileProperties() const {
  std::vector<FileProperty> properties;
  const ConfigFile* layout = File("template");
  if (!layout) return properties;
  const ConfigFile* writable = File("value");
  const ConfigFile* constant = File("readOnly");
  size_t writable_at = 0;
  size_t constant_at = 0;
  for (const PropertyDescriptor& entry : layout->entries) {
    FileProperty property{entry, {}, (entry.flags & PropertyDescriptor::kConstant) != 0};
    // Without a read-only file the constant values stand in the value file.
    const ConfigFile* source = property.read_only && constant ? constant : writable;
    size_t& at = source == constant ? constant_at : writable_at;
    const auto size = static_cast<size_t>(entry.size.value_or(0) *
                                          (entry.dimension.value_or(0) > 0 ? *entry.dimension : 1));
    if (source) {
      const size_t end = std::min(source->bytes.size(), at + size);
      property.bytes.assign(source->bytes.begin() + static_cast<long>(at),
                            source->bytes.begin() + static_cast<long>(end));
      at = end;
    }
    properties.push_back(std::move(property));
  }
  return properties;
}

std::optional<std::vector<uint8_t>> ParseBytes(const std::vector<std::string>& lines) {
  std::vector<uint8_t> bytes;
  for (const std::string& line : lines) {
    size_t i = 0;
    while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) ++i;
    if (i < line.size() && line[i] == '#') continue;  // a comment line
    std::string token;
    const auto take = [&](const std::string& word) -> bool {
      if (word.empty()) return true;
      std::string digits;
      if (word.size() == 4 && word[0] == '\\' && (word[1] == 'x' || word[1] == 'X')) {
        digits = word.substr(2);
      } else if (word.size() > 2 && word[0] == '0' && (word[1] == 'x' || word[1] == 'X')) {
        digits = word.substr(2);
      } else {
        digits = word;
      }
      if (digits.empty() || digits.size() % 2 != 0) return false;
      for (size_t d = 0; d < digits.size(); d += 2) {
        if (!IsHex(digits[d]) || !IsHex(digits[d + 1])) return false;
        bytes.push_back(static_cast<uint8_t>(HexValue(digits[d]) * 16 + HexValue(digits[d + 1])));
      }
      return true;
    };
    for (; i <= line.size(); ++i) {
      const char c = i < line.size() ? line[i] : ' ';
      if (c == ' ' || c == '\t' || c == ',' || c == '\r') {
        if (!take(token)) return std::nullopt;
        token.clear();
      } else if (c == '\\' && !token.empty()) {
        // "\x0D\xAC" without a blank between
        if (!take(token)) return std::nullopt;
        token = "\\";
      } else {
        token += c;
      }
    }
  }
  return bytes;
}

std::vector<std::string> WrapDoc(const std::string& text, size_t width) {
  std::vector<std::string> pieces;
  size_t start = 0;
  while (text.size() - start > width) {
    size_t cut = start + width;
    // Never inside "\xHH": move the cut before an escape it would split.
    for (size_t back = 1; back <= 3 && cut >= start + back; ++back) {
      if (text[cut - back] == '\\' && cut - back + 4 > cut) {
        cut -= back;
        break;
      }
    }
    pieces.push_back(text.substr(start, cut - start));
    start = cut;
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

}  // namespace kolvane::xif
