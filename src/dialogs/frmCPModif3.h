#pragma once

#include <string>

#include "dialogs/ValueDialog.h"

namespace kolvane {

// Edits an enumeration value by choosing one of the type's states.
class KOLVANE_API frmCPModif3 final : public ValueDialog {
 public:
  std::string Caption() const override { return "Enumeration Value"; }

  Label lblName;
  ComboBox cboEnum;
  CommandButton cmdOk{"OK"};
  CommandButton cmdCancel{"Cancel"};
};

}  // namespace kolvane
