// The dialog headers do not compile on their own (IUnknown undeclared): the variable's goes first.
#include "nv/CNetworkVariable.h"
#include "nv/frmEditNVI.h"
#include "nv/frmEditNVO.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

using test::ErrorNumberOf;

class frmEditNVTest : public ::testing::Test {
 protected:
  // A variable loaded from an NV element of type_name, "In" or "Out".
  static std::shared_ptr<CNetworkVariable> Variable(const std::string& type_name,
                                                    const std::string& direction) {
    test::ParsedXml parsed("<nv Type=\"" + type_name + "\" Direction=\"" + direction + "\"/>");
    auto variable = std::make_shared<CNetworkVariable>();
    variable->INetworkVariable_Name("nv");
    variable->LoadFromXml(parsed.Root());
    return variable;
  }

  // "send-on-delta flag|threshold|value" of an output.
  static std::string Options(CNetworkVariable& output) {
    return std::to_string(output.SendOnDeltaEnabled()) + "|" + output.SendOnDelta() + "|" +
           output.INetworkVariable_Value();
  }

  test::MessageBoxRecorder boxes;
  test::ScopedDecimalSeparator point{"."};
  test::ScopedCatalogue catalogue{test::kBundledCatalogue, true};
  test::ScopedSaveFlags flags;
  test::ScopedFormHost user;
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

  const auto structure = Variable("switch", "Out");
  EXPECT_EQ(ErrorNumberOf([&] { structure->INetworkVariable_SetValue(); }), 91);
  EXPECT_EQ(shown.size(), 2u);
}

// An output retyped to a structure has no options, like one loaded as a structure.
// Changing the type makes no dialog: an output loaded as a number and retyped to a structure
// keeps the dialog it was loaded with, while one loaded as a structure has none.
TEST_F(frmEditNVTest, OnlyLoadingMakesAnOutputStructureDialogless) {
  const auto retyped = Variable("temp_p", "Out");
  const auto dialog = retyped->OptionsDialog();
  retyped->INetworkVariable_SetSnvtType("switch");
  ASSERT_NE(retyped->INetworkVariable_Fields(), nullptr);
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
  flags.Clear();
  user.host->steps.push_back([&](Form& form) {
    auto& dialog = dynamic_cast<frmEditNVO&>(form);
    EXPECT_EQ(dialog.chkSendOnDelta.Caption, "Send on Delta (LON)");
    EXPECT_EQ(dialog.chkSendOnDelta.Value, 1);
    EXPECT_EQ(dialog.txtSendOnDelta.Text, "0.5");
    EXPECT_TRUE(dialog.txtSendOnDelta.Enabled);
    EXPECT_EQ(dialog.lblMinCaption.Caption + "|" + dialog.lblMin.Caption, "Min Value:|-273.17");
    EXPECT_EQ(dialog.lblMaxCaption.Caption + "|" + dialog.lblMax.Caption, "Max Value:|327.66");
    EXPECT_EQ(dialog.txtValue.Text, "21.5");
    EXPECT_EQ(dialog.cmdOk.Caption, "&Ok");
    dialog.chkSendOnDelta.Value = 0;
    dialog.chkSendOnDelta_Click();
    EXPECT_FALSE(dialog.txtSendOnDelta.Enabled);
    dialog.txtSendOnDelta.Text = "2";
    dialog.txtValue.Text = "Invalid";
    EXPECT_FALSE(Globals::NeedSaveFlag);
    dialog.cmdOk_Click();
    EXPECT_FALSE(dialog.Loaded());
  });
  output->INetworkVariable_SetValue();
  EXPECT_EQ(Options(*output), "0|2|Invalid");
  EXPECT_TRUE(Globals::NeedSaveFlag);

  flags.Clear();
  user.host->steps.push_back([&](Form& form) {
    auto& dialog = dynamic_cast<frmEditNVO&>(form);
    EXPECT_EQ(dialog.chkSendOnDelta.Value, 0);
    EXPECT_FALSE(dialog.txtSendOnDelta.Enabled);
    EXPECT_EQ(dialog.txtSendOnDelta.Text, "2");
    dialog.chkSendOnDelta.Value = 1;
    dialog.txtSendOnDelta.Text = "9";
    dialog.txtValue.Text = "30";
    dialog.cmdCancel_Click();
    EXPECT_FALSE(dialog.Loaded());
  });
  output->INetworkVariable_SetValue();
  EXPECT_EQ(Options(*output), "0|2|Invalid");
  EXPECT_FALSE(Globals::NeedSaveFlag);

  // A type without limits shows dashes.
  frmEditNVO dialog;
  const auto occupancy = Variable("occupancy", "Out");
  occupancy->INetworkVariable_Value("OC_STANDBY");
  dialog.DataPoint(occupancy);
  dialog.Form_Load();
  EXPECT_EQ(dialog.lblMin.Caption + "|" + dialog.lblMax.Caption, "---|---");
  EXPECT_EQ(dialog.txtValue.Text, "OC_STANDBY");
}

TEST_F(frmEditNVTest, InputOptionsWriteTheHeartbeatAsTheBoxIsClicked) {
  const auto input = Variable("temp_p", "In");
  user.host->steps.push_back([&](Form& form) {
    auto& dialog = dynamic_cast<frmEditNVI&>(form);
    EXPECT_EQ(dialog.chkRcvHrtBt.Caption, "Enable Receive HeartBeat (LON)");
    EXPECT_EQ(dialog.cmdOk.Caption, "&Ok");
    EXPECT_EQ(dialog.chkRcvHrtBt.Value, 0);
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

  user.host->steps.push_back([&](Form& form) {
    auto& dialog = dynamic_cast<frmEditNVI&>(form);
    EXPECT_EQ(dialog.chkRcvHrtBt.Value, 1);
    dialog.chkRcvHrtBt.Value = 0;
    dialog.chkRcvHrtBt_Click();
  });
  input->INetworkVariable_SetValue();
  EXPECT_FALSE(input->ReceiveHeartbeat());
}

TEST_F(frmEditNVTest, DataPointTakesOnlyNetworkVariables) {
  const auto lamp = Variable("switch", "In");
  const std::shared_ptr<IUnknown> field = lamp->INetworkVariable_Fields()->IFields_Item("1");
  const auto owner = std::make_shared<test::FakeOwner>(2);
  for (const auto& item : {field, std::shared_ptr<IUnknown>(owner), std::shared_ptr<IUnknown>()}) {
    EXPECT_EQ(ErrorNumberOf([&] { frmEditNVO().DataPoint(item); }), 13);
    EXPECT_EQ(ErrorNumberOf([&] { frmEditNVI().DataPoint(item); }), 13);
  }
  EXPECT_EQ(ErrorNumberOf([&] { frmEditNVI().DataPoint(lamp); }), 0);
}

}  // namespace
}  // namespace kolvane
