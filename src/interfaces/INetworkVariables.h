#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "interfaces/INetworkVariable.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// The network variables of a profile, in insertion order.
class KOLVANE_API INetworkVariables : public virtual IUnknown {
 public:
  // Adds a variable (direction 0 input, 1 output) of a type; nullptr when that fails.
  virtual std::shared_ptr<INetworkVariable> INetworkVariables_AddNV(
      const std::string& name, int32_t direction, const std::string& type_name) = 0;
  // Number of variables.
  virtual int32_t INetworkVariables_Count() const = 0;
  // The variable with item key ("NV3", any case), else at the 1-based position the key's
  // leading number gives; nullptr when neither exists.
  virtual std::shared_ptr<INetworkVariable> INetworkVariables_Item(
      const std::string& key) const = 0;
  // Removes a variable; the others keep their connection numbers.
  virtual void INetworkVariables_Remove(const std::shared_ptr<INetworkVariable>& variable) = 0;
  // The variables in order.
  virtual std::vector<std::shared_ptr<INetworkVariable>> INetworkVariables_NewEnum() const = 0;
  // "PGeneric_Profile\NVS".
  virtual std::string INetworkVariables_GlobalKey() const = 0;
  // The same text as INetworkVariables_GlobalKey.
  virtual std::string INetworkVariables_ExtendedKey() const = 0;
  // Reserved resource figure; 0.
  virtual int32_t INetworkVariables_CDBUsage() const = 0;
  // Reserved resource figure; 0.
  virtual int32_t INetworkVariables_DDBUsage() const = 0;
  // Reserved resource figure; 0.
  virtual int32_t INetworkVariables_SDBUsage() const = 0;
  // Reserved resource figure; 0.
  virtual int32_t INetworkVariables_ExecTime() const = 0;
};

}  // namespace kolvane
