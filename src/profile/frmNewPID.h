#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/Form.h"

namespace kolvane {

// Asks for a new program identifier of the device: 16 hexadecimal digits.
class KOLVANE_API frmNewPID final : public Form {
 public:
  std::string Caption() const override { return "Program ID"; }

  // The identifier shown when the dialog opens.
  void ProgramID(const std::string& value) { initial_ = value; }
  // The identifier accepted with OK; empty after Cancel.
  std::string ProgramID() const { return result_; }

  std::vector<FormControl> Controls() override;

  // Shows the initial identifier.
  void Form_Load() override;
  // Drops leading blanks; OK is enabled (and focused) exactly at 16 characters.
  void txtNid_Change();
  // Hexadecimal digits only, upper-cased; Enter accepts at 12 characters.
  void txtNid_KeyPress(int16_t& KeyAscii);
  // Accepts the identifier and closes.
  void cmdOk_Click();
  // Closes with an empty result.
  void Command1_Click();

  Label Label1{"Insert the new ProgramID"};
  Label Label2{"The profile is changed:"};
  TextBox txtNid;
  CommandButton cmdOk{"OK", false};
  CommandButton Command1{"Cancel"};

 private:
  std::string initial_;
  std::string result_;
};

}  // namespace kolvane
