#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Kolvane.h"

namespace kolvane::app {

// Whether path names a device interface file (".xif" in any letter case).
bool IsDeviceFile(const std::string& path);

// Reads a device interface file; nothing with "path: line N: why" in error.
std::optional<xif::DeviceInterface> ReadDeviceFile(const std::string& path, std::string& error);

// The profile document of a device interface file, named after the file, with the notes of
// what it could not say; its types from catalogue and the bundled standard property types.
std::optional<xif::ImportedProfile> ImportDeviceFile(
    const std::string& path, const std::shared_ptr<pugi::xml_document>& catalogue,
    std::string& error);

}  // namespace kolvane::app
