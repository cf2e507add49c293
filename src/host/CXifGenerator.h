#pragma once

#include <memory>
#include <string>
#include <vector>

#include "interfaces/IXIFAndTypesGen.h"
#include "xif/DeviceInterface.h"

namespace kolvane {

class IProfile;

// The built-in generator of "TarnXIFandTypesGen.XIFAndTypesGen": writes a profile's device
// interface file, and its user types into the types folder. One object per generation.
class CXifGenerator final : public IXIFAndTypesGen {
 public:
  void Source(const std::string& value) override { source_ = value; }
  void OutputFolder(const std::string& value) override { output_folder_ = value; }
  void XifFile(const std::string& value) override { xif_file_ = value; }
  void TypesFolder(const std::string& value) override { types_folder_ = value; }
  void ResourceCatalogue(const std::string& value) override { resource_catalogue_ = value; }
  void SourceProfile(const std::shared_ptr<IUnknown>& profile) override { profile_ = profile; }
  void Version(const std::string& value) override { version_ = value; }
  void Platform(const std::string& path) override { platform_ = path; }
  int32_t Generate() override;
  std::vector<std::string> Messages() const override { return messages_; }

  // The device interface of profile as the generator writes it, checked against every limit
  // first (error 5 naming the item and the limit). Public for the tests and the tools.
  static xif::DeviceInterface Build(const IProfile& profile, const std::string& name,
                                    const std::string& version, const xif::DeviceInterface& platform);
  // The bundled platform description (the chip and channel lines of a real FT 5000 device).
  static xif::DeviceInterface BundledPlatform();

 private:
  std::string source_;
  std::string output_folder_;
  std::string xif_file_;
  std::string types_folder_;
  std::string resource_catalogue_;
  std::string version_ = "4.501";
  std::string platform_;
  std::shared_ptr<IUnknown> profile_;
  std::vector<std::string> messages_;
};

}  // namespace kolvane
