#include "nv/Options.h"

#include "nv/CNetworkVariable.h"

namespace kolvane {

std::map<std::string, std::string> NetworkVariableOptions(
    const std::shared_ptr<IUnknown>& variable) {
  std::map<std::string, std::string> options;
  const auto nv = std::dynamic_pointer_cast<CNetworkVariable>(variable);
  if (!nv) return options;
  if (nv->INetworkVariable_Direction() == internal::kInput) {
    if (nv->ReceiveHeartbeat()) options["RcvHrtBtEnable"] = "1";
  } else if (nv->SendOnDeltaEnabled()) {
    options["SendOnDelta"] = nv->SendOnDelta();
  }
  return options;
}

}  // namespace kolvane
