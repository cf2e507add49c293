#include "host/CUtility.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "foundation/Error.h"
#include "foundation/Numbers.h"
#include "foundation/Text.h"
#include "conversion/SNVTDataConversion.h"
#include "types/CSNVTType.h"
#include "types/StructureDepth.h"
#include "types/SnvtCatalogue.h"

namespace kolvane {

namespace {

// Splits text at every depth-0 occurrence of gap (runs of blanks when gap is " ").
std::vector<std::string> SplitAtDepthZero(std::string_view text, std::string_view gap) {
  std::vector<std::string> parts;
  std::string current;
  int depth = 0;
  bool pending = false;  // a part was started and not yet stored
  for (size_t i = 0; i < text.size();) {
    const char c = text[i];
    if (depth == 0 && text.substr(i, gap.size()) == gap) {
      if (gap == " ") {
        if (pending) parts.push_back(current);
        current.clear();
        pending = false;
        while (i < text.size() && text[i] == ' ') ++i;
      } else {
        parts.push_back(current);
        current.clear();
        pending = true;  // a gap always ends one field and begins the next
        i += gap.size();
      }
      continue;
    }
    if (c == '{') ++depth;
    if (c == '}' && depth > 0) --depth;
    current += c;
    pending = true;
    ++i;
  }
  if (pending) parts.push_back(current);
  return parts;
}

// The types being expanded, outermost first, and the fields expanded so far.
struct Expansion {
  std::vector<std::string> path;
  int32_t fields = 0;
};

std::string DefaultOfType(const std::string& id, Expansion& expansion);

std::string EnumerationDefault(const CSNVTType& type, const std::string& declared) {
  const std::string desc = type.ISNVType_EnumDesc();
  if (!declared.empty()) {
    const std::string name = SNVTDataConversion::EnumStateName(declared, desc);
    return name.empty() ? declared : name;
  }
  const std::string zero = SNVTDataConversion::EnumStateName("0", desc);
  if (!zero.empty()) return zero;
  const size_t comma = desc.find(',');
  const size_t semicolon = desc.find(';');
  if (comma == std::string::npos || semicolon == std::string::npos || semicolon < comma) return "";
  return desc.substr(comma + 1, semicolon - comma - 1);
}

// A limit of the type as a number, or nothing when it is missing or unreadable.
std::optional<double> Limit(const std::string& text) {
  try {
    return ParseNumber(text);
  } catch (const Error&) {
    return std::nullopt;
  }
}

std::string NumericDefault(const CSNVTType& type) {
  if (const auto low = Limit(type.ISNVType_Min()); low && *low > 0) return type.ISNVType_Min();
  if (const auto high = Limit(type.ISNVType_Max()); high && *high < 0) return type.ISNVType_Max();
  return "0";
}

std::string StructureDefault(const std::string& id, Expansion& expansion) {
  // A type met again on its own path, a nesting too deep or too many fields end in an empty
  // structure.
  auto& path = expansion.path;
  if (static_cast<int>(path.size()) >= kMaxStructureDepth ||
      std::find(path.begin(), path.end(), id) != path.end()) {
    return "{}";
  }
  path.push_back(id);
  std::string text = "{";
  for (pugi::xml_node field : internal::FindSnvtChild(id, "Fields").children()) {
    if (field.type() != pugi::node_element) continue;
    if (++expansion.fields > kMaxStructureFields) break;
    text += " " + DefaultOfType(field.text().get(), expansion) + " ";
  }
  path.pop_back();
  return text + "}";
}

std::string DefaultOfType(const std::string& id, Expansion& expansion) {
  const auto type = CSNVTType::Shared(id);
  const std::string declared = internal::SnvtChildText(id, "DEFAULT");
  switch (type->Kind()) {
    case TypeKind::kEnum:
      return EnumerationDefault(*type, declared);
    case TypeKind::kStruct:
      return declared.empty() ? StructureDefault(id, expansion) : declared;
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kFloat:
    case TypeKind::kBitfield:
      return declared.empty() ? NumericDefault(*type) : declared;
    case TypeKind::kTextual:
    case TypeKind::kUnknown:
      return declared;
  }
  return declared;
}

// One coordinate of a location: "." or "," as decimal point.
int32_t Coordinate(std::string text) {
  if (const size_t comma = text.find(','); comma != std::string::npos) text[comma] = '.';
  return RoundToInt32(LeadingNumber(text));
}

}  // namespace

std::vector<std::string> CUtility::SplitFields(const std::string& value) {
  std::string_view text = TrimBlanks(value);
  if (text.empty()) return {};
  if (text.size() >= 2 && text.front() == '{' && text.back() == '}') {
    std::string_view inner = text.substr(1, text.size() - 2);
    if (inner.empty()) return {};  // "{}": no fields
    if (inner.front() == ' ') inner.remove_prefix(1);
    if (!inner.empty() && inner.back() == ' ') inner.remove_suffix(1);
    if (inner.empty()) return {""};  // "{  }": one empty field
    std::vector<std::string> fields = SplitAtDepthZero(inner, "  ");
    return fields.size() > 1 ? fields : SplitAtDepthZero(inner, " ");
  }
  return SplitAtDepthZero(text, " ");
}

std::string CUtility::DefaultValue(const std::shared_ptr<ISNVType>& type) {
  if (!type) RaiseError(ErrorNumber::kObjectNotSet, "no type");
  Expansion expansion;
  return DefaultOfType(type->ISNVType_ID(), expansion);
}

void CUtility::ParseLocation(const std::string& text, int32_t& x, int32_t& y) {
  const size_t semicolon = text.find(';');
  x = Coordinate(text.substr(0, semicolon));
  y = semicolon == std::string::npos ? 0 : Coordinate(text.substr(semicolon + 1));
}

std::string CUtility::CompatibleListText(const ICompatibleSNVTs& list) {
  std::string text;
  for (const auto& entry : list.ICompatibleSNVTs_NewEnum()) {
    if (!text.empty()) text += ",";
    text += entry->ICompatibleSNVT_ID();
  }
  return text;
}

int32_t CUtility::EnumStateNumber(const std::string& state) {
  // The enumeration dialog writes the list entry "(value,NAME)".
  if (state.size() > 2 && state.front() == '(' && state.back() == ')' &&
      state.find(',') != std::string::npos) {
    return EnumStateNumber(state.substr(1, state.find(',') - 1));
  }
  if (const std::string* value = internal::FindStateValue(state)) {
    return RoundToInt32(ParseNumber(*value));
  }
  if (state == "Invalid") return -1;
  double number = 0.5;
  try {
    number = ParseNumber(state);
  } catch (const Error&) {
  }
  if (std::trunc(number) == number) return RoundToInt32(number);
  RaiseError(ErrorNumber::kInvalidProcedureCall, "no enumeration state called \"" + state + "\"");
}

}  // namespace kolvane
