#pragma once

#include <memory>
#include <ostream>
#include <string>

#include <pugixml.hpp>

#include "Files.h"

namespace kolvane::cli {

using app::DocumentPath;

// Reads an XML document whose root element must be root; prints one error line on err and
// returns nullptr when it cannot. An empty path reads the bundled example default_file.
std::shared_ptr<pugi::xml_document> ReadDocument(const std::string& path,
                                                 const std::string& default_file,
                                                 const std::string& root, std::ostream& err);

// Reads the type catalogue (the bundled one when path is empty) and hands it to the library.
bool UseCatalogue(const std::string& path, std::ostream& err);

// app::WriteFileAtomically, "-" writing to out; false after one error line on err.
bool WriteFileAtomically(const std::string& path, const std::string& text, std::ostream& out,
                         std::ostream& err);

}  // namespace kolvane::cli
