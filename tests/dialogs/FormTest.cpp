#include "dialogs/Form.h"

#include "dialogs/ValueDialog.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

// Counts its events; Form_Unload cancels while cancel is set.
class CountingForm final : public Form {
 public:
  std::string Caption() const override { return "Counting"; }
  std::vector<FormControl> Controls() override { return {}; }
  void Form_Load() override { ++loads; }
  void Form_Unload(int16_t& Cancel) override {
    ++unloads;
    Cancel = cancel ? 1 : 0;
  }
  int loads = 0, unloads = 0;
  bool cancel = false;
};

TEST(FormTest, ShowLoadsRunsTheHostAndUnloadsWhatIsLeftOpen) {
  {
    const auto previous = SetFormHost(nullptr);  // the headless host
    CountingForm form;
    form.Show();
    EXPECT_EQ(std::pair(form.loads, form.unloads), std::pair(1, 1));
    EXPECT_FALSE(form.Loaded());
    SetFormHost(previous);
  }
  ScopedFormHost user;
  CountingForm form;
  bool loaded_in_step = false;
  user.host->steps.push_back([&](Form& shown) {
    loaded_in_step = shown.Loaded();
    shown.Unload();
  });
  user.host->steps.push_back([](Form&) {});
  form.Show();  // closed by the user: unloaded once
  EXPECT_TRUE(loaded_in_step);
  EXPECT_EQ(form.unloads, 1);
  form.Show();  // left open: closed by Show
  EXPECT_EQ(form.unloads, 2);
  frmCPModif3 enumeration;
  enumeration.Show();  // no step left
  EXPECT_FALSE(enumeration.Loaded());
  EXPECT_EQ(user.host->captions,
            (std::vector<std::string>{"Counting", "Counting", "Enumeration Value"}));

  form.cancel = true;  // a cancelled unload keeps the form loaded
  form.Show();
  EXPECT_TRUE(form.Loaded());
  form.cancel = false;
  form.Unload();
  EXPECT_FALSE(form.Loaded());
}

class ValueDialogTest : public CatalogueFixture {
 protected:
  ScopedFormHost user;
  std::shared_ptr<FakeOwner> owner = std::make_shared<FakeOwner>(3);
  std::shared_ptr<CFields> fields = BuildFields(owner, "switch", "{ 50  TOGGLE_ON }");
  std::shared_ptr<IField> level = fields->IFields_Item("value");
  std::shared_ptr<IField> state = fields->IFields_Item("state");
};

TEST_F(ValueDialogTest, DataPointTakesOnlyWhatADialogEdits) {
  for (const auto& item : std::vector<std::shared_ptr<IUnknown>>{owner, fields, nullptr}) {
    EXPECT_EQ(ErrorNumberOf([&] { frmCPModif1().DataPoint(item); }), 13);
    EXPECT_EQ(ErrorNumberOf([&] { frmCPModif4().DataPoint(item); }), 13);
  }
  EXPECT_EQ(ErrorNumberOf([&] { frmCPModif1().DataPoint(level); }), 0);
  EXPECT_EQ(ErrorNumberOf([&] { frmCPModif4().DataPoint(level); }), 0);

  internal::DataPoint data_point(level);
  EXPECT_EQ(
      data_point.Name() + "|" + data_point.Value() + "|" + data_point.SNVTType()->ISNVType_ID(),
      "value|50|lev_cont");
  EXPECT_EQ(data_point.fields(), nullptr);
}

TEST_F(ValueDialogTest, LeavingADialogOpenedByTheStructureDialogRestoresTheValues) {
  auto dialog = std::make_shared<frmCPModif1>();
  dialog->DataPoint(level);
  dialog->DataPoint(state);
  dialog->CalledFramModif4(true);
  user.host->steps.push_back([&](Form&) {
    level->IField_Value("75");
    state->IField_Value("TOGGLE_OFF");
  });
  dialog->Show();
  EXPECT_EQ(level->IField_Value() + "|" + state->IField_Value(), "50|TOGGLE_ON");
  EXPECT_FALSE(dialog->CalledFramModif4());

  // Only once: the next run keeps what the user did.
  user.host->steps.push_back([&](Form&) { level->IField_Value("75"); });
  dialog->Show();
  EXPECT_EQ(level->IField_Value(), "75");
}

}  // namespace
}  // namespace kolvane::test
