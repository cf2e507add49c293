#include "xif/XifImport.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <map>
#include <set>

#include "conversion/SNVTDataConversion.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"

namespace kolvane::xif {

namespace {

std::string Hex2(int value) {
  char digits[4];
  std::snprintf(digits, sizeof digits, "%02X", value & 0xFF);
  return digits;
}

std::string FlagsText(const Flags& flags) {
  std::string text;
  for (const int value : flags.values) text += (text.empty() ? "" : " ") + std::to_string(value);
  return text;
}

const char* AppliesTo(int header) {
  switch (header) {
    case 0:
      return "device";
    case 1:
      return "block";
    case 2:
      return "variable";
    default:
      return "unknown";
  }
}

// A leaf of a layout the file gives only as element lines.
struct Leaf {
  std::string type;  // carried type identifier
};

class Importer {
 public:
  Importer(const DeviceInterface& device, const pugi::xml_document& scpts)
      : device_(device), scpts_(scpts), document_(std::make_shared<pugi::xml_document>()) {
    for (const std::string& id : internal::SnvtIdentifiers()) {
      const pugi::xml_attribute index = internal::FindSnvtElement(id).attribute("INDEX");
      if (!index.empty()) by_index_.emplace(index.as_int(), id);
    }
  }

  ImportedProfile Run(const std::string& name) {
    auto declaration = document_->append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    profile_ = document_->append_child("Profile");
    profile_.append_child("Name").text() = name.c_str();
    std::string id = device_.program_id.Text();
    id.erase(std::remove(id.begin(), id.end(), ':'), id.end());
    profile_.append_child("ProgramID").text() = id.c_str();
    Describe();
    nvs_ = profile_.append_child("NVs");
    cps_ = profile_.append_child("CPs");
    for (const Variable& variable : device_.variables) {
      if (!variable.flags.ConfigurationClass()) AddVariable(variable);
    }
    for (const auto& [variable, bytes] : device_.VariableValues()) AddVariableProperty(*variable, bytes);
    for (const FileProperty& property : device_.FileProperties()) AddFileProperty(property);
    if (types_) profile_.append_copy(types_);
    return {document_, notes_};
  }

 private:
  // The device's own facts: XIF version and functional blocks with their indices.
  void Describe() {
    pugi::xml_node facts = profile_.append_child("DeviceInterface");
    facts.append_attribute("Version") = device_.version.c_str();
    if (!device_.node_doc.parsed) {
      if (!device_.node_doc.text.empty()) facts.append_attribute("SelfDoc") = device_.node_doc.text.c_str();
      return;
    }
    int index = 0;
    for (const FunctionalBlock& block : device_.node_doc.blocks) {
      pugi::xml_node element = facts.append_child("FunctionalBlock");
      element.append_attribute("Index") = index;
      element.append_attribute("Key") = block.profile_key;
      if (!block.name.empty()) element.append_attribute("Name") = block.name.c_str();
      if (block.array_count > 0) element.append_attribute("Array") = block.array_count;
      index += block.array_count > 0 ? block.array_count : 1;
    }
  }

  void AddVariable(const Variable& variable) {
    pugi::xml_node element = nvs_.append_child(UniqueName(variable.name).c_str());
    element.append_attribute("Type") = VariableType(variable).c_str();
    element.append_attribute("Direction") = variable.flags.Output() ? "Out" : "In";
    element.append_attribute("Key") = ("P" + std::to_string(++point_)).c_str();
    // The export number is the variable's place among the profile's variables (the device's own
    // index stays with its facts below).
    element.append_child("ExtendedInfo").append_attribute("ExportIndex") = point_ - 1;
    Facts(element, variable);
  }

  // A configuration variable as a property: its property type's base type, else a type of
  // its element lines, with the value of its bytes.
  void AddVariableProperty(const Variable& variable, const std::vector<uint8_t>& bytes) {
    const VariableDoc doc = variable.ParsedDoc();
    pugi::xml_node element = cps_.append_child(UniqueName(variable.name).c_str());
    std::string type;
    if (doc.form == VariableDoc::Form::kProperty && doc.property.scope == 0 && variable.array_count == 0) {
      type = ScptType(doc.property.index, bytes.size());
    }
    if (type.empty()) type = VariableType(variable);
    element.append_child("SNVTType").text() = type.c_str();
    Value(element, type, bytes, variable.name);
    Facts(element, variable);
    if (doc.form == VariableDoc::Form::kProperty) Descriptor(element.child("DeviceInterface"), doc.property);
  }

  void AddFileProperty(const FileProperty& property) {
    const PropertyDescriptor& descriptor = property.descriptor;
    const pugi::xml_node scpt = descriptor.scope == 0 ? Scpt(descriptor.index) : pugi::xml_node();
    std::string name = scpt ? scpt.attribute("NAME").value()
                            : "UCPT" + std::to_string(descriptor.scope) + "_" + std::to_string(descriptor.index);
    pugi::xml_node element = cps_.append_child(UniqueName(name).c_str());
    const int count = descriptor.dimension.value_or(0);
    const auto size = static_cast<size_t>(descriptor.size.value_or(0));
    std::string type = descriptor.scope == 0 && count == 0 ? ScptType(descriptor.index, size) : "";
    if (type.empty()) {
      const std::string base = descriptor.scope == 0 ? ScptType(descriptor.index, size) : "";
      type = ArrayType(element.name(), base.empty() ? BytesType(size) : base, count > 0 ? count : 1);
    }
    element.append_child("SNVTType").text() = type.c_str();
    Value(element, type, property.bytes, element.name());
    pugi::xml_node facts = element.append_child("DeviceInterface");
    facts.append_attribute("Source") = property.read_only ? "readOnly" : "value";
    Descriptor(facts, descriptor);
  }

  void Facts(pugi::xml_node element, const Variable& variable) {
    pugi::xml_node facts = element.append_child("DeviceInterface");
    facts.append_attribute("Index") = variable.index;
    facts.append_attribute("TypeIndex") = variable.type_index;
    facts.append_attribute("Flags") = FlagsText(variable.flags).c_str();
    if (variable.array_count > 0) facts.append_attribute("Array") = variable.array_count;
    if (variable.average_rate != 0 || variable.maximum_rate != 0) {
      facts.append_attribute("Rates") =
          (std::to_string(variable.average_rate) + " " + std::to_string(variable.maximum_rate)).c_str();
    }
    std::string elements;
    for (const Element& e : variable.elements) {
      elements += (elements.empty() ? "" : ";") + std::to_string(e.kind) + " " +
                  std::to_string(e.offset) + " " + std::to_string(e.size) + " " +
                  std::to_string(e.is_signed) + " " + std::to_string(e.count);
    }
    facts.append_attribute("Elements") = elements.c_str();
    if (!variable.doc.empty()) facts.append_attribute("SelfDoc") = variable.doc.c_str();
    const VariableDoc doc = variable.ParsedDoc();
    if (doc.form == VariableDoc::Form::kMember) {
      facts.append_attribute("Block") = doc.block;
      facts.append_attribute("Member") = doc.member;
      if (!doc.standard_member) facts.append_attribute("Standard") = "0";
      if (doc.changeable_type) facts.append_attribute("ChangeableType") = "1";
    }
  }

  void Descriptor(pugi::xml_node facts, const PropertyDescriptor& descriptor) {
    if (const pugi::xml_node scpt = descriptor.scope == 0 ? Scpt(descriptor.index) : pugi::xml_node()) {
      facts.append_attribute("Scpt") = scpt.attribute("NAME").value();
    }
    facts.append_attribute("PropertyIndex") = descriptor.index;
    facts.append_attribute("Scope") = descriptor.scope;
    facts.append_attribute("PropertyFlags") = Hex2(descriptor.flags).c_str();
    facts.append_attribute("AppliesTo") = AppliesTo(descriptor.applies_to);
    if (!descriptor.select.empty()) facts.append_attribute("Select") = descriptor.select.c_str();
    if (!descriptor.range.empty()) facts.append_attribute("Range") = descriptor.range.c_str();
  }

  // The value of bytes for type: a leaf's text as the property's default, a structure's leaves
  // as the values of its fields.
  void Value(pugi::xml_node element, const std::string& type, const std::vector<uint8_t>& bytes,
             const std::string& what) {
    if (bytes.empty()) {
      notes_.push_back(what + ": the file holds no value");
      return;
    }
    size_t at = 0;
    try {
      if (Kind(type) == TypeKind::kStruct) {
        Fields(element, type, bytes, at);
      } else {
        const size_t length = Length(type);
        if (length > bytes.size()) throw std::out_of_range("short");
        std::string value = SNVTDataConversion::RawToValue(
            std::vector<uint8_t>(bytes.begin(), bytes.begin() + static_cast<long>(length)),
            *CSNVTType::Shared(type));
        // A property's enumeration default is its state's number, as profiles write it.
        if (Kind(type) == TypeKind::kEnum) value = std::to_string(static_cast<int8_t>(bytes[0]));
        if (value.empty()) {
          // An element without text is no default: loading assumes the type's.
          notes_.push_back(what + ": the device holds an empty text, which a profile's default "
                                  "cannot hold; the type's default is assumed");
        } else {
          element.append_child("Default").text() = value.c_str();
        }
        at = length;
      }
    } catch (const std::exception& error) {
      notes_.push_back(what + ": its bytes do not read as SNVT_" + type + " (" + error.what() + ")");
      return;
    }
    if (at != bytes.size()) {
      notes_.push_back(what + ": " + std::to_string(bytes.size()) + " bytes for SNVT_" + type +
                       " of " + std::to_string(at));
    }
  }

  void Fields(pugi::xml_node element, const std::string& type, const std::vector<uint8_t>& bytes,
              size_t& at) {
    for (pugi::xml_node field : internal::FindSnvtChild(type, "Fields").children()) {
      if (field.type() != pugi::node_element) continue;
      const std::string field_type = field.text().get();
      pugi::xml_node child = element.append_child(field.name());
      if (Kind(field_type) == TypeKind::kStruct) {
        Fields(child, field_type, bytes, at);
        continue;
      }
      const size_t length = Length(field_type);
      if (at + length > bytes.size()) throw std::out_of_range("too few bytes");
      const std::string value = SNVTDataConversion::RawToValue(
          std::vector<uint8_t>(bytes.begin() + static_cast<long>(at),
                               bytes.begin() + static_cast<long>(at + length)),
          *CSNVTType::Shared(field_type));
      child.append_child("Value").text() = value.c_str();
      at += length;
    }
  }

  TypeKind Kind(const std::string& type) const {
    if (const auto carried = carried_kinds_.find(type); carried != carried_kinds_.end()) {
      return carried->second;
    }
    return ParseTypeKind(internal::SnvtChildText(type, "TYPE"));
  }

  size_t Length(const std::string& type) const {
    const auto found = CSNVTType::Shared(type);
    return static_cast<size_t>(found->Kind() == TypeKind::kEnum ? 1 : found->ISNVType_Length());
  }

  // The catalogue's length of a type (a structure's as its element declares it).
  size_t CatalogueLength(const std::string& type) const {
    if (const auto length = internal::DeclaredLength(type)) return static_cast<size_t>(*length);
    return Kind(type) == TypeKind::kEnum ? 1 : 0;
  }

  pugi::xml_node Scpt(int index) const {
    return scpts_.child("SCPTS").find_child_by_attribute("SCPT", "INDEX", std::to_string(index).c_str());
  }

  // The catalogue type of a standard property type built on one, when its length is size.
  std::string ScptType(int index, size_t size) const {
    const pugi::xml_node scpt = Scpt(index);
    const std::string type = scpt.attribute("TYPE").value();
    if (type.empty() || !internal::FindSnvtElement(type) || CatalogueLength(type) != size) return "";
    return type;
  }

  // The catalogue type of a variable's index when its element lines give its length; else a
  // type of the element lines, carried in the profile.
  std::string VariableType(const Variable& variable) {
    if (const auto known = by_index_.find(variable.type_index);
        known != by_index_.end() && variable.array_count == 0) {
      if (CatalogueLength(known->second) == static_cast<size_t>(variable.Size())) return known->second;
      notes_.push_back(variable.name + ": its element lines give " + std::to_string(variable.Size()) +
                       " bytes, SNVT_" + known->second + " has " +
                       std::to_string(CatalogueLength(known->second)));
    } else if (variable.type_index != 0) {
      notes_.push_back(variable.name + ": type index " + std::to_string(variable.type_index) +
                       " is not in the catalogue; its element lines make its type");
    }
    std::vector<std::string> leaves = Leaves(variable);
    const int copies = variable.array_count > 0 ? variable.array_count : 1;
    if (leaves.size() == 1 && copies == 1) return leaves.front();
    std::vector<std::pair<std::string, std::string>> fields;
    for (int copy = 0; copy < copies; ++copy) {
      for (size_t i = 0; i < leaves.size(); ++i) {
        std::string field = "f_" + std::to_string(i);
        if (copies > 1) field = "e" + std::to_string(copy) + "_" + std::to_string(i);
        fields.emplace_back(field, leaves[i]);
      }
    }
    return Structure("unvt_" + variable.name, fields);
  }

  // The leaf types of one element of a variable, from its element lines.
  std::vector<std::string> Leaves(const Variable& variable) {
    std::vector<std::string> leaves;
    for (const Piece& piece : Pieces(variable.elements)) {
      switch (piece.kind) {
        case Piece::Kind::kBits:
          leaves.push_back(Number("unvt_bits8", "Bitfield", 1));
          break;
        case Piece::Kind::kNumber: {
          const std::string id = std::string(piece.is_signed ? "unvt_s" : "unvt_u") + (piece.bytes == 1 ? "8" : "16");
          leaves.push_back(Number(id, piece.is_signed ? "SignedNumeric" : "UnsignedNumeric", piece.bytes));
          break;
        }
        case Piece::Kind::kCharacter:  // bytes: a text type would write blanks where the device may hold zeros
        case Piece::Kind::kOpaque:
          leaves.push_back(Number("unvt_u8", "UnsignedNumeric", 1));
          break;
      }
    }
    if (leaves.empty()) leaves.push_back(Number("unvt_u8", "UnsignedNumeric", 1));
    return leaves;
  }

  std::string BytesType(size_t size) {
    if (size == 1) return Number("unvt_u8", "UnsignedNumeric", 1);
    std::vector<std::pair<std::string, std::string>> fields;
    for (size_t i = 0; i < size; ++i) fields.emplace_back("b_" + std::to_string(i), Number("unvt_u8", "UnsignedNumeric", 1));
    return Structure("unvt_bytes" + std::to_string(size), fields);
  }

  std::string ArrayType(const std::string& name, const std::string& element, int count) {
    if (count == 1) return element;
    std::vector<std::pair<std::string, std::string>> fields;
    for (int i = 0; i < count; ++i) fields.emplace_back("e_" + std::to_string(i), element);
    return Structure("unvt_" + name, fields);
  }

  pugi::xml_node Types() {
    if (!types_) types_ = scratch_.append_child("Types");
    return types_;
  }

  std::string Number(const std::string& id, const char* kind, int length) {
    if (carried_kinds_.emplace(id, ParseTypeKind(kind)).second) {
      pugi::xml_node type = Types().append_child(("SNVT_" + id).c_str());
      type.append_child("NAME").text() = id.c_str();
      type.append_child("TYPE").text() = kind;
      const bool is_signed = std::string(kind) == "SignedNumeric";
      const long long span = 1LL << (8 * length);
      type.append_child("MIN").text() = is_signed ? -span / 2 : 0;
      type.append_child("MAX").text() = is_signed ? span / 2 - 1 : span - 1;
      type.append_child("LENGTH").text() = length;
      type.append_child("A_COEF").text() = 1;
      type.append_child("B_COEF").text() = 0;
      type.append_child("C_COEF").text() = 0;
      Carry();
    }
    return id;
  }

  std::string Structure(const std::string& id, const std::vector<std::pair<std::string, std::string>>& fields) {
    if (carried_kinds_.emplace(id, TypeKind::kStruct).second) {
      size_t length = 0;
      for (const auto& field : fields) {
        length += Kind(field.second) == TypeKind::kStruct ? CatalogueLength(field.second)
                                                          : Length(field.second);
      }
      pugi::xml_node type = Types().append_child(("SNVT_" + id).c_str());
      type.append_child("NAME").text() = id.c_str();
      type.append_child("TYPE").text() = "Struct";
      type.append_child("LENGTH").text() = static_cast<unsigned>(length);
      pugi::xml_node list = type.append_child("Fields");
      for (const auto& [name, field_type] : fields) list.append_child(name.c_str()).text() = field_type.c_str();
      // Lookups must see the carried types from now on.
      Carry();
    }
    return id;
  }

  // Makes the carried types part of the catalogue the library reads, so their lengths and
  // fields are found like the catalogue's own.
  void Carry() {
    auto merged = std::make_shared<pugi::xml_document>();
    merged->reset(*base_catalogue_);
    pugi::xml_node root = merged->child("SNVTS");
    for (pugi::xml_node type : types_.children()) root.append_copy(type);
    Globals::SetSnvtCatalogDocument(merged);
  }

  std::string UniqueName(const std::string& wanted) {
    std::string name = wanted.empty() || std::isdigit(static_cast<unsigned char>(wanted[0])) ? "nv" + wanted : wanted;
    for (char& c : name) {
      if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_') c = '_';
    }
    // A device interface file holds names of 16 characters: a longer one, or one with its
    // number, is cut to fit.
    constexpr size_t kMaxName = 16;
    std::string unique = name.substr(0, kMaxName);
    for (int n = 2; !names_.insert(unique).second; ++n) {
      const std::string suffix = "_" + std::to_string(n);
      unique = name.substr(0, kMaxName - suffix.size()) + suffix;
    }
    return unique;
  }

 public:
  // The catalogue to restore and to merge carried types into.
  std::shared_ptr<pugi::xml_document> base_catalogue_;

 private:
  const DeviceInterface& device_;
  const pugi::xml_document& scpts_;
  std::shared_ptr<pugi::xml_document> document_;
  pugi::xml_document scratch_;
  pugi::xml_node profile_, nvs_, cps_, types_;
  std::map<int, std::string> by_index_;
  std::map<std::string, TypeKind> carried_kinds_;
  std::set<std::string> names_;
  std::vector<std::string> notes_;
  int point_ = 0;
};

}  // namespace

ImportedProfile ImportDeviceInterface(const DeviceInterface& device,
                                      const std::shared_ptr<pugi::xml_document>& catalogue,
                                      const pugi::xml_document& scpts, const std::string& name) {
  if (!catalogue) RaiseError(ErrorNumber::kObjectNotSet, "no type catalogue");
  // Lookups read the catalogue handed in (with the carried types as they are made); the one the
  // library had is handed back afterwards.
  const std::shared_ptr<pugi::xml_document> previous = Globals::SnvtCatalogDocument;
  Globals::SetSnvtCatalogDocument(catalogue);
  ImportedProfile imported;
  try {
    Importer importer(device, scpts);
    importer.base_catalogue_ = catalogue;
    imported = importer.Run(name);
  } catch (...) {
    Globals::SetSnvtCatalogDocument(previous);
    throw;
  }
  Globals::SetSnvtCatalogDocument(previous);
  return imported;
}

std::shared_ptr<pugi::xml_document> CatalogueWithCarriedTypes(
    const std::shared_ptr<pugi::xml_document>& catalogue, const pugi::xml_document& profile) {
  const pugi::xml_node carried = profile.child("Profile").child("Types");
  if (!carried || !carried.first_child() || !catalogue) return catalogue;
  auto merged = std::make_shared<pugi::xml_document>();
  merged->reset(*catalogue);
  pugi::xml_node root = merged->child("SNVTS");
  if (!root) return catalogue;
  for (pugi::xml_node type : carried.children()) {
    if (type.type() != pugi::node_element) continue;
    if (!root.child(type.name())) root.append_copy(type);
  }
  return merged;
}

}  // namespace kolvane::xif
