// The schedule types, their exchange text both ways, and the built-in editor's form as a user
// drives it through a property's SetValue.

#include "host/Schedule.h"

#include "cp/CConfigProperties.h"
#include "cp/CConfigProperty.h"
#include "fields/CFields.h"
#include "host/frmSchedule.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

using schedule::Schedule;

class ScheduleTest : public CatalogueFixture {
 protected:
  std::shared_ptr<CConfigProperty> Add(const std::string& name, const std::string& type) {
    const pugi::xml_node root =
        Element("<" + name + "><SNVTType>" + type + "</SNVTType></" + name + ">");
    return NotNull(std::dynamic_pointer_cast<CConfigProperty>(
        properties.IConfigProperties_AddCP(root.name(), nullptr, root)));
  }
  // The value of a field of a property.
  static std::string Field(const CConfigProperty& property, const std::string& name) {
    return NotNull(FieldAt(property.IConfigProperty_Fields(), name), name)->IField_Value();
  }
  // Runs step as the user of the next form shown.
  void AsUser(std::function<void(frmSchedule&)> step) {
    forms.host->steps.push_back([step](Form& form) { step(dynamic_cast<frmSchedule&>(form)); });
  }

  CConfigProperties properties;
  ScopedFormHost forms;
};

// Every schedule type is a flat structure of the catalogue whose fields fill its length, and its
// exchange text comes back with every value: read into a schedule and written again, then
// applied to the property, it gives the same bytes.
TEST_F(ScheduleTest, EveryScheduleTypeTravelsThroughItsExchangeText) {
  const std::pair<const char*, int> types[] = {
      {"40050", 126}, {"40051", 168}, {"40060", 120}, {"40061", 220}, {"40070", 18}};
  for (const auto& [type, length] : types) {
    const auto property = Add("nci" + std::string(type), type);
    ASSERT_NE(property->IConfigProperty_Fields(), nullptr) << type;
    // Unused entries hold invalid values: the bytes are whole.
    std::string raw = property->IConfigProperty_RawValue();
    EXPECT_EQ(raw.size(), 2u * static_cast<size_t>(length)) << type;
    Schedule schedule = Schedule::FromExchange(property->ScheduleExchangeText());
    EXPECT_TRUE(schedule.holidays.empty()) << type;
    switch (schedule.form()) {
      case Schedule::Form::kWeek:
        ASSERT_EQ(schedule.days.size(), 7u);
        schedule.days[0].points = {{420, type == std::string("40050") ? "OC_OCCUPIED" : "21.5"}};
        schedule.days[6].points = {{1439, type == std::string("40050") ? "OC_UNOCCUPIED" : "16"}};
        break;
      case Schedule::Form::kDay:
        ASSERT_EQ(schedule.days.size(), 1u);
        schedule.days[0].points = {{1080, "OC_STANDBY"}, {360, "OC_OCCUPIED"}};
        break;
      case Schedule::Form::kHolidays:
        EXPECT_EQ(schedule.holiday_capacity(), 20u);
        schedule.holidays = {{{0, 12, 24}, {0, 12, 26}}, {{2026, 4, 3}, {2026, 4, 6}}};
        break;
      case Schedule::Form::kExceptions:
        EXPECT_EQ(schedule.day_capacity(), 10u);
        schedule.days = {{"", schedule::Date{2026, 12, 31}, {{480, "OC_OCCUPIED"}, {720, "OC_UNOCCUPIED"}}}};
        break;
    }
    property->ApplyScheduleExchangeText(schedule.ToExchange());
    const Schedule back = Schedule::FromExchange(property->ScheduleExchangeText());
    ASSERT_EQ(back.days.size(), schedule.days.size()) << type;
    for (size_t i = 0; i < back.days.size(); ++i) {
      auto expected = schedule.days[i].points;
      std::sort(expected.begin(), expected.end(),
                [](const auto& a, const auto& b) { return a.minutes < b.minutes; });
      EXPECT_EQ(back.days[i].points, expected) << type << " day " << i;
      EXPECT_EQ(back.days[i].date, schedule.days[i].date) << type;
    }
    EXPECT_EQ(back.holidays, schedule.holidays) << type;
    raw = property->IConfigProperty_RawValue();
    EXPECT_EQ(raw.size(), 2u * static_cast<size_t>(length)) << type;
  }
  // The bytes of a point: 07:00 is 01A4, an unused time FFFF.
  const auto week = Add("nciWeek", "40050");
  Schedule schedule = Schedule::FromExchange(week->ScheduleExchangeText());
  schedule.days[0].points = {{420, "OC_OCCUPIED"}};
  week->ApplyScheduleExchangeText(schedule.ToExchange());
  EXPECT_EQ(week->IConfigProperty_RawValue().substr(0, 12), "01A400FFFFFF");
  EXPECT_EQ(Field(*week, "mon1_time"), "420");
  EXPECT_EQ(Field(*week, "mon2_state"), "OC_NUL");
}

// SetValue on a schedule property opens the built-in editor: the user types switching points,
// is refused a bad time and a setpoint beyond the type's limits, copies Monday to the working
// week; OK writes them into the property, Cancel leaves it as it was.
TEST_F(ScheduleTest, TheUserEditsAWeekThroughTheBuiltInEditor) {
  const auto property = Add("nciSetpoints", "40051");
  AsUser([](frmSchedule& form) {
    EXPECT_EQ(form.cboDay.List.front(), "Monday");
    form.txtTime.Text = "24:00";
    form.txtValue.Text = "21";
    form.cmdAdd_Click();  // refused
    form.txtTime.Text = "07:00";
    form.txtValue.Text = "400";
    form.cmdAdd_Click();  // refused
    form.txtValue.Text = "21.5";
    form.cmdAdd_Click();
    form.txtTime.Text = "18:00";
    form.txtValue.Text = "17";
    form.cmdAdd_Click();
    form.txtTime.Text = "06:30";
    form.txtValue.Text = "19";
    form.cmdAdd_Click();
    ASSERT_EQ(form.lvwPoints.ListItems.size(), 3u);
    EXPECT_EQ(form.lvwPoints.ListItems[0].Text, "06:30");  // kept in time order
    EXPECT_EQ(form.lvwPoints.ListItems[1].SubItems[0], "21.5 °C");
    form.lvwPoints.SelectedItem = 0;
    form.lvwPoints_Click();
    EXPECT_EQ(form.txtTime.Text, "06:30");
    form.cmdDelete_Click();
    form.txtCopyTo.Text = "sunday";
    form.cmdCopy_Click();  // a day by its full name
    form.txtCopyTo.Text = "tue-fri";
    form.cmdCopy_Click();
    form.cboDay.ListIndex = 4;
    form.cboDay_Click();
    EXPECT_EQ(form.lvwPoints.ListItems.size(), 2u);
    form.cmdOk_Click();
  });
  property->IConfigProperty_SetValue();
  EXPECT_EQ(boxes.boxes,
            (std::vector<MessageBoxRecorder::Box>{
                {"The time must be between 00:00 and 23:59", vbExclamation, "Schedule"},
                {"The value is greater than 327.66 °C", vbExclamation, "Schedule"}}));
  EXPECT_EQ(Field(*property, "mon1_time"), "420");
  EXPECT_EQ(Field(*property, "mon1_setpt"), "21.5");
  EXPECT_EQ(Field(*property, "fri2_time"), "1080");
  EXPECT_EQ(Field(*property, "sun2_setpt"), "17");
  EXPECT_EQ(Field(*property, "sat1_time"), "Invalid");

  // Cancel leaves every value.
  const std::string before = property->IConfigProperty_RawValue();
  AsUser([](frmSchedule& form) {
    form.cmdDelete_Click();  // nothing selected: refused
    form.lvwPoints.SelectedItem = 0;
    form.cmdDelete_Click();
    form.cmdCancel_Click();
  });
  property->IConfigProperty_SetValue();
  EXPECT_EQ(property->IConfigProperty_RawValue(), before);
}

// Holidays and exception days take dates; a bad date, an unknown state and a full day are
// refused with a message.
TEST_F(ScheduleTest, HolidaysAndExceptionDaysTakeDates) {
  const auto calendar = Add("nciHolidays", "40060");
  AsUser([](frmSchedule& form) {
    form.txtFrom.Text = "13-01";
    form.cmdAddHoliday_Click();  // refused
    form.txtFrom.Text = "12-24";
    form.txtTo.Text = "12-26";
    form.cmdAddHoliday_Click();
    form.txtFrom.Text = "2026-04-03";
    form.txtTo.Text = "2026-04-06";
    form.cmdAddHoliday_Click();
    EXPECT_EQ(form.lvwHolidays.ListItems.size(), 2u);
    form.cmdOk_Click();
  });
  calendar->IConfigProperty_SetValue();
  EXPECT_EQ(Field(*calendar, "h01_from_month") + "-" + Field(*calendar, "h01_to_day"), "12-26");
  EXPECT_EQ(Field(*calendar, "h02_year"), "2026");
  EXPECT_EQ(Field(*calendar, "h03_from_month"), "Invalid");

  const auto exceptions = Add("nciExceptions", "40061");
  AsUser([](frmSchedule& form) {
    form.txtDate.Text = "2026-02-30";
    form.cmdAddDay_Click();  // refused
    form.txtDate.Text = "2026-12-31";
    form.cmdAddDay_Click();
    form.txtTime.Text = "08:00";
    form.cboValue.Text = "OC_PARTY";
    form.cmdAdd_Click();  // refused
    form.cboValue.Text = "OC_STANDBY";
    form.cmdAdd_Click();
    form.cmdOk_Click();
  });
  exceptions->IConfigProperty_SetValue();
  EXPECT_EQ(Field(*exceptions, "x01_year") + "-" + Field(*exceptions, "x01_month") + "-" +
                Field(*exceptions, "x01_day"),
            "2026-12-31");
  EXPECT_EQ(Field(*exceptions, "x011_state"), "OC_STANDBY");
  ASSERT_EQ(boxes.boxes.size(), 3u);
  EXPECT_EQ(std::get<0>(boxes.boxes[0]), "Write dates as 2026-12-24, or 12-24 for every year");
  EXPECT_EQ(std::get<0>(boxes.boxes[1]), "Write the date as 2026-12-24");
  EXPECT_EQ(std::get<0>(boxes.boxes[2]).rfind("\"OC_PARTY\" is no state; valid: OC_OCCUPIED", 0), 0u);

  // Without the component the ordinary dialog follows the message.
  boxes.boxes.clear();
  const ScopedComponent none("Brask.Ondo.UI.SchedulerEditor.SchedulerFace", {});
  exceptions->IConfigProperty_SetValue();
  EXPECT_EQ(std::get<0>(boxes.boxes.at(0)), "Install SchedulerEditor.dll to edit Schedulers");
  EXPECT_EQ(forms.host->captions.back(), "Structure Value");
}

}  // namespace
}  // namespace kolvane::test
