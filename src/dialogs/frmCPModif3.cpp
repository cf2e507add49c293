#include "dialogs/frmCPModif3.h"

#include "foundation/ContinueOnError.h"
#include "foundation/Globals.h"
#include "foundation/Numbers.h"

namespace kolvane {

std::vector<FormControl> frmCPModif3::Controls() {
  return {
      {.Name = "lblName", .Control = &lblName, .Row = 0},
      {.Name = "cboEnum", .Control = &cboEnum, .Row = 1, .Click = [this] { cboEnum_Click(); }},
      {.Name = "cmdOk", .Control = &cmdOk, .Row = 2, .Click = [this] { cmdOk_Click(); }},
      {.Name = "cmdCancel",
       .Control = &cmdCancel,
       .Row = 2,
       .Click = [this] { cmdCancel_Click(); }},
  };
}

void frmCPModif3::Form_Load() {
  if (items_.empty()) return;
  auto& item = items_.front().point;
  lblName.Caption = item.Name();
  selected_state_ = -1;
  cboEnum.List.clear();
  cboEnum.ItemData.clear();
  const auto type = item.SNVTType();
  const std::string description = type ? type->ISNVType_EnumDesc() : "";
  const std::string value = item.Value();
  int32_t shown = -1;
  for (int32_t i = 0;; ++i) {
    const std::string entry = Globals::GetToken(description, i, ";");
    if (entry.empty()) break;
    const size_t comma = entry.find(',');
    int16_t number = 0;
    ContinueOnError([&] { number = RoundToInt16(LeadingNumber(entry.substr(0, comma))); });
    cboEnum.List.push_back("(" + entry + ")");
    cboEnum.ItemData.push_back(number);
    // The value names the state, or gives its number.
    const std::string name = comma == std::string::npos ? "" : entry.substr(comma + 1);
    if (shown < 0 &&
        (value == name || value == entry.substr(0, comma) || value == cboEnum.List.back())) {
      shown = i;
    }
  }
  if (cboEnum.List.empty()) return;
  if (shown < 0) shown = 0;
  cboEnum.ListIndex = shown;
  cboEnum.Text = cboEnum.List[static_cast<size_t>(shown)];
}

void frmCPModif3::cboEnum_Click() {
  if (cboEnum.ListIndex < 0 || cboEnum.ListIndex >= static_cast<int32_t>(cboEnum.ItemData.size())) {
    return;
  }
  selected_state_ = static_cast<int16_t>(cboEnum.ItemData[static_cast<size_t>(cboEnum.ListIndex)]);
  cboEnum.Text = cboEnum.List[static_cast<size_t>(cboEnum.ListIndex)];
}

void frmCPModif3::cmdOk_Click() {
  if (selected_state_ == -1) {
    for (size_t i = 0; i < cboEnum.List.size(); ++i) {
      if (cboEnum.List[i] == cboEnum.Text)
        selected_state_ = static_cast<int16_t>(cboEnum.ItemData[i]);
    }
  }
  for (Item& item : items_) item.point.Value(cboEnum.Text);
  CalledFramModif4(false);
  Unload();
}

void frmCPModif3::cmdCancel_Click() { Unload(); }

}  // namespace kolvane
