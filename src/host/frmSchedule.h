#pragma once

#include <string>
#include <vector>

#include "dialogs/Form.h"
#include "host/Schedule.h"

namespace kolvane {

// The schedule editor's form: pick a day, list its switching points, add, change and delete
// them, copy a day to other days; holiday ranges and exception days with their dates. Every
// typed value is checked as the value dialogs check them. OK keeps the edits, Cancel drops them.
class KOLVANE_API frmSchedule final : public Form {
 public:
  explicit frmSchedule(schedule::Schedule schedule);

  std::string Caption() const override { return "Schedule"; }
  std::vector<FormControl> Controls() override;
  void Form_Load() override;

  void cboDay_Click();
  void lvwPoints_Click();
  void cmdAdd_Click();
  void cmdChange_Click();
  void cmdDelete_Click();
  void cmdCopy_Click();
  void cmdAddDay_Click();
  void cmdDeleteDay_Click();
  void lvwHolidays_Click();
  void cmdAddHoliday_Click();
  void cmdDeleteHoliday_Click();
  void cmdOk_Click();
  void cmdCancel_Click();

  // The schedule as edited; Accepted() tells whether OK closed the form.
  const schedule::Schedule& Schedule() const { return schedule_; }
  bool Accepted() const { return accepted_; }
  // The day the list shows (an index into Schedule().days), -1 for none.
  int CurrentDay() const { return cboDay.ListIndex; }

  ComboBox cboDay;
  ListView lvwPoints;
  TextBox txtTime;
  TextBox txtValue;
  ComboBox cboValue;
  CommandButton cmdAdd{"Add"};
  CommandButton cmdChange{"Change"};
  CommandButton cmdDelete{"Delete"};
  TextBox txtCopyTo;
  CommandButton cmdCopy{"Copy day"};
  TextBox txtDate;
  CommandButton cmdAddDay{"Add day"};
  CommandButton cmdDeleteDay{"Delete day"};
  ListView lvwHolidays;
  TextBox txtFrom;
  TextBox txtTo;
  CommandButton cmdAddHoliday{"Add holiday"};
  CommandButton cmdDeleteHoliday{"Delete holiday"};
  CommandButton cmdOk{"OK"};
  CommandButton cmdCancel{"Cancel"};

 private:
  // The point typed in the time and value boxes, checked; false after a message.
  bool TypedPoint(schedule::Point& point);
  void Refresh();
  schedule::Day* Current();
  bool Enumerated() const { return !schedule_.States().empty(); }

  schedule::Schedule schedule_;
  bool accepted_ = false;
};

}  // namespace kolvane
