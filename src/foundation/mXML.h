#pragma once

#include <string>
#include <string_view>

#include <pugixml.hpp>

// XML helpers shared by the loading and saving code. Not visible to a host.
namespace kolvane::mXML {

// Text that asks AppendXmlElement for an element without a text child.
inline constexpr char kNoTextField[] = "NoTextField";

// Appends an element called name as the last child of parent, with a text child holding text
// (an empty text gives an empty text child) unless text is "NoTextField". Error 5 when parent is
// not a node of document that can hold elements, or name is not an XML name.
pugi::xml_node AppendXmlElement(pugi::xml_document& document, pugi::xml_node parent,
                                const std::string& name, const std::string& text);

// "1" for true, "0" for false: how booleans are written to XML.
std::string BoolToBit(bool value);

// The name of node after the first ":" (the whole name when it has no prefix).
std::string_view BaseName(pugi::xml_node node);

}  // namespace kolvane::mXML
