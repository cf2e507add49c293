#include "dialogs/EditDialog.h"

#include "dialogs/frmCPModif1.h"
#include "dialogs/frmCPModif2.h"
#include "dialogs/frmCPModif3.h"
#include "dialogs/frmCPModif4.h"
#include "dialogs/frmCPModif5.h"

namespace kolvane::internal {

std::shared_ptr<Form> MakeEditDialog(TypeKind kind) {
  switch (kind) {
    case TypeKind::kSignedNumeric:
    case TypeKind::kUnsignedNumeric:
    case TypeKind::kFloat:
      return std::make_shared<frmCPModif1>();
    case TypeKind::kTextual:
      return std::make_shared<frmCPModif2>();
    case TypeKind::kEnum:
      return std::make_shared<frmCPModif3>();
    case TypeKind::kStruct:
      return std::make_shared<frmCPModif4>();
    case TypeKind::kBitfield:
      return std::make_shared<frmCPModif5>();
    case TypeKind::kUnknown:
      return nullptr;
  }
  return nullptr;
}

void SetDataPoint(Form& dialog, const std::shared_ptr<IUnknown>& item, bool from_structure) {
  if (auto* value_dialog = dynamic_cast<ValueDialog*>(&dialog)) {
    value_dialog->CalledFramModif4(from_structure);
    value_dialog->DataPoint(item);
  } else if (auto* structure = dynamic_cast<frmCPModif4*>(&dialog)) {
    structure->DataPoint(item);
  }
}

}  // namespace kolvane::internal
