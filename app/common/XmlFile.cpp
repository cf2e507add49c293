#include "XmlFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

#include "Files.h"

namespace kolvane::app {

namespace {

// 1-based line and column (in bytes) of offset in text.
void Position(const std::string& text, ptrdiff_t offset, int& line, int& column) {
  line = 1;
  column = 1;
  const auto end = static_cast<size_t>(std::max<ptrdiff_t>(0, offset));
  for (size_t i = 0; i < end && i < text.size(); ++i) {
    if (text[i] == '\n') {
      ++line;
      column = 1;
    } else {
      ++column;
    }
  }
}

}  // namespace

std::string XmlLoadResult::description() const {
  std::ostringstream out;
  out << file;
  if (line > 0) out << ':' << line << ':' << column;
  out << ": " << message;
  return out.str();
}

XmlLoadResult LoadXmlFile(const std::string& path, pugi::xml_document& document,
                          const std::string& root) {
  XmlLoadResult result;
  result.file = path;
  std::string text;
  std::string error;
  if (!ReadTextFile(path, text, error)) {
    result.message = error.substr(path.size() + 2);
    return result;
  }
  const pugi::xml_parse_result parsed = document.load_buffer(text.data(), text.size());
  if (!parsed) {
    Position(text, parsed.offset, result.line, result.column);
    result.message = std::string("malformed XML: ") + parsed.description();
    return result;
  }
  const pugi::xml_node element = document.document_element();
  if (!root.empty() && root != element.name()) {
    // offset_debug points at the element's name; report its "<".
    Position(text, element ? element.offset_debug() - 1 : 0, result.line, result.column);
    result.message =
        element ? "root element is <" + std::string(element.name()) + ">, expected <" + root + ">"
                : "no root element, expected <" + root + ">";
    return result;
  }
  result.ok = true;
  return result;
}

}  // namespace kolvane::app
