#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "foundation/KeyedCollection.h"
#include "interfaces/INetworkVariables.h"

namespace kolvane {

class CNetworkVariable;

// The network variables of a profile: numbered, keyed and kept with dense indexes.
class CNetworkVariables final : public INetworkVariables {
 public:
  std::shared_ptr<INetworkVariable> INetworkVariables_AddNV(const std::string& name,
                                                            int32_t direction,
                                                            const std::string& type_name) override;
  int32_t INetworkVariables_Count() const override;
  std::shared_ptr<INetworkVariable> INetworkVariables_Item(const std::string& key) const override;
  void INetworkVariables_Remove(const std::shared_ptr<INetworkVariable>& variable) override;
  std::vector<std::shared_ptr<INetworkVariable>> INetworkVariables_NewEnum() const override;
  std::string INetworkVariables_GlobalKey() const override;
  std::string INetworkVariables_ExtendedKey() const override;
  int32_t INetworkVariables_CDBUsage() const override;
  int32_t INetworkVariables_DDBUsage() const override;
  int32_t INetworkVariables_SDBUsage() const override;
  int32_t INetworkVariables_ExecTime() const override;

  // The owning profile (held weakly); it rebuilds the compatible lists after changes.
  void SetProfile(const std::shared_ptr<IUnknown>& profile);
  // Creates a variable from its element of the profile document and appends it. Returns
  // nullptr when a step fails (the running number has advanced by then).
  std::shared_ptr<CNetworkVariable> AddFromXml(const std::string& name, pugi::xml_node element,
                                               const std::shared_ptr<IUnknown>& profile);
  // The variables, in order.
  const KeyedCollection<std::shared_ptr<CNetworkVariable>>& Items() const { return items_; }

 private:
  // Advances the running number and returns the variable's item key, e.g. "NV3".
  std::string NextKey();
  // Keys the variable, appends it and gives it its position.
  void Append(const std::string& key, const std::shared_ptr<CNetworkVariable>& variable);
  void RebuildCompatibilityLists() const;

  KeyedCollection<std::shared_ptr<CNetworkVariable>> items_;
  int32_t running_number_ = 0;
  std::weak_ptr<IUnknown> profile_;
};

}  // namespace kolvane
