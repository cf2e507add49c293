#pragma once

#include <string>

#include <pugixml.hpp>

namespace kolvane::app {

// Outcome of reading a user's XML file: where it went wrong and why.
struct XmlLoadResult {
  bool ok = false;
  std::string file;
  int line = 0;  // 1-based; 0 when the file could not be read at all
  int column = 0;
  std::string message;

  explicit operator bool() const { return ok; }
  // "file:line:column: message", or "file: message" without a position.
  std::string description() const;
};

// Reads path into document and, when root is given, checks the root element's name.
XmlLoadResult LoadXmlFile(const std::string& path, pugi::xml_document& document,
                          const std::string& root = "");

}  // namespace kolvane::app
