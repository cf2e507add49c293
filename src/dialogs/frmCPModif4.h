#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "dialogs/DataPoint.h"
#include "dialogs/Form.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// Edits a structured value field by field, opening each field's own dialog.
class KOLVANE_API frmCPModif4 final : public Form {
 public:
  std::string Caption() const override { return "Structure Value"; }

  // Adds an item to those the dialog edits; error 13 for an object that is no network variable,
  // configuration property or field.
  void DataPoint(const std::shared_ptr<IUnknown>& item) { items_.emplace_back(item); }

  std::vector<FormControl> Controls() override;

  // One row per field of the first item: name, display value, and the value as tag.
  void Form_Load() override;
  // Opens the dialog of the selected row's field.
  void lvwMain_DblClick();
  // The right button (2) opens the field's dialog too.
  void lvwMain_MouseDown(int16_t Button, int16_t Shift, float X, float Y);
  // Writes the rows' values joined by single blanks into every item and closes.
  void cmdOk_Click();
  // Closes without writing.
  void cmdCancel_Click();

  Label lblName;
  ListView lvwMain{{"Field", "Value"}};
  CommandButton cmdOk{"OK"};
  CommandButton cmdCancel{"Cancel"};

 private:
  void EditSelectedField();

  std::vector<internal::DataPoint> items_;
};

}  // namespace kolvane
