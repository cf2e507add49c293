#include "foundation/Error.h"
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
}

void frmEditNVO::chkSendOnDelta_Click() { txtSendOnDelta.Enabled = chkSendOnDelta.Value == 1; }

void frmEditNVO::cmdOk_Click() {
  if (const auto variable = variable_.lock()) {
    variable->SendOnDeltaEnabled(chkSendOnDelta.Value == 1);
    variable->SendOnDelta(txtSendOnDelta.Text);
    variable->INetworkVariable_Value(txtValue.Text);
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
  };
}

void frmEditNVI::Form_Load() {
  if (const auto variable = variable_.lock()) chkRcvHrtBt.Value = variable->ReceiveHeartbeat();
}

void frmEditNVI::chkRcvHrtBt_Click() {
  if (const auto variable = variable_.lock()) variable->ReceiveHeartbeat(chkRcvHrtBt.Value == 1);
}

void frmEditNVI::cmdOk_Click() { Unload(); }

}  // namespace kolvane
