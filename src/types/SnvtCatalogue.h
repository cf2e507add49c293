#pragma once

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

// The identifiers of the catalogue's types, in document order, each once.
std::vector<std::string> SnvtIdentifiers();

}  // namespace kolvane::internal
