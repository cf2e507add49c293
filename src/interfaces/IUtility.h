#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "interfaces/ICompatibleSNVTs.h"
#include "interfaces/ISNVType.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// The host library's utility object, created by ProgID "Moraface.Utility".
class KOLVANE_API IUtility : public virtual IUnknown {
 public:
  // One value text per field of a structure's value text, in field order.
  virtual std::vector<std::string> SplitFields(const std::string& value) = 0;
  // The value text a new item of the type starts with.
  virtual std::string DefaultValue(const std::shared_ptr<ISNVType>& type) = 0;
  // The point of a "Location" text "x;y".
  virtual void ParseLocation(const std::string& text, int32_t& x, int32_t& y) = 0;
  // The text form of a compatible type list.
  virtual std::string CompatibleListText(const ICompatibleSNVTs& list) = 0;
  // The number of an enumeration state given by its name.
  virtual int32_t EnumStateNumber(const std::string& state) = 0;
};

}  // namespace kolvane
