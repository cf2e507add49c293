#include "types/CSNVTType.h"

#include <map>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "foundation/ContinueOnError.h"
#include "foundation/Error.h"
#include "foundation/HostServices.h"
#include "foundation/Numbers.h"
#include "foundation/Text.h"
#include "types/SnvtCatalogue.h"

namespace kolvane {

namespace {

int32_t ReadInteger(pugi::xml_node node) { return RoundToInt32(ParseNumber(node.text().get())); }

// The children of a type element that carry data: comments are skipped.
template <class Visit>
void ForEachChild(pugi::xml_node parent, Visit&& visit) {
  for (pugi::xml_node child : parent.children()) {
    if (child.type() != pugi::node_comment) visit(child);
  }
}

}  // namespace

std::string CSNVTType::ISNVType_ID() const { return id_; }
int32_t CSNVTType::ISNVType_K4Region() const { return k4_region_; }
int32_t CSNVTType::ISNVType_Factor() const { return factor_; }
int32_t CSNVTType::ISNVType_ACoef() const { return a_coef_; }
int32_t CSNVTType::ISNVType_BCoef() const { return b_coef_; }
int32_t CSNVTType::ISNVType_CCoef() const { return c_coef_; }
std::string CSNVTType::ISNVType_GenType() const { return gen_type_; }
std::string CSNVTType::ISNVType_LUIType() const { return lui_type_; }
std::string CSNVTType::ISNVType_InvalidValue() const { return invalid_value_; }
std::string CSNVTType::ISNVType_Name() const { return name_; }
std::string CSNVTType::ISNVType_Min() const { return min_; }
std::string CSNVTType::ISNVType_Max() const { return max_; }
std::string CSNVTType::ISNVType_Units() const { return units_; }
std::string CSNVTType::ISNVType_BACnetUnits() const { return bacnet_units_; }
std::string CSNVTType::ISNVType_EnumDesc() const { return enum_desc_; }
int32_t CSNVTType::ISNVType_Length() const { return length_; }
bool CSNVTType::ISNVType_HasField() const { return false; }

std::string CSNVTType::GetState(const std::string& key) const { return states_.Item(key); }

std::vector<std::string> CSNVTType::StateTexts() const { return states_.Values(); }

namespace {

// Types read from the current catalogue, so that the many items of one type read it once and
// share it.
struct LoadedType {
  std::shared_ptr<CSNVTType> type;
  bool bad_kind = false;  // the reading showed the bad-type message, which every load repeats
};

struct TypeCache {
  uint64_t stamp = 0;
  std::unordered_map<std::string, LoadedType> types;
  // A shared type and a length its items set: the copy with that length.
  std::map<std::pair<const CSNVTType*, int32_t>, std::shared_ptr<CSNVTType>> lengths;
};

thread_local TypeCache cache;

TypeCache& CurrentCache() {
  const uint64_t stamp = internal::CatalogueStamp();
  if (stamp != cache.stamp) {
    cache.types.clear();
    cache.lengths.clear();
    cache.stamp = stamp;
  }
  return cache;
}

}  // namespace

std::shared_ptr<CSNVTType> CSNVTType::Shared(const std::string& identifier) {
  TypeCache& types = CurrentCache();
  if (const auto it = types.types.find(identifier); it != types.types.end()) {
    if (it->second.bad_kind) it->second.type->ShowBadKind();
    return it->second.type;
  }
  auto type = std::make_shared<CSNVTType>();
  type->id_ = identifier;
  ContinueOnError([&] { type->ReadType(internal::FindSnvtElement(identifier)); });
  types.types.emplace(identifier, LoadedType{type, type->bad_kind_});
  return type;
}

std::shared_ptr<CSNVTType> CSNVTType::WithLength(const std::shared_ptr<CSNVTType>& type,
                                                 int32_t length) {
  if (type->length_ == length) return type;
  auto& copy = CurrentCache().lengths[{type.get(), length}];
  if (!copy) {
    copy = std::make_shared<CSNVTType>(*type);
    copy->length_ = length;
  }
  return copy;
}

void CSNVTType::Load(const std::string& identifier) { *this = *Shared(identifier); }

void CSNVTType::ShowBadKind() const { MsgBox("Error: SNVT_" + id_ + " has a bad type", vbOKOnly); }

void CSNVTType::SetEnumDesc(const std::string& text) {
  enum_desc_ = text;
  BuildStates();
}

void CSNVTType::SetGenType(const std::string& text) {
  gen_type_ = text;
  kind_ = ParseTypeKind(text);
}

TypeKind KindOf(const ISNVType& type) {
  if (const auto* catalogue_type = dynamic_cast<const CSNVTType*>(&type)) {
    return catalogue_type->Kind();
  }
  return ParseTypeKind(type.ISNVType_GenType());
}
void CSNVTType::SetLength(int32_t length) { length_ = length; }
void CSNVTType::SetMin(const std::string& text) { min_ = text; }
void CSNVTType::SetMax(const std::string& text) { max_ = text; }
void CSNVTType::SetHasField(bool /*value*/) {}

void CSNVTType::ReadType(pugi::xml_node type) {
  if (!type) RaiseError(ErrorNumber::kObjectNotSet, "SNVT_" + id_ + " is not in the catalogue");
  for (pugi::xml_attribute attribute : type.attributes()) {
    const std::string name = ToUpper(attribute.name());
    if (name == "FACTOR") {
      factor_ = RoundToInt32(ParseNumber(attribute.value()));
    } else if (name == "K4REGION") {
      k4_region_ = RoundToInt32(ParseNumber(attribute.value()));
    }
  }
  ForEachChild(type, [&](pugi::xml_node child) {
    const std::string name = ToUpper(child.name());
    if (name == "NAME") {
      name_ = child.child_value();
    } else if (name == "TYPE") {
      SetGenType(child.text().get());
      ReadKind(type);
    }
  });
}

void CSNVTType::ReadKind(pugi::xml_node type) {
  switch (kind_) {
    case TypeKind::kEnum:
      lui_type_ = "Logic";
      length_ = 1;
      ReadEnumeration();
      return;
    case TypeKind::kStruct:
      lui_type_ = "Invalid";
      return;
    case TypeKind::kFloat:
      lui_type_ = "Float";
      ReadNumeric(type);
      return;
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kBitfield:
      lui_type_ = "Numeric";
      ReadNumeric(type);
      return;
    case TypeKind::kTextual:
      lui_type_ = "Textual";
      ReadTextual(type);
      return;
    case TypeKind::kUnknown:
      bad_kind_ = true;
      ShowBadKind();
      return;
  }
}

void CSNVTType::ReadNumeric(pugi::xml_node type) {
  ForEachChild(type, [&](pugi::xml_node child) {
    ContinueOnError([&] {
      const std::string name = ToUpper(child.name());
      if (name == "UNIT") {
        units_ = child.text().get();
      } else if (name == "BACNETUNIT") {
        bacnet_units_ = child.text().get();
      } else if (name == "MIN") {
        min_ = child.text().get();
      } else if (name == "MAX") {
        max_ = child.text().get();
      } else if (name == "INVALIDVALUE") {
        invalid_value_ = child.text().get();
      } else if (name == "LENGTH") {
        length_ = ReadInteger(child);
      } else if (name == "A_COEF") {
        a_coef_ = ReadInteger(child);
      } else if (name == "B_COEF") {
        b_coef_ = ReadInteger(child);
      } else if (name == "C_COEF") {
        c_coef_ = ReadInteger(child);
      }
    });
  });
}

void CSNVTType::ReadTextual(pugi::xml_node type) {
  ForEachChild(type, [&](pugi::xml_node child) {
    if (ToUpper(child.name()) == "LENGTH") ContinueOnError([&] { length_ = ReadInteger(child); });
  });
}

void CSNVTType::ReadEnumeration() {
  std::string text;
  ForEachChild(internal::FindSnvtChild(id_, "Enums"), [&](pugi::xml_node state) {
    text += std::string(state.text().get()) + "," + state.name() + ";";
  });
  invalid_value_ = "255";
  enum_desc_ = std::string(TrimBlanks(text));
  BuildStates();
}

void CSNVTType::BuildStates() {
  states_.Clear();
  std::string_view rest = enum_desc_;
  while (!rest.empty()) {
    const size_t end = rest.find(';');
    const std::string_view piece = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    if (piece.empty()) continue;
    const std::string key(piece.substr(0, piece.find(',')));
    states_.Add(key, "(" + std::string(piece) + ")");
  }
}

}  // namespace kolvane
