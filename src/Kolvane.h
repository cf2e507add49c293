#pragma once

// Everything a host uses: the interfaces, the host services and the classes a host creates
// itself with std::make_shared.

#include "foundation/Error.h"
#include "foundation/HostServices.h"
#include "interfaces/ISNVType.h"
#include "interfaces/IStates.h"
#include "interfaces/ITypeOverride.h"
#include "interfaces/IUnknown.h"
#include "interfaces/iState.h"
#include "types/CState.h"
#include "types/CStates.h"
#include "types/CTypeOverride.h"
