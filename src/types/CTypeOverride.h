#pragma once

#include <memory>
#include <string>

#include "interfaces/ITypeOverride.h"

namespace kolvane {

// A type override: the overriding type's identifier and its states. Create with
// std::make_shared<CTypeOverride>().
class KOLVANE_API CTypeOverride final : public ITypeOverride {
 public:
  std::string ITypeOverride_OverridingType() const override;
  void ITypeOverride_OverridingType(std::string value) override;
  std::shared_ptr<IStates> ITypeOverride_States() const override;
  void ITypeOverride_States(std::shared_ptr<IStates> value) override;

 private:
  std::string overriding_type_;
  std::shared_ptr<IStates> states_;
};

}  // namespace kolvane
