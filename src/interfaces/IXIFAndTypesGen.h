#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "interfaces/IUnknown.h"

namespace kolvane {

// The generator of the device interface file (XIF) and its type files, created by ProgID
// "TarnXIFandTypesGen.XIFAndTypesGen"; built in, and a host may register its own.
class KOLVANE_API IXIFAndTypesGen : public virtual IUnknown {
 public:
  // What is generated from: the text "Profile".
  virtual void Source(const std::string& value) = 0;
  // The output folder, whose name ends in "LON"; made when missing.
  virtual void OutputFolder(const std::string& value) = 0;
  // Path of the XIF file to write: output folder + "/" + file name + ".xif".
  virtual void XifFile(const std::string& value) = 0;
  // Folder of the type files; none are written when empty.
  virtual void TypesFolder(const std::string& value) = 0;
  // File name of the LonWorks resource catalogue: "LDRF.CAT".
  virtual void ResourceCatalogue(const std::string& value) = 0;
  // The profile (an IProfile) to generate from.
  virtual void SourceProfile(const std::shared_ptr<IUnknown>& profile) = 0;
  // The XIF version to declare: "4.501" (the default) or "4.402".
  virtual void Version(const std::string& value) = 0;
  // A device interface file of the target platform whose chip and channel lines to copy; the
  // bundled FT 5000 description when empty.
  virtual void Platform(const std::string& path) = 0;
  // Writes the files; 0 when done. Error 5 naming the item and the limit when the profile
  // cannot become a device interface file, before anything is written.
  virtual int32_t Generate() = 0;
  // What the last Generate wrote, and what it did not write and why.
  virtual std::vector<std::string> Messages() const = 0;
};

}  // namespace kolvane
