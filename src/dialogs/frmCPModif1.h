#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "dialogs/ValueDialog.h"
#include "interfaces/IUnitConverter.h"

namespace kolvane {

// Edits a numeric value: unit, limits, range check, the "Invalid" mark.
class KOLVANE_API frmCPModif1 final : public ValueDialog {
 public:
  std::string Caption() const override { return "Numeric Value"; }

  std::vector<FormControl> Controls() override;

  // Shows the first item's value in display units with its unit and the type's limits.
  void Form_Load() override;
  // Key filter: digits, signs, one decimal separator (only for a type with decimals), one
  // exponent; see the source.
  void txtNewCPValue_KeyPress(int16_t& KeyAscii);
  // OK is enabled exactly when the text is a well-formed number.
  void txtNewCPValue_Change();
  // Checked: the box shows "Invalid" and is disabled; cleared: the box is enabled again.
  void chkInvalid_Click();
  // Checks the range and writes the value (in the type's unit) into every item, then closes;
  // does nothing while the text is no number (the mark cleared over "Invalid").
  void cmdOk_Click();
  // Closes; an item opened from the structure dialog gets its value back.
  void cmdCancel_Click();

  // Digits allowed after the decimal separator: -B of the type's scaling (none for a type
  // scaled in whole units), 7 for a float.
  int32_t DecimalLimit() const { return decimal_limit_; }

  Label lblName;
  Label lblUnits;
  Label lblMin;
  Label lblMax;
  TextBox txtNewCPValue;
  CheckBox chkInvalid{"Invalid"};
  CommandButton cmdOk{"OK"};
  CommandButton cmdCancel{"Cancel"};

 private:
  // False (after the warning) when the typed value is outside the limits.
  bool RangeCheck();
  void SelectAll();

  std::shared_ptr<IUnitConverter> converter_;
  std::string type_id_;
  std::string minimum_;
  std::string maximum_;
  int32_t decimal_limit_ = 0;
};

}  // namespace kolvane
