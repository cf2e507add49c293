#pragma once

#include <string>

namespace kolvane::app {

// A bundled example file (snvts.xml, nvotable.xml, profile.xml): installed beside the running
// program, else the one in the source tree.
std::string BundledExample(const std::string& file_name);

// Writes text to path through a temporary file in the same folder and a rename, so that the
// file is either the old one or the whole new one. False with the reason in error.
bool WriteFileAtomically(const std::string& path, const std::string& text, std::string& error);

}  // namespace kolvane::app
