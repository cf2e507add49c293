#include "dialogs/frmCPModif4.h"

#include "dialogs/EditDialog.h"
#include "foundation/HostServices.h"
#include "foundation/Text.h"
#include "interfaces/IField.h"
#include "types/CSNVTType.h"

namespace kolvane {

namespace {

constexpr int16_t kRightButton = 2;

}  // namespace

std::vector<FormControl> frmCPModif4::Controls() {
  return {
      {.Name = "lblName", .Control = &lblName, .Row = 0},
      {.Name = "lvwMain",
       .Control = &lvwMain,
       .Row = 1,
       .DblClick = [this] { lvwMain_DblClick(); },
       .MouseDown = [this](int16_t button, int16_t shift, float x,
                           float y) { lvwMain_MouseDown(button, shift, x, y); }},
      {.Name = "cmdOk", .Control = &cmdOk, .Row = 2, .Click = [this] { cmdOk_Click(); }},
      {.Name = "cmdCancel",
       .Control = &cmdCancel,
       .Row = 2,
       .Click = [this] { cmdCancel_Click(); }},
  };
}

void frmCPModif4::Form_Load() {
  if (items_.empty()) return;
  auto& item = items_.front();
  lblName.Caption = item.Name();
  lvwMain.ListItems.clear();
  lvwMain.SelectedItem = -1;
  const auto fields = item.fields();
  if (!fields) return;
  for (const auto& field : fields->IFields_NewEnum()) {
    lvwMain.ListItems.push_back({field->IField_Name(),
                                 field->IField_Name(),
                                 {field->IField_DispValue()},
                                 field->IField_Value()});
  }
}

void frmCPModif4::lvwMain_DblClick() { EditSelectedField(); }

void frmCPModif4::lvwMain_MouseDown(int16_t Button, int16_t /*Shift*/, float /*X*/, float /*Y*/) {
  if (Button == kRightButton) EditSelectedField();
}

void frmCPModif4::cmdOk_Click() {
  std::string value;
  for (const ListItem& row : lvwMain.ListItems) value += " " + row.Tag;
  value = std::string(TrimBlanks(value));
  for (auto& item : items_) item.Value(value);
  Unload();
}

void frmCPModif4::cmdCancel_Click() { Unload(); }

void frmCPModif4::EditSelectedField() {
  if (items_.empty() || lvwMain.SelectedItem < 0 ||
      lvwMain.SelectedItem >= static_cast<int32_t>(lvwMain.ListItems.size())) {
    return;
  }
  ListItem& row = lvwMain.ListItems[static_cast<size_t>(lvwMain.SelectedItem)];
  const auto fields = items_.front().fields();
  const auto field = fields ? fields->IFields_Item(row.Key) : nullptr;
  if (!field) return;
  const auto type = field->IField_SNVTType();
  const std::shared_ptr<Form> dialog =
      internal::MakeEditDialog(type ? KindOf(*type) : TypeKind::kUnknown);
  if (!dialog) {
    MsgBox("Unknown or Not modificable Attribute", vbExclamation, "Edit Value");
    return;
  }
  internal::SetDataPoint(*dialog, field, true);
  dialog->Show();
  row.SubItems = {field->IField_DispValue()};
  row.Tag = field->IField_Value();
}

}  // namespace kolvane
