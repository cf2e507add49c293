#include "host/frmSchedule.h"

#include <algorithm>
#include <sstream>

#include "foundation/HostServices.h"
#include "foundation/Text.h"

namespace kolvane {

namespace {

using schedule::Date;
using schedule::Day;
using schedule::Holiday;
using schedule::Point;
using Form_ = schedule::Schedule::Form;

constexpr char kTitle[] = "Schedule";

void Warn(const std::string& text) { MsgBox(text, vbExclamation, kTitle); }

std::string Trim(const std::string& text) { return std::string(TrimBlanks(text)); }

// The weekdays "tue,thu" or "mon-fri" name, as indices; false after a message.
bool DaysNamed(const std::string& text, std::vector<size_t>& indices) {
  const auto& week = schedule::WeekDays();
  const auto index_of = [&](std::string name) -> std::optional<size_t> {
    name = ToLower(TrimBlanks(name));
    for (size_t i = 0; i < week.size(); ++i) {
      if (name.size() >= 3 && name.compare(0, 3, week[i]) == 0) return i;
    }
    return std::nullopt;
  };
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, ',');) {
    if (Trim(part).empty()) continue;
    const size_t dash = part.find('-');
    const auto first = index_of(part.substr(0, dash));
    const auto last = dash == std::string::npos ? first : index_of(part.substr(dash + 1));
    if (!first || !last || *last < *first) {
      Warn("\"" + Trim(part) + "\" names no day: write days as mon, tue ... sun, or mon-fri");
      return false;
    }
    for (size_t i = *first; i <= *last; ++i) indices.push_back(i);
  }
  if (indices.empty()) Warn("Name the days to copy to: mon, tue ... sun, or mon-fri");
  return !indices.empty();
}

}  // namespace

frmSchedule::frmSchedule(schedule::Schedule schedule) : schedule_(std::move(schedule)) {}

std::vector<FormControl> frmSchedule::Controls() {
  std::vector<FormControl> controls;
  int16_t row = 0;
  if (schedule_.form() == Form_::kHolidays) {
    controls.push_back({"lvwHolidays", &lvwHolidays, row++, "", {}, {}, [this] { lvwHolidays_Click(); }});
    controls.push_back({"txtFrom", &txtFrom, row, "From:"});
    controls.push_back({"txtTo", &txtTo, row++, "To:"});
    controls.push_back({"cmdAddHoliday", &cmdAddHoliday, row, "", {}, {}, [this] { cmdAddHoliday_Click(); }});
    controls.push_back({"cmdDeleteHoliday", &cmdDeleteHoliday, row++, "", {}, {}, [this] { cmdDeleteHoliday_Click(); }});
  } else {
    controls.push_back({"cboDay", &cboDay, row++, "Day:", {}, {}, [this] { cboDay_Click(); }});
    if (schedule_.form() == Form_::kExceptions) {
      controls.push_back({"txtDate", &txtDate, row, "Date:"});
      controls.push_back({"cmdAddDay", &cmdAddDay, row, "", {}, {}, [this] { cmdAddDay_Click(); }});
      controls.push_back({"cmdDeleteDay", &cmdDeleteDay, row++, "", {}, {}, [this] { cmdDeleteDay_Click(); }});
    }
    controls.push_back({"lvwPoints", &lvwPoints, row++, "", {}, {}, [this] { lvwPoints_Click(); }});
    controls.push_back({"txtTime", &txtTime, row, "Time:"});
    if (Enumerated()) {
      controls.push_back({"cboValue", &cboValue, row++, "State:"});
    } else {
      controls.push_back({"txtValue", &txtValue, row++, "Value:"});
    }
    controls.push_back({"cmdAdd", &cmdAdd, row, "", {}, {}, [this] { cmdAdd_Click(); }});
    controls.push_back({"cmdChange", &cmdChange, row, "", {}, {}, [this] { cmdChange_Click(); }});
    controls.push_back({"cmdDelete", &cmdDelete, row++, "", {}, {}, [this] { cmdDelete_Click(); }});
    if (schedule_.form() == Form_::kWeek) {
      controls.push_back({"txtCopyTo", &txtCopyTo, row, "Copy to:"});
      controls.push_back({"cmdCopy", &cmdCopy, row++, "", {}, {}, [this] { cmdCopy_Click(); }});
    }
  }
  controls.push_back({"cmdOk", &cmdOk, row, "", {}, {}, [this] { cmdOk_Click(); }});
  controls.push_back({"cmdCancel", &cmdCancel, row, "", {}, {}, [this] { cmdCancel_Click(); }});
  return controls;
}

void frmSchedule::Form_Load() {
  lvwPoints.ColumnHeaders = {"Time", schedule_.States().empty() ? "Value" : "State"};
  lvwHolidays.ColumnHeaders = {"From", "To"};
  cboValue.List = schedule_.States();
  cboValue.ListIndex = cboValue.List.empty() ? -1 : 0;
  cboValue.Text = cboValue.List.empty() ? "" : cboValue.List.front();
  cboDay.ListIndex = schedule_.days.empty() ? -1 : 0;
  Refresh();
  ActiveControl = schedule_.form() == Form_::kHolidays ? "txtFrom" : "txtTime";
}

Day* frmSchedule::Current() {
  if (cboDay.ListIndex < 0 || static_cast<size_t>(cboDay.ListIndex) >= schedule_.days.size()) return nullptr;
  return &schedule_.days[static_cast<size_t>(cboDay.ListIndex)];
}

void frmSchedule::Refresh() {
  cboDay.List.clear();
  for (const Day& day : schedule_.days) cboDay.List.push_back(schedule::Schedule::DayLabel(day));
  if (cboDay.ListIndex >= static_cast<int32_t>(cboDay.List.size())) {
    cboDay.ListIndex = static_cast<int32_t>(cboDay.List.size()) - 1;
  }
  cboDay.Text = cboDay.ListIndex >= 0 ? cboDay.List[static_cast<size_t>(cboDay.ListIndex)] : "";
  lvwPoints.ListItems.clear();
  if (const Day* day = Current()) {
    for (const Point& point : day->points) {
      lvwPoints.ListItems.push_back({"", schedule::Schedule::TimeText(point.minutes),
                                     {schedule_.ValueText(point.value)}, ""});
    }
  }
  if (lvwPoints.SelectedItem >= static_cast<int32_t>(lvwPoints.ListItems.size())) lvwPoints.SelectedItem = -1;
  lvwHolidays.ListItems.clear();
  for (const Holiday& holiday : schedule_.holidays) {
    lvwHolidays.ListItems.push_back({"", schedule::Schedule::DateText(holiday.from),
                                     {schedule::Schedule::DateText(schedule::Schedule::EndOf(holiday))}, ""});
  }
  if (lvwHolidays.SelectedItem >= static_cast<int32_t>(lvwHolidays.ListItems.size())) {
    lvwHolidays.SelectedItem = -1;
  }
}

void frmSchedule::cboDay_Click() {
  lvwPoints.SelectedItem = -1;
  Refresh();
}

void frmSchedule::lvwPoints_Click() {
  const Day* day = Current();
  if (!day || lvwPoints.SelectedItem < 0) return;
  const Point& point = day->points.at(static_cast<size_t>(lvwPoints.SelectedItem));
  SetText(txtTime, schedule::Schedule::TimeText(point.minutes));
  const std::string shown = schedule_.ValueText(point.value);
  if (Enumerated()) {
    const auto found = std::find(cboValue.List.begin(), cboValue.List.end(), shown);
    cboValue.ListIndex = found == cboValue.List.end() ? -1 : static_cast<int32_t>(found - cboValue.List.begin());
    cboValue.Text = shown;
  } else {
    SetText(txtValue, shown);
  }
}

bool frmSchedule::TypedPoint(Point& point) {
  const auto minutes = schedule::Schedule::ParseTime(Trim(txtTime.Text));
  if (!minutes) {
    Warn("The time must be between 00:00 and 23:59");
    ActiveControl = "txtTime";
    return false;
  }
  std::string error;
  const std::string typed = Enumerated() ? cboValue.Text : Trim(txtValue.Text);
  const auto value = schedule_.CheckValue(typed, error);
  if (!value) {
    Warn(error);
    ActiveControl = Enumerated() ? "cboValue" : "txtValue";
    return false;
  }
  point = {*minutes, *value};
  return true;
}

void frmSchedule::cmdAdd_Click() {
  Day* day = Current();
  if (!day) {
    Warn("Add a day first");
    return;
  }
  Point point;
  if (!TypedPoint(point)) return;
  if (day->points.size() >= static_cast<size_t>(schedule_.points_per_day())) {
    Warn("A day holds at most " + std::to_string(schedule_.points_per_day()) + " switching points");
    return;
  }
  for (const Point& other : day->points) {
    if (other.minutes == point.minutes) {
      Warn("There is a switching point at " + schedule::Schedule::TimeText(point.minutes) + " already");
      return;
    }
  }
  // Points stay in time order.
  const auto at = std::find_if(day->points.begin(), day->points.end(),
                               [&](const Point& other) { return other.minutes > point.minutes; });
  lvwPoints.SelectedItem = static_cast<int32_t>(at - day->points.begin());
  day->points.insert(at, point);
  Refresh();
}

void frmSchedule::cmdChange_Click() {
  Day* day = Current();
  if (!day || lvwPoints.SelectedItem < 0) {
    Warn("Select a switching point first");
    return;
  }
  Point point;
  if (!TypedPoint(point)) return;
  const auto selected = static_cast<size_t>(lvwPoints.SelectedItem);
  for (size_t i = 0; i < day->points.size(); ++i) {
    if (i != selected && day->points[i].minutes == point.minutes) {
      Warn("There is a switching point at " + schedule::Schedule::TimeText(point.minutes) + " already");
      return;
    }
  }
  day->points.erase(day->points.begin() + static_cast<long>(selected));
  const auto at = std::find_if(day->points.begin(), day->points.end(),
                               [&](const Point& other) { return other.minutes > point.minutes; });
  lvwPoints.SelectedItem = static_cast<int32_t>(at - day->points.begin());
  day->points.insert(at, point);
  Refresh();
}

void frmSchedule::cmdDelete_Click() {
  Day* day = Current();
  if (!day || lvwPoints.SelectedItem < 0) {
    Warn("Select a switching point first");
    return;
  }
  day->points.erase(day->points.begin() + lvwPoints.SelectedItem);
  lvwPoints.SelectedItem = -1;
  Refresh();
}

void frmSchedule::cmdCopy_Click() {
  const Day* day = Current();
  std::vector<size_t> targets;
  if (!day || !DaysNamed(txtCopyTo.Text, targets)) return;
  const std::vector<Point> points = day->points;
  for (const size_t target : targets) schedule_.days.at(target).points = points;
  Refresh();
}

void frmSchedule::cmdAddDay_Click() {
  const auto date = schedule::Schedule::ParseDate(Trim(txtDate.Text));
  if (!date || date->year == 0) {
    Warn("Write the date as 2026-12-24");
    ActiveControl = "txtDate";
    return;
  }
  if (schedule_.days.size() >= schedule_.day_capacity()) {
    Warn("The schedule holds at most " + std::to_string(schedule_.day_capacity()) + " exception days");
    return;
  }
  for (const Day& day : schedule_.days) {
    if (day.date == date) {
      Warn(schedule::Schedule::DateText(*date) + " is an exception day already");
      return;
    }
  }
  // Days stay in date order; the keys follow when the schedule is written.
  const auto later = [&](const Day& day) {
    return std::tie(day.date->year, day.date->month, day.date->day) >
           std::tie(date->year, date->month, date->day);
  };
  const auto at = std::find_if(schedule_.days.begin(), schedule_.days.end(), later);
  cboDay.ListIndex = static_cast<int32_t>(at - schedule_.days.begin());
  schedule_.days.insert(at, Day{"", date, {}});
  Refresh();
}

void frmSchedule::cmdDeleteDay_Click() {
  if (!Current()) {
    Warn("Choose the day to delete");
    return;
  }
  schedule_.days.erase(schedule_.days.begin() + cboDay.ListIndex);
  Refresh();
}

void frmSchedule::lvwHolidays_Click() {
  if (lvwHolidays.SelectedItem < 0) return;
  const Holiday& holiday = schedule_.holidays.at(static_cast<size_t>(lvwHolidays.SelectedItem));
  SetText(txtFrom, schedule::Schedule::DateText(holiday.from));
  SetText(txtTo, schedule::Schedule::DateText(schedule::Schedule::EndOf(holiday)));
}

void frmSchedule::cmdAddHoliday_Click() {
  const auto from = schedule::Schedule::ParseDate(Trim(txtFrom.Text));
  auto to = Trim(txtTo.Text).empty() ? from : schedule::Schedule::ParseDate(Trim(txtTo.Text));
  if (!from || !to) {
    Warn("Write dates as 2026-12-24, or 12-24 for every year");
    ActiveControl = !from ? "txtFrom" : "txtTo";
    return;
  }
  if (to->year != 0 && to->year != from->year && to->year != from->year + 1) {
    Warn("A holiday ends in the year it starts in, or the next");
    return;
  }
  to->year = from->year;
  if (schedule_.holidays.size() >= schedule_.holiday_capacity()) {
    Warn("The calendar holds at most " + std::to_string(schedule_.holiday_capacity()) + " holidays");
    return;
  }
  schedule_.holidays.push_back({*from, *to});
  lvwHolidays.SelectedItem = static_cast<int32_t>(schedule_.holidays.size()) - 1;
  Refresh();
}

void frmSchedule::cmdDeleteHoliday_Click() {
  if (lvwHolidays.SelectedItem < 0) {
    Warn("Select a holiday first");
    return;
  }
  schedule_.holidays.erase(schedule_.holidays.begin() + lvwHolidays.SelectedItem);
  lvwHolidays.SelectedItem = -1;
  Refresh();
}

void frmSchedule::cmdOk_Click() {
  accepted_ = true;
  Unload();
}

void frmSchedule::cmdCancel_Click() { Unload(); }

}  // namespace kolvane
