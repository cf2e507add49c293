#include "foundation/mXML.h"

#include "foundation/Error.h"

namespace kolvane::mXML {

namespace {

bool IsNameStart(unsigned char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == ':' || c >= 0x80;
}

bool IsNameChar(unsigned char c) {
  return IsNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

bool IsXmlName(std::string_view name) {
  if (name.empty() || !IsNameStart(static_cast<unsigned char>(name.front()))) return false;
  for (char c : name) {
    if (!IsNameChar(static_cast<unsigned char>(c))) return false;
  }
  return true;
}

}  // namespace

pugi::xml_node AppendXmlElement(pugi::xml_document& document, pugi::xml_node parent,
                                const std::string& name, const std::string& text) {
  if (!IsXmlName(name)) {
    RaiseError(ErrorNumber::kInvalidProcedureCall, "\"" + name + "\" is not an XML element name");
  }
  if (!parent || parent.root() != document) {
    RaiseError(ErrorNumber::kInvalidProcedureCall, "the parent node is not in the document");
  }
  pugi::xml_node element = parent.append_child(name.c_str());
  if (!element) {
    RaiseError(ErrorNumber::kInvalidProcedureCall, "cannot append \"" + name + "\" here");
  }
  if (text != kNoTextField) element.append_child(pugi::node_pcdata).set_value(text.c_str());
  return element;
}

std::string BoolToBit(bool value) { return value ? "1" : "0"; }

std::string_view BaseName(pugi::xml_node node) {
  std::string_view name = node.name();
  size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

}  // namespace kolvane::mXML
