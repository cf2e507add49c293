#include "dialogs/frmCPModif1.h"

#include "conversion/SNVTDataConversion.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/HostServices.h"
#include "foundation/Numbers.h"
#include "foundation/Text.h"

namespace kolvane {

namespace {

constexpr int16_t kBackspace = 8;
constexpr int16_t kEscape = 27;
constexpr char kInvalid[] = "Invalid";
// Digits a single-precision number holds.
constexpr int32_t kFloatDecimals = 7;

bool IsDigit(int16_t key) { return key >= '0' && key <= '9'; }

std::string Limit(const std::string& limit) { return limit.empty() ? "---" : limit; }

// A number as the user types it, with the user's decimal separator.
bool IsNumber(const std::string& text) { return IsNumberText(text, Globals::DecimalPoint()); }

}  // namespace

std::vector<FormControl> frmCPModif1::Controls() {
  return {
      {.Name = "lblName", .Control = &lblName, .Row = 0},
      {.Name = "txtNewCPValue",
       .Control = &txtNewCPValue,
       .Row = 1,
       .KeyPress = [this](int16_t& key) { txtNewCPValue_KeyPress(key); },
       .Change = [this] { txtNewCPValue_Change(); }},
      {.Name = "lblUnits", .Control = &lblUnits, .Row = 1},
      {.Name = "chkInvalid",
       .Control = &chkInvalid,
       .Row = 1,
       .Click = [this] { chkInvalid_Click(); }},
      {.Name = "lblMin", .Control = &lblMin, .Row = 2, .Prompt = "Min:"},
      {.Name = "lblMax", .Control = &lblMax, .Row = 2, .Prompt = "Max:"},
      {.Name = "cmdOk", .Control = &cmdOk, .Row = 3, .Click = [this] { cmdOk_Click(); }},
      {.Name = "cmdCancel",
       .Control = &cmdCancel,
       .Row = 3,
       .Click = [this] { cmdCancel_Click(); }},
  };
}

void frmCPModif1::Form_Load() {
  if (items_.empty()) return;
  auto& item = items_.front().point;
  const auto type = item.SNVTType();
  type_id_ = type ? type->ISNVType_ID() : "";
  converter_ = CreateObjectAs<IUnitConverter>("UnitManager.Converter");
  const std::string value = item.Value();
  const std::string text =
      value == kInvalid ? kInvalid : converter_->ToDisplayUnits(type_id_, value);
  const std::string units(TrimBlanks(converter_->DisplayUnits(type_id_)));
  lblUnits.Caption = units.empty() ? "" : "[" + units + "]";
  // The limits of the item's own type object: a configuration property's bounds are there.
  const auto limit = [&](const std::string& text) {
    return text.empty() ? text
                        : converter_->ToDisplayUnits(type_id_, SNVTDataConversion::LocalizeNumber(text));
  };
  minimum_ = type ? limit(type->ISNVType_Min()) : "";
  maximum_ = type ? limit(type->ISNVType_Max()) : "";
  lblMin.Caption = Limit(minimum_);
  lblMax.Caption = Limit(maximum_);
  SetText(txtNewCPValue, text);
  const bool is_float = type && ToUpper(type->ISNVType_GenType()) == "FLOAT";
  decimal_limit_ = is_float ? kFloatDecimals : (type ? std::max(0, -type->ISNVType_BCoef()) : 0);
  // Display units may show more decimals than the type's own unit has: as many may be typed.
  for (const std::string& shown : {text, minimum_, maximum_}) {
    const size_t point = shown.find(Globals::DecimalPoint());
    if (point == std::string::npos || shown.find('E') != std::string::npos) continue;
    decimal_limit_ = std::max(decimal_limit_, static_cast<int32_t>(shown.size() - point - 1));
  }
  chkInvalid.Enabled = !is_float;
  chkInvalid.Value = !is_float && value == kInvalid ? 1 : 0;
  // A dialog is shown again for the same item: nothing of an earlier run stays.
  txtNewCPValue.Enabled = chkInvalid.Value == 0;
  cmdOk.Enabled = chkInvalid.Value == 1 || IsNumber(txtNewCPValue.Text);
  ActiveControl.clear();
  lblName.Caption = item.Name();
  SelectAll();
}

void frmCPModif1::txtNewCPValue_KeyPress(int16_t& KeyAscii) {
  if (KeyAscii == kEscape) return;
  // Either separator typed is the decimal separator.
  const std::string& alternate = Globals::AlternateSeparator;
  if (!alternate.empty() && KeyAscii == alternate[0]) KeyAscii = Globals::DecimalPoint();
  const std::string& text = txtNewCPValue.Text;
  const char separator = Globals::DecimalPoint();
  const bool whole_selected = txtNewCPValue.SelLength >= static_cast<int32_t>(text.size());
  if (whole_selected) {
    const bool sign_or_digit = KeyAscii == '-' || KeyAscii == '+' || IsDigit(KeyAscii);
    const bool point = decimal_limit_ > 0 && KeyAscii == separator;
    if (!sign_or_digit && !point) KeyAscii = 0;
    return;
  }
  const size_t exponent = text.find('E');
  const size_t point = text.find(separator);
  const char last = text.empty() ? '\0' : text.back();
  if (KeyAscii == 'E' || KeyAscii == 'e') {
    KeyAscii = exponent == std::string::npos && IsDigit(last) ? 'E' : 0;
  } else if (IsDigit(KeyAscii)) {
    if (point != std::string::npos && exponent == std::string::npos &&
        static_cast<int32_t>(text.size() - point - 1) >= decimal_limit_) {
      KeyAscii = 0;
    }
  } else if (KeyAscii == kBackspace) {
    // passes
  } else if (KeyAscii == '+' || KeyAscii == '-') {
    if (last != 'E') KeyAscii = 0;
  } else if (KeyAscii == separator) {
    if (decimal_limit_ == 0 || point != std::string::npos || exponent != std::string::npos) {
      KeyAscii = 0;
    }
  } else {
    KeyAscii = 0;
  }
}

void frmCPModif1::txtNewCPValue_Change() { cmdOk.Enabled = IsNumber(txtNewCPValue.Text); }

void frmCPModif1::chkInvalid_Click() {
  if (chkInvalid.Value == 1) {
    txtNewCPValue.Text = kInvalid;
    txtNewCPValue.Enabled = false;
  } else {
    txtNewCPValue.Enabled = true;
    ActiveControl = "txtNewCPValue";
    SelectAll();
  }
  cmdOk.Enabled = true;
}

void frmCPModif1::cmdOk_Click() {
  // The mark was cleared over the text "Invalid": there is no number to write yet.
  if (chkInvalid.Value != 1 && !IsNumber(txtNewCPValue.Text)) {
    cmdOk.Enabled = false;
    return;
  }
  for (Item& item : items_) {
    if (chkInvalid.Value != 1 && !RangeCheck()) return;
    item.point.Value(chkInvalid.Value == 1
                         ? std::string(kInvalid)
                         : converter_->FromDisplayUnits(type_id_, txtNewCPValue.Text));
  }
  CalledFramModif4(false);
  Unload();
}

void frmCPModif1::cmdCancel_Click() { Unload(); }

bool frmCPModif1::RangeCheck() {
  const auto refuse = [this](const std::string& text, const std::string& limit) {
    MsgBox(text + limit, vbExclamation, "Warning");
    if (txtNewCPValue.Enabled) {
      ActiveControl = "txtNewCPValue";
      txtNewCPValue.Text = limit;
      SelectAll();
    }
    return false;
  };
  const double value = converter_->TextToNumber(txtNewCPValue.Text);
  if (!minimum_.empty() && value < converter_->TextToNumber(minimum_)) {
    return refuse("The value is less than ", minimum_);
  }
  if (maximum_.empty()) return true;
  if (value > converter_->TextToNumber(maximum_)) {
    return refuse("The value is greater than ", maximum_);
  }
  return true;
}

void frmCPModif1::SelectAll() {
  txtNewCPValue.SelStart = 0;
  txtNewCPValue.SelLength = static_cast<int32_t>(txtNewCPValue.Text.size());
}

}  // namespace kolvane
