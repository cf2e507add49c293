#include "cp/CConfigProperties.h"
#include "nv/CNetworkVariable.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

using std::tuple;
using Strings = std::vector<std::string>;

// A one-byte bit field, a kind no dialog edits, and a structure holding both.
constexpr char kInlineTypes[] = R"(<SNVT_bits8><TYPE>Bitfield</TYPE><LENGTH>1</LENGTH></SNVT_bits8>
  <SNVT_odd><TYPE>Opaque</TYPE></SNVT_odd><SNVT_mixed><TYPE>Struct</TYPE>
  <Fields><flags>bits8</flags><odd>odd</odd></Fields></SNVT_mixed>)";

// Types keys into the dialog's text box as the user does; returns the keys kept.
template <class D>
std::string Type(D& d, const std::string& keys) {
  return TypeKeys(
      d.txtNewCPValue, keys, [&](int16_t& k) { d.txtNewCPValue_KeyPress(k); },
      [&] { d.txtNewCPValue_Change(); });
}
auto Shown(const TextBox& box) { return tuple(box.Text, box.SelStart, box.SelLength, box.Enabled); }
// "name,display value,tag;" for each row.
std::string Rows(const frmCPModif4& d) {
  std::string text;
  for (auto& r : d.lvwMain.ListItems) text += r.Text + "," + r.SubItems[0] + "," + r.Tag + ";";
  return text;
}

class DialogsTest : public CatalogueFixture {
 protected:
  std::shared_ptr<IConfigProperty> NewCP(const std::string& type, const std::string& value = "") {
    auto cp = NotNull(properties.IConfigProperties_AddNewCP("nci" + type, type), type);
    cp->IConfigProperty_Value(value);
    return cp;
  }
  // The dialog D loaded with item, not shown.
  template <class D>
  std::shared_ptr<D> Open(const std::shared_ptr<IUnknown>& item) {
    auto dialog = std::make_shared<D>();
    dialog->DataPoint(item);
    dialog->Form_Load();
    return dialog;
  }
  // What the user does with the next form shown, a D.
  template <class D, class F>
  void Then(F step) {
    user.host->steps.push_back([step](Form& form) { step(dynamic_cast<D&>(form)); });
  }
  ScopedFormHost user;
  CConfigProperties properties;
};

TEST_F(DialogsTest, NumericDialogShowsTheValueChecksTheRangeAndWrites) {
  const auto cp = NewCP("temp_p", "21.5");
  Then<frmCPModif1>([&](frmCPModif1& d) {
    EXPECT_EQ(Strings({d.lblName.Caption, d.lblUnits.Caption, d.lblMin.Caption, d.lblMax.Caption}),
              Strings({"ncitemp_p", "[°C]", "-273.17", "327.66"}));
    EXPECT_EQ(Shown(d.txtNewCPValue), tuple("21.5", 0, 4, true));
    EXPECT_EQ(tuple(d.chkInvalid.Enabled, d.chkInvalid.Value), tuple(true, 0));
    for (const auto& [text, message, limit] :
         std::vector<std::array<std::string, 3>>{{"400", "The value is greater than ", "327.66"},
                                                 {"-300", "The value is less than ", "-273.17"}}) {
      boxes.boxes.clear();
      d.txtNewCPValue.Text = text;
      d.cmdOk_Click();
      EXPECT_EQ(boxes.boxes, Boxes({{message + limit, vbExclamation, "Warning"}}));
      EXPECT_EQ(Shown(d.txtNewCPValue), tuple(limit, 0, static_cast<int>(limit.size()), true));
      EXPECT_EQ(tuple(d.Loaded(), cp->IConfigProperty_Value()), tuple(true, "21.5"));
    }
    d.txtNewCPValue.Text = "327.66";
    d.cmdOk_Click();
    EXPECT_EQ(tuple(d.Loaded(), cp->IConfigProperty_Value()), tuple(false, "327.66"));
  });
  cp->IConfigProperty_SetValue();
  const auto d = Open<frmCPModif1>(cp);
  Type(*d, "-");
  d->chkInvalid.Value = 1;
  d->chkInvalid_Click();
  EXPECT_EQ(tuple(d->txtNewCPValue.Text, d->txtNewCPValue.Enabled, d->cmdOk.Enabled),
            tuple("Invalid", false, true));
  d->cmdOk_Click();
  EXPECT_EQ(cp->IConfigProperty_Value(), "Invalid");
  EXPECT_FALSE(Open<frmCPModif1>(NewCP("temp_f", "1.5"))->chkInvalid.Enabled);
}

// A property's own bounds are its type object's: the dialog shows and checks them, not the
// catalogue's limits of the type.
TEST_F(DialogsTest, NumericDialogChecksAPropertysOwnBounds) {
  const auto set = NotNull(std::dynamic_pointer_cast<IConfigProperty>(properties.IConfigProperties_AddCP(
      "nciSetpoint", nullptr,
      Element("<nciSetpoint><SNVTType>temp_p</SNVTType><Default>21.5</Default><Min>10</Min>"
              "<Max>30</Max></nciSetpoint>"))));
  Then<frmCPModif1>([&](frmCPModif1& d) {
    EXPECT_EQ(Strings({d.lblMin.Caption, d.lblMax.Caption}), Strings({"10", "30"}));
    d.txtNewCPValue.Text = "35";
    d.cmdOk_Click();
    EXPECT_EQ(boxes.boxes, Boxes({{"The value is greater than 30", vbExclamation, "Warning"}}));
    EXPECT_EQ(tuple(d.Loaded(), d.txtNewCPValue.Text), tuple(true, "30"));
    d.txtNewCPValue.Text = "9.5";
    d.cmdOk_Click();
    EXPECT_EQ(d.txtNewCPValue.Text, "10");
    d.cmdCancel_Click();
  });
  set->IConfigProperty_SetValue();
  EXPECT_EQ(set->IConfigProperty_Value(), "21.5");
}

// In US units the dialog shows and takes °F, with as many decimals as the display shows.
TEST_F(DialogsTest, NumericDialogInUsUnits) {
  ScopedUsUnits us;
  const auto cp = NewCP("temp_p", "21.5");
  Then<frmCPModif1>([&](frmCPModif1& d) {
    EXPECT_EQ(Strings({d.txtNewCPValue.Text, d.lblUnits.Caption, d.lblMin.Caption}),
              Strings({"70.7", "[°F]", "-459.706"}));
    d.txtNewCPValue = {};
    EXPECT_EQ(Type(d, "70.125"), "70.125");
    d.cmdOk_Click();
  });
  cp->IConfigProperty_SetValue();
  EXPECT_EQ(cp->IConfigProperty_Value(), "21.18");  // the nearest hundredth of a degree
}

TEST_F(DialogsTest, NumericKeyFilterAndWellFormedNumbers) {
  const auto d = Open<frmCPModif1>(NewCP("temp_p", "21.5"));
  // The whole text selected: Escape and "+" pass.
  EXPECT_EQ(tuple(Type(*d, "aEe \b\x1b+"), d->txtNewCPValue.Text), tuple("\x1b+", "+"));
  const std::vector<tuple<std::string, std::string, bool>> typed = {
      {"-12.345", "-12.34", true}, {"1e+5", "1E+5", true}, {"1+2-", "12", true},
      {"1.2.3", "1.23", true},     {"1E.5", "1E5", true},  {"1.E5", "1.5", true},
      {"1EE-", "1E-", false},      {"12.", "12.", true},   {"-", "-", false},
      {".", ".", false},           {"1E", "1E", false},    {"12\b", "1", true}};
  for (const auto& [keys, text, ok] : typed) {
    d->txtNewCPValue = {};
    Type(*d, keys);
    EXPECT_EQ(tuple(d->txtNewCPValue.Text, d->cmdOk.Enabled), tuple(text, ok)) << keys;
  }

  // Either separator typed is the locale's decimal separator: under a decimal comma "22.2" must
  // not become 222.
  for (const auto& [separator, keys, text] :
       {tuple(".", "1,5", "1.5"), tuple(",", "22.2", "22,2"), tuple(",", "2,2.", "2,2")}) {
    ScopedDecimalSeparator locale(separator);
    d->txtNewCPValue = {};
    Type(*d, keys);
    EXPECT_EQ(tuple(d->txtNewCPValue.Text, d->cmdOk.Enabled), tuple(text, true)) << keys;
  }
}

// Bugs: the box is not kept disabled exactly while the mark is checked. (1) An item loaded as
// "Invalid" gets the mark but an enabled box. (2) Clearing the mark leaves OK enabled over
// "Invalid", which is no number, and OK raises error 13 from RangeCheck. (3) Form_Load never
// enables the box again, and a property shows the same editor every time: after a run cancelled
// with the mark checked, "21.5" comes up with the mark clear in a disabled box.
TEST_F(DialogsTest, NumericBoxIsDisabledExactlyWhileTheMarkIsChecked) {
  const auto cp = NewCP("temp_p", "Invalid");
  const auto d = Open<frmCPModif1>(cp);
  EXPECT_EQ(tuple(d->txtNewCPValue.Text, d->chkInvalid.Value), tuple("Invalid", 1));
  EXPECT_FALSE(d->txtNewCPValue.Enabled);
  d->chkInvalid.Value = 0;
  d->chkInvalid_Click();
  EXPECT_TRUE(!d->cmdOk.Enabled || ErrorNumberOf([&] { d->cmdOk_Click(); }) == 0);
  d->chkInvalid.Value = 1;
  d->chkInvalid_Click();
  cp->IConfigProperty_Value("21.5");
  d->Form_Load();
  EXPECT_EQ(tuple(Shown(d->txtNewCPValue), d->chkInvalid.Value),
            tuple(tuple("21.5", 0, 4, true), 0));
}

TEST_F(DialogsTest, TextDialogCutsBlanksBackspaceEscapeAndEnter) {
  const auto cp = NewCP("str_asc", "Hello");
  Then<frmCPModif2>([&](frmCPModif2& d) {
    EXPECT_EQ(Shown(d.txtNewCPValue), tuple("Hello", 0, 5, true));
    d.txtNewCPValue.Text = "0123456789abcdefghijklmnopqrstuvwxyzABCD";
    d.txtNewCPValue_Change();
    EXPECT_EQ(boxes.boxes, Boxes({{"The text cannot exceed 30 characters", 48, "Name too long"}}));
    EXPECT_EQ(d.txtNewCPValue.Text, "0123456789abcdefghijklmnopqrst");
    for (const auto& [start, length, text] : std::vector<tuple<int, int, std::string>>{
             {1, 2, "adef"}, {3, 0, "abdef"}, {0, 6, ""}, {0, 0, "abcdef"}}) {
      d.txtNewCPValue = {"abcdef", true, true, start, length};
      Type(d, "\b");
      EXPECT_EQ(Shown(d.txtNewCPValue), tuple(text, static_cast<int>(text.size()), 0, true));
    }
    d.txtNewCPValue.SelStart = 5;
    Type(d, "\x1b x\r");  // Escape: the item's text again
    EXPECT_FALSE(d.Loaded());
  });
  cp->IConfigProperty_SetValue();
  EXPECT_EQ(cp->IConfigProperty_Value(), "Hello_x");

  // Setting the stored text on load raises Change: an over-long one is cut, with the message.
  boxes.boxes.clear();
  cp->IConfigProperty_Value("0123456789abcdefghijklmnopqrstuvwxyz");
  Then<frmCPModif2>([&](frmCPModif2& d) {
    EXPECT_EQ(boxes.boxes, Boxes({{"The text cannot exceed 30 characters", 48, "Name too long"}}));
    EXPECT_EQ(Shown(d.txtNewCPValue), tuple("0123456789abcdefghijklmnopqrst", 0, 30, true));
    d.cmdCancel_Click();
  });
  cp->IConfigProperty_SetValue();
}

// Bug (last line): the property keeps its editor and SelectedState() is never reset, so OK
// without a click answers the state clicked in the run before, not that of the text shown.
TEST_F(DialogsTest, EnumDialogShowsTheValueAndWritesTheClickedStateElseTheShownOne) {
  for (const auto& [value, shown] : std::vector<tuple<std::string, int>>{
           {"OC_BYPASS", 3}, {"2", 3}, {"(1,OC_UNOCCUPIED)", 2}, {"OC_NONE", 0}, {"7", 0}}) {
    const auto d = Open<frmCPModif3>(NewCP("occupancy", value));
    EXPECT_EQ(d->cboEnum.List, Strings({"(-1,OC_NUL)", "(0,OC_OCCUPIED)", "(1,OC_UNOCCUPIED)",
                                        "(2,OC_BYPASS)", "(3,OC_STANDBY)"}));
    EXPECT_EQ(d->cboEnum.ItemData, (std::vector<int32_t>{-1, 0, 1, 2, 3}));
    EXPECT_EQ(tuple(d->cboEnum.ListIndex, d->cboEnum.Text), tuple(shown, d->cboEnum.List[shown]));
  }
  const auto cp = NewCP("occupancy", "OC_OCCUPIED");
  std::vector<int16_t> chosen;
  for (const auto& [click, written] :
       std::vector<tuple<int, std::string>>{{3, "(2,OC_BYPASS)"}, {-1, "(1,OC_UNOCCUPIED)"}}) {
    Then<frmCPModif3>([&, click = click](frmCPModif3& d) {
      if (click >= 0) d.cboEnum.ListIndex = click;
      if (click >= 0) d.cboEnum_Click();
      d.cmdOk_Click();
      chosen.push_back(d.SelectedState());
    });
    cp->IConfigProperty_SetValue();
    EXPECT_EQ(cp->IConfigProperty_Value(), written);
    cp->IConfigProperty_Value("OC_UNOCCUPIED");
  }
  EXPECT_EQ(chosen, (std::vector<int16_t>{2, 1}));
}

TEST_F(DialogsTest, BitFieldDialogShowsAndFlipsBits) {
  ScopedCatalogue inline_types{BundledCatalogueWith(kInlineTypes)};
  const auto bits = [](const frmCPModif5& d) {  // bit 15 first, "-" for a hidden one
    std::string text = d.Label4.Visible ? "" : "low byte only ";
    for (int i = 15; i >= 0; --i) text += d.bit[i].Visible ? d.bit[i].Caption : "-";
    return text;
  };
  const auto byte = NewCP("bits8", "5"), word = NewCP("state", "256");
  const auto d = Open<frmCPModif5>(byte);
  EXPECT_EQ(bits(*d), "low byte only --------00000101");
  d->cmdOk_Click();
  Then<frmCPModif5>([&](frmCPModif5& d) {
    EXPECT_EQ(bits(d), "0000000100000000");
    for (const int16_t i : {0, 15}) d.bit_DblClick(i);
    d.cmdOk_Click();
  });
  word->IConfigProperty_SetValue();
  EXPECT_EQ(byte->IConfigProperty_Value() + " " + word->IConfigProperty_Value(), "5 33025");
}

TEST_F(DialogsTest, StructureDialogEditsFieldsOpensNestedOnesAndRefusesUnknownKinds) {
  auto nv = std::make_shared<CNetworkVariable>();
  nv->InitType(0, "switch");
  nv->INetworkVariable_Value("100 TOGGLE_ON");
  ASSERT_EQ(nv->INetworkVariable_Value(), "100 TOGGLE_ON");  // the fields take the value
  for (const bool ok : {false, true}) {
    Then<frmCPModif1>([ok](frmCPModif1& d) {
      EXPECT_TRUE(d.CalledFramModif4());
      Type(d, "50");
      ok ? d.cmdOk_Click() : d.cmdCancel_Click();
    });
  }
  const auto d = Open<frmCPModif4>(nv);
  EXPECT_EQ(Rows(*d), "value,100 %,100;state,TOGGLE_ON,TOGGLE_ON;");
  d->lvwMain.SelectedItem = 0;
  d->lvwMain_DblClick();  // "50" typed and cancelled
  EXPECT_EQ(Rows(*d), "value,100 %,100;state,TOGGLE_ON,TOGGLE_ON;");
  d->lvwMain_MouseDown(2, 0, 0, 0);  // "50" and OK
  EXPECT_EQ(Rows(*d), "value,50 %,50;state,TOGGLE_ON,TOGGLE_ON;");
  d->cmdOk_Click();
  // The variable's value is what OK wrote, tags joined by single blanks, taken apart again.
  EXPECT_EQ(nv->INetworkVariable_Value(), "50 TOGGLE_ON");
  const auto open_row_1 = [&](frmCPModif4& d) {
    boxes.boxes.clear();
    d.lvwMain.SelectedItem = 1;
    d.lvwMain_DblClick();
  };
  Then<frmCPModif4>(open_row_1);  // row 1 is the structure "room": a second dialog, left at once
  NewCP("40003")->IConfigProperty_SetValue();
  ScopedCatalogue inline_types{BundledCatalogueWith(kInlineTypes)};
  Then<frmCPModif4>(open_row_1);
  NewCP("mixed")->IConfigProperty_SetValue();
  EXPECT_EQ(user.host->captions, (Strings{"Numeric Value", "Numeric Value", "Structure Value",
                                          "Structure Value", "Structure Value"}));
  EXPECT_EQ(boxes.boxes, Boxes({{"Unknown or Not modificable Attribute", 48, "Edit Value"}}));
}

TEST_F(DialogsTest, ProgramIdDialogTakesSixteenHexDigits) {
  frmNewPID pid;
  pid.ProgramID("0123");
  Then<frmNewPID>([](frmNewPID& d) {
    const auto type = [&](const std::string& keys) {
      return TypeKeys(
          d.txtNid, keys, [&](int16_t& k) { d.txtNid_KeyPress(k); }, [&] { d.txtNid_Change(); });
    };
    d.txtNid.SelStart = 4;
    EXPECT_EQ(tuple(type("ag!bc"), d.txtNid.Text), tuple("ABC", "0123ABC"));
    d.txtNid = {" 0123ABC", true, true, 8, 0};  // pasted: the blank goes
    d.txtNid_Change();
    type("def012345");
    EXPECT_EQ(tuple(d.txtNid.Text, d.cmdOk.Enabled, d.ActiveControl),
              tuple("0123ABCDEF012345", true, "cmdOk"));
    type("\r\b");
    EXPECT_EQ(tuple(d.Loaded(), d.txtNid.Text, d.cmdOk.Enabled),
              tuple(true, "0123ABCDEF01234", false));
    type("\b\b\b\r");
    EXPECT_FALSE(d.Loaded());
  });
  pid.Show();
  EXPECT_EQ(pid.ProgramID(), "0123ABCDEF01");
  // Bug: Command1_Click leaves ProgramID() at the identifier of the earlier OK, not "".
  Then<frmNewPID>([](frmNewPID& d) { d.Command1_Click(); });
  pid.Show();
  EXPECT_EQ(pid.ProgramID(), "");

  // A starting identifier runs the change rule on load: blanks go, and at 16 digits OK is
  // enabled and has the focus.
  pid.ProgramID("  9FFFFF0A0B040401");
  Then<frmNewPID>([](frmNewPID& d) {
    EXPECT_EQ(tuple(d.txtNid.Text, d.cmdOk.Enabled, d.ActiveControl),
              tuple("9FFFFF0A0B040401", true, "cmdOk"));
    d.cmdOk_Click();
  });
  pid.Show();
  EXPECT_EQ(pid.ProgramID(), "9FFFFF0A0B040401");
}

}  // namespace
}  // namespace kolvane::test
