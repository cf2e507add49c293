#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dialogs/Form.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

class CNetworkVariable;

// Options of an input: receive heartbeat, written as the box is clicked; closed other than by
// Ok (Cancel, Escape), the input gets back the flag it had.
class KOLVANE_API frmEditNVI final : public Form {
 public:
  std::string Caption() const override { return "Input Options"; }

  // The input to edit; error 13 for anything else.
  void DataPoint(std::shared_ptr<IUnknown> item);

  std::vector<FormControl> Controls() override;

  // Shows the input's flag.
  void Form_Load() override;
  // Writes the box's state into the input.
  void chkRcvHrtBt_Click();
  // Closes the dialog.
  void cmdOk_Click();
  // Closes the dialog; unloading puts the flag back.
  void cmdCancel_Click();
  void Form_Unload(int16_t& Cancel) override;

  CheckBox chkRcvHrtBt{"Enable Receive HeartBeat (LON)"};
  CommandButton cmdOk{"&Ok"};
  CommandButton cmdCancel{"Cancel"};

 private:
  // The variable keeps its dialog, so the dialog holds it weakly.
  std::weak_ptr<CNetworkVariable> variable_;
  bool loaded_heartbeat_ = false;
  bool confirmed_ = false;
};

}  // namespace kolvane
