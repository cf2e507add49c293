#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "foundation/KeyedCollection.h"
#include "interfaces/IConfigProperties.h"

namespace kolvane {

class CConfigProperty;

// The configuration properties of a profile: numbered, keyed and kept with dense indexes.
class CConfigProperties final : public IConfigProperties {
 public:
  std::shared_ptr<IConfigProperty> IConfigProperties_AddCP(
      const std::string& name, const std::shared_ptr<pugi::xml_document>& document,
      pugi::xml_node element) override;
  std::shared_ptr<IConfigProperty> IConfigProperties_AddNewCP(
      const std::string& name, const std::string& type_name) override;
  std::shared_ptr<IConfigProperty> IConfigProperties_Item(const std::string& key) const override;
  int32_t IConfigProperties_Count() const override;
  std::vector<std::shared_ptr<IConfigProperty>> IConfigProperties_NewEnum() const override;
  void IConfigProperties_Remove(const std::shared_ptr<IConfigProperty>& property) override;
  std::string IConfigProperties_GlobalKey() const override;
  std::string IConfigProperties_ExtendedKey() const override;
  int32_t IConfigProperties_CDBUsage() const override;
  int32_t IConfigProperties_DDBUsage() const override;
  int32_t IConfigProperties_SDBUsage() const override;

  // The owning profile (held weakly); it hears of every change.
  void SetProfile(const std::shared_ptr<IUnknown>& profile);
  // Creates a property from its element of a full profile document (as AddCP, for profile).
  std::shared_ptr<CConfigProperty> AddFromXml(const std::string& name, pugi::xml_node element,
                                              const std::shared_ptr<IUnknown>& profile);
  // Creates a property from an exported point record (see CConfigProperty::LoadFromPointRecord)
  // and appends it; name receives the name as finally fixed. nullptr when a step fails.
  std::shared_ptr<CConfigProperty> AddFromExport(std::string& name, pugi::xml_node element,
                                                 const std::shared_ptr<IUnknown>& profile);
  // Keeps an instance property's name unique in the collection with a "_" + number suffix; a
  // property that has a global key tells the profile of the rename.
  void FixName(CConfigProperty& property) const;
  // The properties, in order.
  const KeyedCollection<std::shared_ptr<CConfigProperty>>& Items() const { return items_; }

 private:
  std::string NextKey();
  // Makes a property, loads it with load and appends it (the steps AddCP and the export path
  // share); nullptr when a step fails.
  std::shared_ptr<CConfigProperty> AddLoaded(const std::string& name,
                                             const std::function<void(CConfigProperty&)>& load);
  void NotifyProfile() const;
  // Steps shared by the profile and the export path once the property is loaded.
  std::shared_ptr<CConfigProperty> Append(const std::string& key,
                                          const std::shared_ptr<CConfigProperty>& property);

  KeyedCollection<std::shared_ptr<CConfigProperty>> items_;
  int32_t add_counter_ = 0;
  std::weak_ptr<IUnknown> profile_;
};

}  // namespace kolvane
