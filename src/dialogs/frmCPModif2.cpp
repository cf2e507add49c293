#include "dialogs/frmCPModif2.h"

#include "foundation/Characters.h"
#include "foundation/HostServices.h"

namespace kolvane {

namespace {

constexpr int16_t kBackspace = 8;
constexpr int16_t kEnter = 13;
constexpr int16_t kEscape = 27;

}  // namespace

std::vector<FormControl> frmCPModif2::Controls() {
  return {
      {.Name = "lblName", .Control = &lblName, .Row = 0},
      {.Name = "txtNewCPValue",
       .Control = &txtNewCPValue,
       .Row = 1,
       .KeyPress = [this](int16_t& key) { txtNewCPValue_KeyPress(key); },
       .Change = [this] { txtNewCPValue_Change(); }},
      {.Name = "cmdOk", .Control = &cmdOk, .Row = 2, .Click = [this] { cmdOk_Click(); }},
      {.Name = "cmdCancel",
       .Control = &cmdCancel,
       .Row = 2,
       .Click = [this] { cmdCancel_Click(); }},
  };
}

void frmCPModif2::Form_Load() {
  if (items_.empty()) return;
  auto& item = items_.front().point;
  lblName.Caption = item.Name();
  SetText(txtNewCPValue, item.Value());
  txtNewCPValue.SelStart = 0;
  txtNewCPValue.SelLength = static_cast<int32_t>(txtNewCPValue.Text.size());
}

void frmCPModif2::txtNewCPValue_Change() {
  if (items_.empty()) return;
  const auto type = items_.front().point.SNVTType();
  const int32_t limit = (type ? type->ISNVType_Length() : 0) - 1;
  if (limit < 0 || CharacterCount(txtNewCPValue.Text) <= static_cast<size_t>(limit)) return;
  MsgBox("The text cannot exceed " + std::to_string(limit) + " characters", vbExclamation,
         "Name too long");
  txtNewCPValue.Text = std::string(LeftCharacters(txtNewCPValue.Text, static_cast<size_t>(limit)));
  txtNewCPValue.SelStart = static_cast<int32_t>(txtNewCPValue.Text.size());
  txtNewCPValue.SelLength = 0;
}

void frmCPModif2::txtNewCPValue_KeyPress(int16_t& KeyAscii) {
  std::string& text = txtNewCPValue.Text;
  switch (KeyAscii) {
    case kEscape:
      if (!items_.empty()) text = items_.front().point.Value();
      KeyAscii = 0;
      break;
    case kEnter:
      KeyAscii = 0;
      cmdOk_Click();
      break;
    case kBackspace: {
      // A selection goes whole; without one, the character before the caret. The caret then
      // stands after the remaining text.
      const auto start = static_cast<size_t>(std::max(0, txtNewCPValue.SelStart));
      const auto length = static_cast<size_t>(std::max(0, txtNewCPValue.SelLength));
      if (length > 0 && start < text.size()) {
        text.erase(start, length);
      } else if (start > 0 && start <= text.size()) {
        // Step back over a whole UTF-8 character.
        size_t from = start - 1;
        while (from > 0 && (static_cast<unsigned char>(text[from]) & 0xC0) == 0x80) --from;
        text.erase(from, start - from);
      }
      txtNewCPValue.SelStart = static_cast<int32_t>(text.size());
      txtNewCPValue.SelLength = 0;
      KeyAscii = 0;
      break;
    }
    case ' ':
      KeyAscii = '_';
      break;
    default:
      break;
  }
}

void frmCPModif2::cmdOk_Click() {
  for (Item& item : items_) item.point.Value(txtNewCPValue.Text);
  CalledFramModif4(false);
  Unload();
}

void frmCPModif2::cmdCancel_Click() { Unload(); }

}  // namespace kolvane
