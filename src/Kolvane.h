#pragma once

// Everything a host uses: the interfaces, the host services, the forms a FormHost runs, and the
// classes a host creates itself with std::make_shared.

#include "conversion/RawBytes.h"
#include "dialogs/Form.h"
#include "dialogs/frmCPModif1.h"
#include "dialogs/frmCPModif2.h"
#include "dialogs/frmCPModif3.h"
#include "dialogs/frmCPModif4.h"
#include "dialogs/frmCPModif5.h"
#include "foundation/Error.h"
#include "foundation/HostServices.h"
#include "host/DisplayUnits.h"
#include "host/frmSchedule.h"
#include "interfaces/IClonable.h"
#include "interfaces/ICompatibleSNVT.h"
#include "interfaces/ICompatibleSNVTs.h"
#include "interfaces/IConfigProperties.h"
#include "interfaces/IConfigProperty.h"
#include "interfaces/IDisplayItem.h"
#include "interfaces/IField.h"
#include "interfaces/IFields.h"
#include "interfaces/INetworkVariable.h"
#include "interfaces/INetworkVariables.h"
#include "interfaces/IOverridableItem.h"
#include "interfaces/ISNVType.h"
#include "interfaces/IProfile.h"
#include "interfaces/IScheduleEditor.h"
#include "interfaces/IStates.h"
#include "interfaces/ISubItemConnable.h"
#include "interfaces/ITypeOverride.h"
#include "interfaces/IUnitConverter.h"
#include "interfaces/IUnknown.h"
#include "interfaces/IUtility.h"
#include "interfaces/IXIFAndTypesGen.h"
#include "interfaces/iState.h"
#include "items/Findings.h"
#include "nv/frmEditNVI.h"
#include "nv/frmEditNVO.h"
#include "nv/Options.h"
#include "profile/frmNewPID.h"
#include "types/CatalogueType.h"
#include "types/CNVOCompatibleSNVT.h"
#include "types/CNVOCompatibleSNVTs.h"
#include "types/CState.h"
#include "types/CStates.h"
#include "types/CTypeOverride.h"
#include "xif/DeviceInterface.h"
#include "xif/XifImport.h"

namespace kolvane {

// Creates a profile: detects the user's decimal separator, reads "profile.ini" beside the
// library and makes the two empty collections. Hand it the documents, then load:
//
//   auto profile = kolvane::CreateProfile();
//   profile->Iprofile_SetXmlDomDocs(catalogue, nvo_table);
//   std::string name;
//   profile->IProfile_FriendSet(document, name, nullptr, catalogue, nvo_table, "");
KOLVANE_API std::shared_ptr<IProfile> CreateProfile();

}  // namespace kolvane
