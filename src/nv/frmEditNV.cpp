#include "foundation/Error.h"
#include "foundation/HostServices.h"
#include "foundation/Globals.h"
#include "foundation/Numbers.h"
#include "types/CSNVTType.h"
#include "nv/CNetworkVariable.h"
#include "nv/frmEditNVI.h"
#include "nv/frmEditNVO.h"

namespace kolvane {

namespace {

std::shared_ptr<CNetworkVariable> Variable(std::shared_ptr<IUnknown> item) {
  auto variable = std::dynamic_pointer_cast<CNetworkVariable>(std::move(item));
  if (!variable) RaiseError(ErrorNumber::kTypeMismatch, "the options are a network variable's");
  return variable;
}

std::string LimitText(const std::string& limit) { return limit.empty() ? "---" : limit; }

// Whether the value box holds a number in display units: an output of a number type with a
// value other than "Invalid".
bool ShowsNumber(const CNetworkVariable& variable, const std::string& value) {
  const auto type = variable.INetworkVariable_SNVTType();
  return type && IsNumeric(KindOf(*type)) && !value.empty() && value != "Invalid" &&
         variable.UnitsManager();
}

}  // namespace

void frmEditNVO::DataPoint(std::shared_ptr<IUnknown> item) {
  variable_ = Variable(std::move(item));
}

std::vector<FormControl> frmEditNVO::Controls() {
  return {
      {.Name = "chkSendOnDelta",
       .Control = &chkSendOnDelta,
       .Row = 0,
       .Click = [this] { chkSendOnDelta_Click(); }},
      {.Name = "txtSendOnDelta", .Control = &txtSendOnDelta, .Row = 0},
      {.Name = "lblMin", .Control = &lblMin, .Row = 1, .Prompt = lblMinCaption.Caption},
      {.Name = "lblMax", .Control = &lblMax, .Row = 1, .Prompt = lblMaxCaption.Caption},
      {.Name = "txtValue", .Control = &txtValue, .Row = 2, .Prompt = lblValue.Caption},
      {.Name = "cmdOk", .Control = &cmdOk, .Row = 3, .Click = [this] { cmdOk_Click(); }},
      {.Name = "cmdCancel",
       .Control = &cmdCancel,
       .Row = 3,
       .Click = [this] { cmdCancel_Click(); }},
  };
}

void frmEditNVO::Form_Load() {
  const auto variable = variable_.lock();
  if (!variable) return;
  chkSendOnDelta.Value = variable->SendOnDeltaEnabled() ? 1 : 0;
  txtSendOnDelta.Text = variable->SendOnDelta();
  txtSendOnDelta.Enabled = chkSendOnDelta.Value == 1;
  const auto type = variable->INetworkVariable_SNVTType();
  const auto converter = variable->UnitsManager();
  const std::string id = type ? type->ISNVType_ID() : "";
  lblMin.Caption = LimitText(converter ? converter->DisplayMinimum(id) : "");
  lblMax.Caption = LimitText(converter ? converter->DisplayMaximum(id) : "");
  txtValue.Text = variable->INetworkVariable_Value();
  if (ShowsNumber(*variable, txtValue.Text)) txtValue.Text = converter->ToDisplayUnits(id, txtValue.Text);
}

bool frmEditNVO::Refuse(const std::string& message, const std::string& control) {
  MsgBox(message, vbExclamation, "Warning");
  ActiveControl = control;
  return false;
}

bool frmEditNVO::Checked(const CNetworkVariable& variable) {
  const char point = Globals::DecimalPoint();
  if (chkSendOnDelta.Value == 1 && (!IsNumberText(txtSendOnDelta.Text, point) ||
                                    ParseNumber(txtSendOnDelta.Text, point) < 0)) {
    return Refuse("The threshold must be a number of at least 0", "txtSendOnDelta");
  }
  if (!ShowsNumber(variable, txtValue.Text)) return true;
  if (!IsNumberText(txtValue.Text, point)) {
    return Refuse("\"" + txtValue.Text + "\" is not a number", "txtValue");
  }
  const auto converter = variable.UnitsManager();
  const double value = converter->TextToNumber(txtValue.Text);
  if (lblMin.Caption != "---" && value < converter->TextToNumber(lblMin.Caption)) {
    return Refuse("The value is less than " + lblMin.Caption, "txtValue");
  }
  if (lblMax.Caption != "---" && value > converter->TextToNumber(lblMax.Caption)) {
    return Refuse("The value is greater than " + lblMax.Caption, "txtValue");
  }
  return true;
}

void frmEditNVO::chkSendOnDelta_Click() { txtSendOnDelta.Enabled = chkSendOnDelta.Value == 1; }

void frmEditNVO::cmdOk_Click() {
  if (const auto variable = variable_.lock()) {
    if (!Checked(*variable)) return;
    variable->SendOnDeltaEnabled(chkSendOnDelta.Value == 1);
    variable->SendOnDelta(txtSendOnDelta.Text);
    const std::string value =
        ShowsNumber(*variable, txtValue.Text)
            ? variable->UnitsManager()->FromDisplayUnits(
                  variable->INetworkVariable_SNVTType()->ISNVType_ID(), txtValue.Text)
            : txtValue.Text;
    variable->INetworkVariable_Value(value);
  }
  Unload();
}

void frmEditNVO::cmdCancel_Click() { Unload(); }

void frmEditNVI::DataPoint(std::shared_ptr<IUnknown> item) {
  variable_ = Variable(std::move(item));
}

std::vector<FormControl> frmEditNVI::Controls() {
  return {
      {.Name = "chkRcvHrtBt",
       .Control = &chkRcvHrtBt,
       .Row = 0,
       .Click = [this] { chkRcvHrtBt_Click(); }},
      {.Name = "cmdOk", .Control = &cmdOk, .Row = 1, .Click = [this] { cmdOk_Click(); }},
      {.Name = "cmdCancel",
       .Control = &cmdCancel,
       .Row = 1,
       .Click = [this] { cmdCancel_Click(); }},
  };
}

void frmEditNVI::Form_Load() {
  confirmed_ = false;
  if (const auto variable = variable_.lock()) {
    loaded_heartbeat_ = variable->ReceiveHeartbeat();
    chkRcvHrtBt.Value = loaded_heartbeat_;
  }
}

void frmEditNVI::Form_Unload(int16_t& Cancel) {
  (void)Cancel;
  const auto variable = variable_.lock();
  if (!confirmed_ && variable && variable->ReceiveHeartbeat() != loaded_heartbeat_) {
    variable->ReceiveHeartbeat(loaded_heartbeat_);
  }
}

void frmEditNVI::cmdCancel_Click() { Unload(); }

void frmEditNVI::chkRcvHrtBt_Click() {
  if (const auto variable = variable_.lock()) variable->ReceiveHeartbeat(chkRcvHrtBt.Value == 1);
}

void frmEditNVI::cmdOk_Click() {
  confirmed_ = true;
  Unload();
}

}  // namespace kolvane
