#include "DeviceFiles.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Files.h"
#include "foundation/Text.h"

namespace kolvane::app {

bool IsDeviceFile(const std::string& path) {
  return EqualsNoCase(std::filesystem::path(path).extension().string(), ".xif");
}

std::string DeviceName(const xif::DeviceInterface& device, const std::string& path) {
  const std::string& first = device.banner[0];
  if (first.rfind("File: ", 0) == 0) {
    std::string named = first.substr(6, first.find(' ', 6) - 6);
    named = named.substr(named.find_last_of("/\\") + 1);
    named = named.substr(0, named.rfind('.'));
    if (!named.empty()) return named;
  }
  return std::filesystem::path(path).stem().string();
}

std::optional<xif::DeviceInterface> ReadDeviceFile(const std::string& path, std::string& error) {
  std::string text;
  if (!ReadTextFile(path, text, error)) return std::nullopt;
  try {
    return xif::ReadDeviceInterface(text);
  } catch (const xif::XifError& fault) {
    error = path + ": " + fault.what();
    return std::nullopt;
  }
}

std::optional<xif::ImportedProfile> ImportDeviceFile(
    const std::string& path, const std::shared_ptr<pugi::xml_document>& catalogue,
    std::string& error) {
  const auto device = ReadDeviceFile(path, error);
  if (!device) return std::nullopt;
  const auto scpts = ReadDocument("", "scpts.xml", "SCPTS", error);
  if (!scpts) return std::nullopt;
  return xif::ImportDeviceInterface(*device, catalogue, *scpts, DeviceName(*device, path));
}

}  // namespace kolvane::app
