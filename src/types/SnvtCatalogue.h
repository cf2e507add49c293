#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

// Lookups in the type catalogue (Globals::SnvtCatalogDocument). The catalogue is indexed once,
// on the first lookup after a document is handed in, so a lookup never scans the document.
namespace kolvane::internal {

// The first "SNVTS/SNVT_" + identifier element in document order, or an empty node.
pugi::xml_node FindSnvtElement(std::string_view identifier);

// The first child element called child of the "SNVTS/SNVT_" + identifier elements, in document
// order, or an empty node.
pugi::xml_node FindSnvtChild(std::string_view identifier, std::string_view child);

// Changes whenever the index is rebuilt for another catalogue: what is derived from the
// catalogue may be kept while the stamp stays the same.
uint64_t CatalogueStamp();

// The identifiers of the catalogue's types, in document order, each once.
std::vector<std::string> SnvtIdentifiers();

// The text of the first child of the "SNVTS/SNVT_" + identifier element whose name, upper-cased,
// is upper_name (comments skipped); empty when there is none.
std::string SnvtChildText(std::string_view identifier, std::string_view upper_name);

// The length in bytes a type's catalogue element declares ("LENGTH"; a structure's whole);
// nothing when it declares none, or no whole number up to 65535.
std::optional<int32_t> DeclaredLength(std::string_view identifier);

// The value text of the enumeration state called name (without regard to case): the first such
// state of the catalogue in document order; nullptr when no enumeration has it.
const std::string* FindStateValue(std::string_view name);

}  // namespace kolvane::internal
