#pragma once

// Everything a host uses: the interfaces, the host services and the classes a host creates
// itself with std::make_shared.

#include "foundation/Error.h"
#include "foundation/HostServices.h"
#include "interfaces/IClonable.h"
#include "interfaces/ICompatibleSNVT.h"
#include "interfaces/ICompatibleSNVTs.h"
#include "interfaces/ISNVType.h"
#include "interfaces/IStates.h"
#include "interfaces/ITypeOverride.h"
#include "interfaces/IUnitConverter.h"
#include "interfaces/IUnknown.h"
#include "interfaces/IUtility.h"
#include "interfaces/iState.h"
#include "types/CNVOCompatibleSNVT.h"
#include "types/CNVOCompatibleSNVTs.h"
#include "types/CState.h"
#include "types/CStates.h"
#include "types/CTypeOverride.h"
