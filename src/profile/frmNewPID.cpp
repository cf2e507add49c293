#include "profile/frmNewPID.h"

namespace kolvane {

namespace {

constexpr int16_t kBackspace = 8;
constexpr int16_t kEnter = 13;
constexpr size_t kIdentifierLength = 16;
// Enter accepts a shorter identifier; this length is deliberate.
constexpr size_t kEnterLength = 12;

}  // namespace

std::vector<FormControl> frmNewPID::Controls() {
  return {
      {.Name = "Label1", .Control = &Label1, .Row = 0},
      {.Name = "txtNid",
       .Control = &txtNid,
       .Row = 1,
       .KeyPress = [this](int16_t& key) { txtNid_KeyPress(key); },
       .Change = [this] { txtNid_Change(); }},
      // The caption of what follows it on its row: the answer, OK or Cancel.
      {.Name = "Label2", .Control = &Label2, .Row = 3},
      {.Name = "cmdOk", .Control = &cmdOk, .Row = 3, .Click = [this] { cmdOk_Click(); }},
      {.Name = "Command1", .Control = &Command1, .Row = 3, .Click = [this] { Command1_Click(); }},
  };
}

void frmNewPID::Form_Load() {
  result_.clear();
  SetText(txtNid, initial_);
}

void frmNewPID::txtNid_Change() {
  const size_t first = txtNid.Text.find_first_not_of(' ');
  txtNid.Text.erase(0, first == std::string::npos ? txtNid.Text.size() : first);
  const auto length = static_cast<int32_t>(txtNid.Text.size());
  if (txtNid.SelStart > length) txtNid.SelStart = length;
  if (txtNid.SelStart + txtNid.SelLength > length) txtNid.SelLength = length - txtNid.SelStart;
  cmdOk.Enabled = txtNid.Text.size() == kIdentifierLength;
  if (cmdOk.Enabled) ActiveControl = "cmdOk";
}

void frmNewPID::txtNid_KeyPress(int16_t& KeyAscii) {
  if ((KeyAscii >= 'A' && KeyAscii <= 'F') || (KeyAscii >= '0' && KeyAscii <= '9')) return;
  if (KeyAscii >= 'a' && KeyAscii <= 'f') {
    KeyAscii = static_cast<int16_t>(KeyAscii - 'a' + 'A');
    return;
  }
  if (KeyAscii == kBackspace) {
    if (!txtNid.Text.empty()) {
      txtNid.SelStart = static_cast<int32_t>(txtNid.Text.size());
      txtNid.SelLength = 0;
    }
    return;
  }
  if (KeyAscii == kEnter && txtNid.Text.size() == kEnterLength) {
    cmdOk.Enabled = true;
    cmdOk_Click();
  }
  KeyAscii = 0;
}

void frmNewPID::cmdOk_Click() {
  result_ = txtNid.Text;
  Unload();
}

void frmNewPID::Command1_Click() { Unload(); }

}  // namespace kolvane
