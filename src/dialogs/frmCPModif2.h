#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/ValueDialog.h"

namespace kolvane {

// Edits a text value within the type's length.
class KOLVANE_API frmCPModif2 final : public ValueDialog {
 public:
  std::string Caption() const override { return "Text Value"; }

  std::vector<FormControl> Controls() override;

  // Shows the first item's text, selected whole.
  void Form_Load() override;
  // Cuts a text longer than the type's length minus 1, with the "Name too long" message.
  void txtNewCPValue_Change();
  // Escape restores the item's text, Enter is OK, a blank becomes "_". Backspace is handled
  // here: it removes the selection, or without one the character before the caret, and leaves
  // the caret after the remaining text.
  void txtNewCPValue_KeyPress(int16_t& KeyAscii);
  // Writes the text into every item and closes.
  void cmdOk_Click();
  // Closes; an item opened from the structure dialog gets its value back.
  void cmdCancel_Click();

  Label lblName;
  TextBox txtNewCPValue;
  CommandButton cmdOk{"OK"};
  CommandButton cmdCancel{"Cancel"};
};

}  // namespace kolvane
