#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <pugixml.hpp>

namespace kolvane::app {

// What a document is: a profile ("Profile"), a values document ("ApplicationProfile"), or
// neither.
enum class DocumentKind { kProfile, kValues, kOther };
DocumentKind KindOfDocument(const pugi::xml_document& document);

// Reads a values document ("ApplicationProfile" of "ApPoint" records); nullptr with why in
// error when the file cannot be read or is none.
std::shared_ptr<pugi::xml_document> ReadValuesDocument(const std::string& path, std::string& error);

// A file to compare: a profile (a device interface file is one; its document is not read
// here) or a values document.
struct ComparedFile {
  DocumentKind kind = DocumentKind::kOther;
  std::shared_ptr<pugi::xml_document> document;  // a values document; a profile's when read
};

// Reads a file to compare; nothing, with why in error, when it cannot be read or is neither a
// profile nor a values document.
std::optional<ComparedFile> ReadComparedFile(const std::string& path, std::string& error);

// One way two sets of export rows differ.
struct Difference {
  std::string path;
  std::string what;  // "only in first", "only in second", "type", or the column: "value", ...
  std::string first;
  std::string second;
};

// The differences of two sets of export rows, matched by path, in the first's order and then
// the second's: type, direction, value, default and limits, numbers compared as the bytes they
// are (21.5 and 21.504 are one value of a type in hundredths).
std::vector<Difference> CompareRows(const std::vector<std::vector<std::string>>& first,
                                    const std::vector<std::vector<std::string>>& second);

// The export rows of a values document's points, either form: path (the name), kind "point",
// type, direction and value in the display units; types from the catalogue last handed in.
std::vector<std::vector<std::string>> ValuesRows(const pugi::xml_document& document);

// A difference as diff prints it: "- path (type)", "+ path (type)", "~ path: what a -> b".
std::string DifferenceLine(const Difference& difference);

}  // namespace kolvane::app
