#pragma once

#include <cstdint>
#include <string>

#include "interfaces/IUnknown.h"

namespace kolvane {

// The outside generator of the device interface file (XIF) and its type files, created by
// ProgID "TarnXIFandTypesGen.XIFAndTypesGen"; a host registers one.
class KOLVANE_API IXIFAndTypesGen : public virtual IUnknown {
 public:
  // What is generated from: the text "Profile".
  virtual void Source(const std::string& value) = 0;
  // The output folder, whose name ends in "LON".
  virtual void OutputFolder(const std::string& value) = 0;
  // Path of the XIF file to write: output folder + "/" + file name + ".xif".
  virtual void XifFile(const std::string& value) = 0;
  // Folder of the type files.
  virtual void TypesFolder(const std::string& value) = 0;
  // File name of the LonWorks resource catalogue: "LDRF.CAT".
  virtual void ResourceCatalogue(const std::string& value) = 0;
  // Generates the files; returns 0 on success.
  virtual int32_t Generate() = 0;
};

}  // namespace kolvane
