#pragma once

#include <map>
#include <memory>
#include <string>

#include "foundation/Export.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// A network variable's options under its interoperability record's names: "SendOnDelta" (an
// output's threshold, present while it sends on delta) and "RcvHrtBtEnable" ("1", an input
// expecting heartbeats); none for anything else. Reads nothing else of the variable.
KOLVANE_API std::map<std::string, std::string> NetworkVariableOptions(
    const std::shared_ptr<IUnknown>& variable);

}  // namespace kolvane
