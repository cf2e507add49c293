#pragma once

#include <memory>
#include <string>

#include "dialogs/Form.h"
#include "interfaces/IUnknown.h"
#include "types/TypeKind.h"

namespace kolvane::internal {

// A new dialog that edits a value of a type kind: frmCPModif1 for the numeric kinds,
// frmCPModif2 text, frmCPModif3 enumerations, frmCPModif4 structures, frmCPModif5 bit fields;
// nullptr for an unknown kind.
std::shared_ptr<Form> MakeEditDialog(TypeKind kind);

// Hands item to an edit dialog as its DataPoint; from_structure sets CalledFramModif4 on a
// dialog that edits one value.
void SetDataPoint(Form& dialog, const std::shared_ptr<IUnknown>& item, bool from_structure);

}  // namespace kolvane::internal
