#pragma once

#include <memory>
#include <string>

#include <pugixml.hpp>

#include "foundation/Files.h"

namespace kolvane::app {

// A bundled example file (snvts.xml, nvotable.xml, profile.xml): installed beside the running
// program, else the one in the source tree.
std::string BundledExample(const std::string& file_name);

// The file to read: path, or the bundled example file_name when path is empty.
std::string DocumentPath(const std::string& path, const std::string& file_name);

// The whole content of the file at path; false with "path: why" in error when it is no file
// (a directory, a missing path) or cannot be read. A device (/dev/stdin) reads as a file.
bool ReadTextFile(const std::string& path, std::string& text, std::string& error);

// Reads DocumentPath(path, file_name) into a new document whose root element must be root;
// nullptr with "file:line:column: message" in error when it cannot.
std::shared_ptr<pugi::xml_document> ReadDocument(const std::string& path,
                                                 const std::string& file_name,
                                                 const std::string& root, std::string& error);

// The library's atomic file write.
using ::kolvane::WriteFileAtomically;

}  // namespace kolvane::app
