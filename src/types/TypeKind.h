#pragma once

#include <string>
#include <string_view>

namespace kolvane {

// The kind of a type, parsed once from its "TYPE" text. Every rule that differs by kind is a
// switch over this enum without a default, so the compiler names each place a new kind must
// reach. kUnknown stands for an empty, misspelt or unknown kind text.
enum class TypeKind {
  kUnknown,
  kSignedNumeric,
  kUnsignedNumeric,
  kFloat,
  kBitfield,
  kEnum,
  kTextual,
  kStruct,
};

// The kind a "TYPE" text names, compared exactly ("float" is kUnknown).
TypeKind ParseTypeKind(std::string_view text);

// "Float", "SignedNumeric" or "UnsignedNumeric": the kinds shown in display units.
bool IsNumeric(TypeKind kind);

// The default an item assumes when its profile gives none: "none" for text, "0" for numbers,
// bit fields and enumerations; empty for structures (taken from their fields) and unknown kinds.
std::string AssumedDefault(TypeKind kind);

}  // namespace kolvane
