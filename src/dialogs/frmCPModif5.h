#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/ValueDialog.h"

namespace kolvane {

// Edits a bit-field value bit by bit; bit i stands for 2 to the power i.
class KOLVANE_API frmCPModif5 final : public ValueDialog {
 public:
  std::string Caption() const override { return "Bit Field Value"; }

  std::vector<FormControl> Controls() override;

  // Shows the bits of the first item's value: one byte (upper row hidden) or two.
  void Form_Load() override;
  // Flips a bit.
  void bit_DblClick(int16_t Index);
  // Writes the sum of the bits into every item and closes.
  void cmdOk_Click();
  // Closes; an item opened from the structure dialog gets its value back.
  void cmdCancel_Click();

  Label lblName;
  std::array<Label, 16> bit;
  Label Label3{"Low Byte"};
  Label Label4{"High Byte"};  // hidden with bits 8 to 15 for a one-byte type
  CommandButton cmdOk{"OK"};
  CommandButton cmdCancel{"Cancel"};

 private:
  int16_t highest_bit_ = 15;
};

}  // namespace kolvane
