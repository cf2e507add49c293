#pragma once

#include <string>

#include "dialogs/ValueDialog.h"

namespace kolvane {

// Edits a text value within the type's length.
class KOLVANE_API frmCPModif2 final : public ValueDialog {
 public:
  std::string Caption() const override { return "Text Value"; }

  Label lblName;
  TextBox txtNewCPValue;
  CommandButton cmdOk{"OK"};
  CommandButton cmdCancel{"Cancel"};
};

}  // namespace kolvane
