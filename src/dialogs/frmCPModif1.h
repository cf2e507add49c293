#pragma once

#include <string>

#include "dialogs/ValueDialog.h"

namespace kolvane {

// Edits a numeric value: unit, limits, range check, the "Invalid" mark.
class KOLVANE_API frmCPModif1 final : public ValueDialog {
 public:
  std::string Caption() const override { return "Numeric Value"; }

  Label lblName;
  Label lblUnits;
  Label lblMin;
  Label lblMax;
  TextBox txtNewCPValue;
  CheckBox chkInvalid{"Invalid"};
  CommandButton cmdOk{"OK"};
  CommandButton cmdCancel{"Cancel"};
};

}  // namespace kolvane
