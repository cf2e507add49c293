#pragma once

#include <cstdint>
#include <string>

namespace kolvane {

// Structures nested deeper than this are not expanded further: building them raises error 28.
inline constexpr int kMaxStructureDepth = 32;

// The most fields one structure expands to, nested fields included; a catalogue whose types
// multiply beyond it is cut there, with a message, instead of holding up a load.
inline constexpr int32_t kMaxStructureFields = 1000;

namespace internal {

// Counts the fields of one structure build, nested builds included. Make one in every build of a
// field list; the outermost one starts the count.
class StructureExpansion {
 public:
  explicit StructureExpansion(const std::string& type_name);
  ~StructureExpansion();
  StructureExpansion(const StructureExpansion&) = delete;
  StructureExpansion& operator=(const StructureExpansion&) = delete;

  // Counts one field. Past kMaxStructureFields: error 28, and once per outermost build the
  // message "Error: SNVT_" + the outermost type + " has more than 1000 fields".
  void CountField();

  // A structure field nests kMaxStructureDepth deep: error 28, and once per outermost build the
  // message "Error: SNVT_" + the outermost type + " nests deeper than 32 levels".
  static void TooDeep();
};

}  // namespace internal
}  // namespace kolvane
