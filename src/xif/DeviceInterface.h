#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "foundation/Export.h"

// The device interface file (the text ".xif") of a LonWorks device: its program ID, header
// integers, functional blocks, network variables, message tags, configuration files and the
// initial values of its configuration network variables. Read with ReadDeviceInterface, written
// with WriteDeviceInterface; what the reader does not understand it keeps as text, so a file
// read and written again keeps its records.
namespace kolvane::xif {

// A file that is not a device interface file, or one whose parts contradict each other.
class KOLVANE_API XifError : public std::runtime_error {
 public:
  XifError(int line, const std::string& what)
      : std::runtime_error("line " + std::to_string(line) + ": " + what), line_(line) {}
  // The 1-based line the fault was found on.
  int line() const noexcept { return line_; }

 private:
  int line_;
};

// The eight bytes that bind a device to its interface: format (1 nibble), manufacturer (5
// nibbles), device class (2 bytes), usage, channel type, model number.
struct KOLVANE_API ProgramId {
  std::array<uint8_t, 8> bytes{};

  int Format() const { return bytes[0] >> 4; }
  uint32_t Manufacturer() const;
  uint16_t DeviceClass() const { return static_cast<uint16_t>(bytes[3] << 8 | bytes[4]); }
  uint8_t Usage() const { return bytes[5]; }
  uint8_t Channel() const { return bytes[6]; }
  uint8_t Model() const { return bytes[7]; }
  // "9F:FF:FF:05:01:84:04:60".
  std::string Text() const;
  // From "9F:FF:FF:05:01:84:04:60" or 16 hex digits; nothing when it is neither.
  static std::optional<ProgramId> Parse(const std::string& text);
};

// One functional block of the node self-documentation; an array of N takes N indices.
struct FunctionalBlock {
  int profile_key = 0;
  std::string key_text;  // the key as written ("0520" keeps its leading zero)
  std::string name;      // empty when none is given
  int array_count = 0;   // 0 for a single block
};

// The node self-documentation string: "&3.4@0NodeObject,4[2Lamp;free text".
struct KOLVANE_API NodeDoc {
  std::string text;            // the whole string; empty for "*"
  bool parsed = false;         // false for an older or unknown form, kept as text only
  std::string version;         // "3.4"; empty when not given
  std::vector<FunctionalBlock> blocks;
  std::string free_text;       // after ";"
  // The number of functional block indices the list takes (arrays count their elements).
  int BlockIndexCount() const;
};

// A configuration property descriptor: "&hdr,select,scope\xHHflags,index" in a network
// variable's self-documentation, "hdr,select,scope\xHH,index,size[,dim[,range]];" in a template.
struct KOLVANE_API PropertyDescriptor {
  int applies_to = 0;      // 0 the device, 1 functional blocks, 2 network variables
  std::string select;      // "19", "0.1.4", "38~41"; empty for the device
  int scope = 0;           // 0 a standard property type, else the resource scope of a user type
  int flags = 0x80;        // 0x80 always; 0x04 constant; see the flag constants below
  int index = 0;           // the standard or user property type's index
  std::optional<int> size;       // bytes of one value (templates only)
  std::optional<int> dimension;  // array size (templates only)
  std::string range;             // "min:max" in engineering units (templates only)

  static constexpr int kConstant = 0x04;
  // The indices select names: "0.1.4" and "38~41" (also "38-41") expanded; empty when it names
  // none or cannot be read.
  std::vector<int> Selected() const;
};

// A network variable's self-documentation, parsed.
struct KOLVANE_API VariableDoc {
  enum class Form { kNone, kMember, kProperty, kText };
  Form form = Form::kNone;
  int block = -1;              // kMember: the functional block index
  bool standard_member = true; // kMember: "|" (a member of the standard profile) or "#"
  int member = 0;              // kMember: the member number
  bool changeable_type = false;
  PropertyDescriptor property; // kProperty
  std::string text;            // kText: the whole string; else what follows ";"
};

// One element line of a network variable's type: "<kind> <bit offset> <size> <signed> <count>".
struct Element {
  int kind = 0;  // 0 char, 1 8-bit, 2 16-bit, 3 bit field, 4 opaque block of size bytes
  int offset = 0;
  int size = 0;
  int is_signed = 0;
  int count = 0;  // 0 for a scalar
};

// One part of a value's bytes as element lines lay it out: a character, an 8- or 16-bit number,
// a byte of bit fields, a byte of an opaque block.
struct Piece {
  enum class Kind { kCharacter, kNumber, kBits, kOpaque };
  Kind kind;
  int bytes;
  bool is_signed;
};

// The pieces of element lines in order: counts spread, bit fields packed into bytes (a field
// whose offset does not rise past the previous one starts a new byte).
KOLVANE_API std::vector<Piece> Pieces(const std::vector<Element>& elements);

// The 13 flags of a network variable or message tag record, by position.
struct KOLVANE_API Flags {
  std::array<int, 13> values{0, 1, 63, 0, 0, 1, 0, 1, 0, 1, 0, 0, 0};
  bool Offline() const { return values[0] != 0; }
  bool Bindable() const { return values[1] != 0; }
  bool Output() const { return values[3] != 0; }
  int Service() const { return values[4]; }  // 0 acknowledged, 1 repeated, 2 unacknowledged
  bool ServiceConfigurable() const { return values[5] != 0; }
  bool Authenticated() const { return values[6] != 0; }
  bool AuthenticationConfigurable() const { return values[7] != 0; }
  bool Priority() const { return values[8] != 0; }
  bool PriorityConfigurable() const { return values[9] != 0; }
  bool Polled() const { return values[10] != 0; }
  bool Synchronous() const { return values[11] != 0; }
  bool ConfigurationClass() const { return values[12] != 0; }
  // The names of the 13 positions, for display: "offline", "bindable", ...
  static const std::array<const char*, 13>& Names();
};

struct KOLVANE_API Variable {
  std::string name;
  int index = 0;
  int average_rate = 0;
  int maximum_rate = 0;
  int array_count = 0;  // 0 for a scalar
  Flags flags;
  std::string doc;                      // the self-documentation string; empty for "*"
  std::vector<std::string> doc_pieces;  // the string as its lines held it
  int type_index = 0;                   // the standard type's index; 0 for any other type
  std::vector<Element> elements;

  VariableDoc ParsedDoc() const;
  // Bytes of one value (of one element of an array), from the element lines.
  int Size() const;
  // Bytes of the whole variable: Size() times the array count.
  int TotalSize() const { return Size() * (array_count > 0 ? array_count : 1); }
};

struct Tag {
  std::string name;
  int index = 0;
  int average_rate = 0;
  int maximum_rate = 0;
  int fifth = 0;
  Flags flags;
};

// A "FILE template|value|readOnly" section.
struct ConfigFile {
  std::string kind;  // "template", "value" or "readOnly"
  int directory_index = 0;
  int type_code = 0;                 // the third header number
  std::optional<int> byte_count;     // a byte count after it, when written
  std::string version;               // template: "1.1"
  std::vector<PropertyDescriptor> entries;  // template: one per descriptor line
  std::vector<uint8_t> bytes;               // value, readOnly: the data
  std::vector<std::string> lines;           // the section's lines as read, header excluded
};

// A configuration property held in a configuration file: its template entry and value bytes.
struct FileProperty {
  PropertyDescriptor descriptor;
  std::vector<uint8_t> bytes;
  bool read_only = false;
};

// What the file's lines after the header hold, in order, so a file is written as it was read.
struct LayoutEntry {
  enum class Kind { kTag, kVariable, kFile, kValues, kText };
  Kind kind;
  size_t index = 0;   // into tags, variables or files
  std::string text;   // kText: the line (blank, comment, unknown)
};

// How the file was written: what a writer keeps to write it the same way.
struct Style {
  std::string newline = "\r\n";
  int type_count_width = 4;       // "92 *   2"; 1 writes "95 * 1"
  bool element_trailing_blank = false;  // after an array count of 0: "2 0 0 0 0 "
  int element_count_width = 1;          // an array count right-aligned: "0 0 0 0  4"
  bool final_newline = true;
  bool node_doc_lines = true;     // the node string ends with one empty line
};

struct KOLVANE_API DeviceInterface {
  std::string version = "4.501";
  std::array<std::string, 3> banner;           // lines 1 to 3 as read
  ProgramId program_id;
  std::array<std::vector<int64_t>, 5> header;  // lines 6 to 10, kept exactly as read
  std::array<std::string, 5> header_lines;     // their text as read
  NodeDoc node_doc;
  std::vector<std::string> node_doc_pieces;
  std::vector<Tag> tags;
  std::vector<Variable> variables;
  std::vector<ConfigFile> files;
  std::vector<uint8_t> values;                 // NVVAL: the configuration variables' bytes
  std::vector<std::string> values_lines;       // NVVAL's lines as read
  std::vector<LayoutEntry> layout;
  Style style;

  // The configuration variables (flag 13) in index order, each with its NVVAL bytes.
  std::vector<std::pair<const Variable*, std::vector<uint8_t>>> VariableValues() const;
  // The configuration properties of the template, each with its value or read-only bytes.
  std::vector<FileProperty> FileProperties() const;
  const ConfigFile* File(const std::string& kind) const;
};

// Reads a device interface file's text; XifError with the line of the first fault.
KOLVANE_API DeviceInterface ReadDeviceInterface(const std::string& text);

// Writes the model in the style it was read in (or the default style for one made anew).
KOLVANE_API std::string WriteDeviceInterface(const DeviceInterface& device);

// Bytes of a value stream in any notation the files use: "\x0D \xAC", "0x0DAC", "0x0B B8",
// "0x7F,0xFF," with "#" comment lines; nothing when a token is no byte.
KOLVANE_API std::optional<std::vector<uint8_t>> ParseBytes(const std::vector<std::string>& lines);

// A string as self-documentation lines hold it: pieces of at most width characters, never cut
// inside a "\xHH".
KOLVANE_API std::vector<std::string> WrapDoc(const std::string& text, size_t width = 60);

}  // namespace kolvane::xif
