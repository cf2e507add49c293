#include "nv/CNetworkVariable.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

// The output dialog as the user sees it.
std::string Shown(const frmEditNVO& dialog) {
  return dialog.chkSendOnDelta.Caption + "=" + std::to_string(dialog.chkSendOnDelta.Value) + " [" +
         dialog.txtSendOnDelta.Text + (dialog.txtSendOnDelta.Enabled ? "]" : "] disabled") + " | " +
         dialog.lblMinCaption.Caption + " " + dialog.lblMin.Caption + " | " +
         dialog.lblMaxCaption.Caption + " " + dialog.lblMax.Caption + " | " + dialog.txtValue.Text +
         " | " + dialog.cmdOk.Caption;
}

class frmEditNVTest : public CatalogueFixture {
 protected:
  // A variable loaded from an NV element of type_name, "In" or "Out".
  std::shared_ptr<CNetworkVariable> Variable(const std::string& type_name,
                                             const std::string& direction) {
    auto variable = std::make_shared<CNetworkVariable>();
    variable->LoadFromXml(
        Element("<nv Type=\"" + type_name + "\" Direction=\"" + direction + "\"/>"));
    return variable;
  }

  ScopedFormHost user;
};

TEST_F(frmEditNVTest, SetValueShowsANewDialogOfTheDirection) {
  const auto input = Variable("switch", "In");
  const auto output = Variable("temp_p", "Out");
  const auto loaded_dialog = input->OptionsDialog();
  std::vector<std::string> shown;
  const auto record = [&](Form& form) {
    shown.push_back(dynamic_cast<frmEditNVI*>(&form)   ? "NVI"
                    : dynamic_cast<frmEditNVO*>(&form) ? "NVO"
                                                       : form.Caption());
  };
  user.host->steps = {record, record};
  input->INetworkVariable_SetValue();
  output->INetworkVariable_SetValue();
  EXPECT_EQ(shown, (std::vector<std::string>{"NVI", "NVO"}));
  EXPECT_NE(std::dynamic_pointer_cast<frmEditNVI>(input->OptionsDialog()), nullptr);
  EXPECT_NE(input->OptionsDialog(), loaded_dialog);
}

// Changing the type makes no dialog: an output loaded as a number and retyped to a structure
// keeps the dialog it was loaded with, while one loaded as a structure has none (error 91).
TEST_F(frmEditNVTest, OnlyLoadingMakesAnOutputStructureDialogless) {
  const auto retyped = Variable("temp_p", "Out");
  const auto dialog = retyped->OptionsDialog();
  retyped->INetworkVariable_SetSnvtType("switch");
  EXPECT_EQ(retyped->OptionsDialog(), dialog);
  EXPECT_EQ(ErrorNumberOf([&] { retyped->INetworkVariable_SetValue(); }), 0);
  EXPECT_EQ(user.host->captions, std::vector<std::string>{"Output Options"});

  const auto loaded = Variable("switch", "Out");
  EXPECT_EQ(loaded->OptionsDialog(), nullptr);
  EXPECT_EQ(ErrorNumberOf([&] { loaded->INetworkVariable_SetValue(); }), 91);
  EXPECT_EQ(user.host->captions.size(), 1u);
}

TEST_F(frmEditNVTest, OutputOptionsLoadWriteOnOkAndNotOnCancel) {
  const auto output = Variable("temp_p", "Out");
  output->SendOnDeltaEnabled(true);
  output->SendOnDelta("0.5");
  output->INetworkVariable_Value("21.5");
  ClearFlags();
  user.host->steps.push_back([&](Form& form) {
    auto& dialog = dynamic_cast<frmEditNVO&>(form);
    EXPECT_EQ(Shown(dialog),
              "Send on Delta (LON)=1 [0.5] | Min Value: -273.17 | Max Value: 327.66 | 21.5 | &Ok");
    dialog.chkSendOnDelta.Value = 0;
    dialog.chkSendOnDelta_Click();
    EXPECT_FALSE(dialog.txtSendOnDelta.Enabled);
    dialog.txtSendOnDelta.Text = "2";
    dialog.txtValue.Text = "Invalid";
    EXPECT_FALSE(Globals::NeedSaveFlag);
    dialog.cmdOk_Click();
    EXPECT_FALSE(dialog.Loaded());
  });
  user.host->steps.push_back([&](Form& form) {
    auto& dialog = dynamic_cast<frmEditNVO&>(form);
    EXPECT_EQ(Shown(dialog),
              "Send on Delta (LON)=0 [2] disabled | Min Value: -273.17 | "
              "Max Value: 327.66 | Invalid | &Ok");
    ClearFlags();
    dialog.chkSendOnDelta.Value = 1;
    dialog.txtSendOnDelta.Text = "9";
    dialog.txtValue.Text = "30";
    dialog.cmdCancel_Click();
    EXPECT_FALSE(dialog.Loaded());
  });
  for (const bool saved : {true, false}) {
    output->INetworkVariable_SetValue();
    EXPECT_EQ(std::to_string(output->SendOnDeltaEnabled()) + "|" + output->SendOnDelta() + "|" +
                  output->INetworkVariable_Value(),
              "0|2|Invalid");
    EXPECT_EQ(Globals::NeedSaveFlag, saved);
  }

  // A type without limits shows dashes.
  frmEditNVO dialog;
  const auto occupancy = Variable("occupancy", "Out");
  occupancy->INetworkVariable_Value("OC_STANDBY");
  dialog.DataPoint(occupancy);
  dialog.Form_Load();
  EXPECT_EQ(
      Shown(dialog),
      "Send on Delta (LON)=0 [] disabled | Min Value: --- | Max Value: --- | OC_STANDBY | &Ok");
}

// The value box is in the display units its limits are in, and checked as the value dialogs
// check: a refused value or threshold writes nothing and leaves the dialog open.
TEST_F(frmEditNVTest, OutputOptionsCheckWhatIsTypedInDisplayUnits) {
  ScopedUsUnits us;
  MessageBoxRecorder boxes;
  const auto output = Variable("temp_p", "Out");
  output->INetworkVariable_Value("20");
  user.host->steps.push_back([&](Form& form) {
    auto& dialog = dynamic_cast<frmEditNVO&>(form);
    EXPECT_EQ(Shown(dialog),
              "Send on Delta (LON)=0 [] disabled | Min Value: -459.706 | Max Value: 621.788 | 68 | &Ok");
    for (const auto& [value, threshold, message] : std::vector<std::array<std::string, 3>>{
             {"abc", "", "\"abc\" is not a number"},
             {"999", "", "The value is greater than 621.788"},
             {"-500", "", "The value is less than -459.706"},
             {"70", "x", "The threshold must be a number of at least 0"},
             {"70", "-1", "The threshold must be a number of at least 0"}}) {
      boxes.boxes.clear();
      dialog.chkSendOnDelta.Value = threshold.empty() ? 0 : 1;
      dialog.txtSendOnDelta.Text = threshold;
      dialog.txtValue.Text = value;
      dialog.cmdOk_Click();
      EXPECT_EQ(boxes.boxes, Boxes({{message, vbExclamation, "Warning"}})) << value;
      EXPECT_TRUE(dialog.Loaded());
      EXPECT_EQ(output->INetworkVariable_Value(), "20");
    }
    dialog.chkSendOnDelta.Value = 1;
    dialog.txtSendOnDelta.Text = "0.5";
    dialog.txtValue.Text = "77";
    dialog.cmdOk_Click();
    EXPECT_FALSE(dialog.Loaded());
  });
  output->INetworkVariable_SetValue();
  EXPECT_EQ(output->INetworkVariable_Value(), "25");
  EXPECT_EQ(output->SendOnDelta(), "0.5");
}

TEST_F(frmEditNVTest, InputOptionsWriteTheHeartbeatAsTheBoxIsClicked) {
  const auto input = Variable("temp_p", "In");
  user.host->steps.push_back([&](Form& form) {
    auto& dialog = dynamic_cast<frmEditNVI&>(form);
    EXPECT_EQ(dialog.chkRcvHrtBt.Caption + "=" + std::to_string(dialog.chkRcvHrtBt.Value) + " | " +
                  dialog.cmdOk.Caption,
              "Enable Receive HeartBeat (LON)=0 | &Ok");
    dialog.chkRcvHrtBt.Value = 1;
    dialog.chkRcvHrtBt_Click();
    EXPECT_TRUE(input->ReceiveHeartbeat());
    EXPECT_TRUE(Globals::NeedSaveFlag);
    dialog.chkRcvHrtBt.Value = 0;  // not clicked: not written
    dialog.cmdOk_Click();
    EXPECT_FALSE(dialog.Loaded());
  });
  input->INetworkVariable_SetValue();
  EXPECT_TRUE(input->ReceiveHeartbeat());

  // The next run shows it checked; clicked off and cancelled, it stays on.
  user.host->steps.push_back([&](Form& form) {
    auto& dialog = dynamic_cast<frmEditNVI&>(form);
    EXPECT_EQ(dialog.chkRcvHrtBt.Value, 1);
    dialog.chkRcvHrtBt.Value = 0;
    dialog.chkRcvHrtBt_Click();
    EXPECT_FALSE(input->ReceiveHeartbeat());
    dialog.cmdCancel_Click();
    EXPECT_FALSE(dialog.Loaded());
  });
  input->INetworkVariable_SetValue();
  EXPECT_TRUE(input->ReceiveHeartbeat());
}

TEST_F(frmEditNVTest, DataPointTakesOnlyNetworkVariables) {
  const auto lamp = Variable("switch", "In");
  const std::shared_ptr<IUnknown> field = lamp->INetworkVariable_Fields()->IFields_Item("1");
  const std::shared_ptr<IUnknown> owner = std::make_shared<FakeOwner>(2);
  for (const auto& item : {field, owner, std::shared_ptr<IUnknown>()}) {
    EXPECT_EQ(ErrorNumberOf([&] { frmEditNVO().DataPoint(item); }), 13);
    EXPECT_EQ(ErrorNumberOf([&] { frmEditNVI().DataPoint(item); }), 13);
  }
  EXPECT_EQ(ErrorNumberOf([&] { frmEditNVI().DataPoint(lamp); }), 0);
}

}  // namespace
}  // namespace kolvane::test
