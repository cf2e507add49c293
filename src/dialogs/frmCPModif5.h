#pragma once

#include <array>
#include <string>

#include "dialogs/ValueDialog.h"

namespace kolvane {

// Edits a bit-field value bit by bit; bit i stands for 2 to the power i.
class KOLVANE_API frmCPModif5 final : public ValueDialog {
 public:
  std::string Caption() const override { return "Bit Field Value"; }

  Label lblName;
  std::array<Label, 16> bit;
  Label Label3{"Low Byte"};
  Label Label4{"High Byte"};  // hidden with bits 8 to 15 for a one-byte type
  CommandButton cmdOk{"OK"};
  CommandButton cmdCancel{"Cancel"};
};

}  // namespace kolvane
