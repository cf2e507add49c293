#include "types/TypeKind.h"

namespace kolvane {

TypeKind ParseTypeKind(std::string_view text) {
  if (text == "SignedNumeric") return TypeKind::kSignedNumeric;
  if (text == "UnsignedNumeric") return TypeKind::kUnsignedNumeric;
  if (text == "Float") return TypeKind::kFloat;
  if (text == "Bitfield") return TypeKind::kBitfield;
  if (text == "Enum") return TypeKind::kEnum;
  if (text == "Textual") return TypeKind::kTextual;
  if (text == "Struct") return TypeKind::kStruct;
  return TypeKind::kUnknown;
}

bool IsNumeric(TypeKind kind) {
  switch (kind) {
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kFloat:
      return true;
    case TypeKind::kUnknown:
    case TypeKind::kBitfield:
    case TypeKind::kEnum:
    case TypeKind::kTextual:
    case TypeKind::kStruct:
      return false;
  }
  return false;
}

std::string AssumedDefault(TypeKind kind) {
  switch (kind) {
    case TypeKind::kTextual:
      return "none";
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kFloat:
    case TypeKind::kBitfield:
    case TypeKind::kEnum:
      return "0";
    case TypeKind::kUnknown:
    case TypeKind::kStruct:
      return "";
  }
  return "";
}

}  // namespace kolvane
