#include "types/CTypeOverride.h"

#include <utility>

namespace kolvane {

std::string CTypeOverride::ITypeOverride_OverridingType() const { return overriding_type_; }

void CTypeOverride::ITypeOverride_OverridingType(std::string value) {
  overriding_type_ = std::move(value);
}

std::shared_ptr<IStates> CTypeOverride::ITypeOverride_States() const { return states_; }

void CTypeOverride::ITypeOverride_States(std::shared_ptr<IStates> value) {
  states_ = std::move(value);
}

}  // namespace kolvane
