#include "dialogs/EditDialog.h"

#include "conversion/ValueCodec.h"
#include "dialogs/frmCPModif1.h"
#include "dialogs/frmCPModif2.h"
#include "dialogs/frmCPModif3.h"
#include "dialogs/frmCPModif4.h"
#include "dialogs/frmCPModif5.h"

namespace kolvane::internal {

std::shared_ptr<Form> MakeEditDialog(const std::string& kind) {
  if (codec::IsNumericKind(kind)) return std::make_shared<frmCPModif1>();
  if (kind == "Textual") return std::make_shared<frmCPModif2>();
  if (kind == "Enum") return std::make_shared<frmCPModif3>();
  if (kind == "Struct") return std::make_shared<frmCPModif4>();
  if (kind == "Bitfield") return std::make_shared<frmCPModif5>();
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
