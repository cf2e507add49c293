#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "interfaces/IConfigProperty.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// The configuration properties of a profile, in insertion order.
class KOLVANE_API IConfigProperties : public virtual IUnknown {
 public:
  // Creates a property from its element of the profile document; nullptr when that fails.
  virtual std::shared_ptr<IConfigProperty> IConfigProperties_AddCP(
      const std::string& name, const std::shared_ptr<pugi::xml_document>& document,
      pugi::xml_node element) = 0;
  // Creates a property of a type; nullptr when that fails.
  virtual std::shared_ptr<IConfigProperty> IConfigProperties_AddNewCP(
      const std::string& name, const std::string& type_name) = 0;
  // The property with item key ("CP3", any case), else at the 1-based position the key's
  // leading number gives; nullptr when neither exists.
  virtual std::shared_ptr<IConfigProperty> IConfigProperties_Item(const std::string& key) const = 0;
  // Number of properties.
  virtual int32_t IConfigProperties_Count() const = 0;
  // The properties in order.
  virtual std::vector<std::shared_ptr<IConfigProperty>> IConfigProperties_NewEnum() const = 0;
  // Removes a property; the others keep their connection numbers.
  virtual void IConfigProperties_Remove(const std::shared_ptr<IConfigProperty>& property) = 0;
  // "PGeneric_Profile\CPS".
  virtual std::string IConfigProperties_GlobalKey() const = 0;
  // The same text as IConfigProperties_GlobalKey.
  virtual std::string IConfigProperties_ExtendedKey() const = 0;
  // Reserved resource figure; 0.
  virtual int32_t IConfigProperties_CDBUsage() const = 0;
  // Reserved resource figure; 0.
  virtual int32_t IConfigProperties_DDBUsage() const = 0;
  // Reserved resource figure; 0.
  virtual int32_t IConfigProperties_SDBUsage() const = 0;
};

}  // namespace kolvane
