#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dialogs/Form.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

class CNetworkVariable;

// Options of an output: send on delta with its threshold, and the output's value.
class KOLVANE_API frmEditNVO final : public Form {
 public:
  std::string Caption() const override { return "Output Options"; }

  // The output to edit; error 13 for anything else.
  void DataPoint(std::shared_ptr<IUnknown> item);

  std::vector<FormControl> Controls() override;

  // Fills the controls from the output.
  void Form_Load() override;
  // Enables the threshold box with the check box.
  void chkSendOnDelta_Click();
  // Writes the flag, the threshold and the value (typed in display units) into the output and
  // closes; a threshold that is no number of at least 0, or a number value that is no number
  // or outside the limits shown, is refused in a message box and nothing is written.
  void cmdOk_Click();
  // Closes without writing.
  void cmdCancel_Click();

  CheckBox chkSendOnDelta{"Send on Delta (LON)"};
  TextBox txtSendOnDelta;
  Label lblMinCaption{"Min Value:"};
  Label lblMin;
  Label lblMaxCaption{"Max Value:"};
  Label lblMax;
  Label lblValue{"Value:"};
  TextBox txtValue;
  CommandButton cmdOk{"&Ok"};
  CommandButton cmdCancel{"Cancel"};

 private:
  bool Checked(const CNetworkVariable& variable);
  bool Refuse(const std::string& message, const std::string& control);

  // The variable keeps its dialog, so the dialog holds it weakly.
  std::weak_ptr<CNetworkVariable> variable_;
};

}  // namespace kolvane
