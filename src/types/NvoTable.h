#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include <pugixml.hpp>

namespace kolvane::internal {

// True when a node name starts with exactly "SNVT_".
bool IsTypeNodeName(std::string_view name);

// The identifier of a node name: the text after its first "_" (empty when it has none).
std::string_view NodeIdentifier(std::string_view name);

// An NVO compatibility table ("NVOTable" with one "SNVT_" + output type element per output, whose
// children name the compatible types), indexed once so that no question walks the document.
class NvoTable {
 public:
  // Indexes document; the table keeps no reference to it.
  explicit NvoTable(const pugi::xml_document& document);

  // The types listed for output type id ("NVOTable/SNVT_" + id, first match) joined by ",",
  // in document order; empty when the table has no such output.
  std::string CompatibleTypes(std::string_view id) const;

  // The outputs whose lists name id, joined by ",": each output once per listing, in document
  // order; the leading "," is dropped only from a list longer than 2 characters.
  std::string OutputsListing(std::string_view id) const;

  // The outputs whose lists name id, joined by "," without a leading ",", for an input's
  // compatible list (a lone one-character output stays readable there).
  std::string CompatibleOutputs(std::string_view id) const;

 private:
  std::unordered_map<std::string, std::string> compatible_types_;
  std::unordered_map<std::string, std::string> outputs_listing_;
};

}  // namespace kolvane::internal
