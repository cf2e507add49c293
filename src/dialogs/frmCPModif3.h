#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/ValueDialog.h"

namespace kolvane {

// Edits an enumeration value by choosing one of the type's states.
class KOLVANE_API frmCPModif3 final : public ValueDialog {
 public:
  std::string Caption() const override { return "Enumeration Value"; }

  std::vector<FormControl> Controls() override;

  // Lists the type's states as "(value,name)" with their numbers as item data and shows the
  // state of the item's value (its name or number), else the first.
  void Form_Load() override;
  // Remembers the number of the state clicked.
  void cboEnum_Click();
  // Writes the list's text into every item and closes.
  void cmdOk_Click();
  // Closes; an item opened from the structure dialog gets its value back.
  void cmdCancel_Click();

  // The chosen state's number; -1 until a state is clicked or OK is pressed.
  int16_t SelectedState() const { return selected_state_; }

  Label lblName;
  ComboBox cboEnum;
  CommandButton cmdOk{"OK"};
  CommandButton cmdCancel{"Cancel"};

 private:
  int16_t selected_state_ = -1;
};

}  // namespace kolvane
