#include "dialogs/frmCPModif5.h"

#include "foundation/ContinueOnError.h"
#include "foundation/Numbers.h"

namespace kolvane {

std::vector<FormControl> frmCPModif5::Controls() {
  std::vector<FormControl> controls{{.Name = "lblName", .Control = &lblName, .Row = 0},
                                    {.Name = "Label4", .Control = &Label4, .Row = 1}};
  // Bits read as a number: the highest on the left, the upper byte above the lower.
  for (int16_t i = 15; i >= 0; --i) {
    if (i == 7) controls.push_back({.Name = "Label3", .Control = &Label3, .Row = 2});
    controls.push_back({.Name = "bit(" + std::to_string(i) + ")",
                        .Control = &bit[static_cast<size_t>(i)],
                        .Row = static_cast<int16_t>(i >= 8 ? 1 : 2),
                        .DblClick = [this, i] { bit_DblClick(i); }});
  }
  controls.push_back(
      {.Name = "cmdOk", .Control = &cmdOk, .Row = 3, .Click = [this] { cmdOk_Click(); }});
  controls.push_back({.Name = "cmdCancel", .Control = &cmdCancel, .Row = 3, .Click = [this] {
                        cmdCancel_Click();
                      }});
  return controls;
}

void frmCPModif5::Form_Load() {
  if (items_.empty()) return;
  auto& item = items_.front().point;
  lblName.Caption = item.Name();
  const auto type = item.SNVTType();
  const bool one_byte = type && type->ISNVType_Length() == 1;
  highest_bit_ = one_byte ? 7 : 15;
  for (size_t i = 8; i < bit.size(); ++i) bit[i].Visible = !one_byte;
  Label4.Visible = !one_byte;
  int32_t value = 0;
  ContinueOnError([&] { value = RoundToInt32(LeadingNumber(item.Value())); });
  for (int16_t i = 0; i <= highest_bit_; ++i) {
    bit[static_cast<size_t>(i)].Caption = (static_cast<uint32_t>(value) >> i) & 1U ? "1" : "0";
  }
}

void frmCPModif5::bit_DblClick(int16_t Index) {
  if (Index < 0 || Index >= static_cast<int16_t>(bit.size())) return;
  Label& label = bit[static_cast<size_t>(Index)];
  label.Caption = label.Caption == "0" ? "1" : "0";
}

void frmCPModif5::cmdOk_Click() {
  double sum = 0;
  for (int16_t i = 0; i <= highest_bit_; ++i) {
    sum += LeadingNumber(bit[static_cast<size_t>(i)].Caption) * static_cast<double>(1 << i);
  }
  const std::string value = GeneralText(sum, 15, ".");
  for (Item& item : items_) item.point.Value(value);
  CalledFramModif4(false);
  Unload();
}

void frmCPModif5::cmdCancel_Click() { Unload(); }

}  // namespace kolvane
