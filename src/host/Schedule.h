#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/Export.h"

// A schedule property's value as a person edits it: the switching points of each day, holiday
// ranges and exception days, read from and written to the schedule editor's exchange text. The
// schedule types (40050 weekly states, 40051 weekly setpoints, 40060 holidays, 40061 exception
// days, 40070 one day) are flat structures of the catalogue, so every value is a first-level
// field of the exchange text.
namespace kolvane::schedule {

struct Point {
  int minutes = 0;    // after midnight, 0 to 1439
  std::string value;  // a state's name, or a number in the catalogue's unit
  bool operator==(const Point&) const = default;
};

struct Date {
  int year = 0;  // 0: every year
  int month = 1;
  int day = 1;
  bool operator==(const Date&) const = default;
};

// The switching points of one day: a weekday ("mon"), the one day ("p") or an exception day.
struct Day {
  std::string key;
  std::optional<Date> date;  // exception days only
  std::vector<Point> points;  // in time order
};

struct Holiday {
  Date from;
  Date to;  // in from's year (the year after when it comes before from)
  bool operator==(const Holiday&) const = default;
};

class KOLVANE_API Schedule {
 public:
  enum class Form { kWeek, kDay, kHolidays, kExceptions };

  // The schedule of an exchange text ("FIELD" of Type "SNVT_40050" ... with its "FIELDS");
  // error 5 naming why when the text is none or its type no schedule type.
  static Schedule FromExchange(const std::string& text);
  // The exchange text with every field's value: points in time order, unused entries invalid.
  std::string ToExchange() const;

  Form form() const { return form_; }
  // The catalogue type of the points' values: "occupancy", "temp_p"; empty for holidays.
  const std::string& value_type() const { return value_type_; }
  int points_per_day() const { return points_per_day_; }
  size_t day_capacity() const { return day_capacity_; }
  size_t holiday_capacity() const { return holiday_capacity_; }

  std::vector<Day> days;  // the week's seven, the one day, or the exception days used
  std::vector<Holiday> holidays;

  // "07:30" for 450.
  static std::string TimeText(int minutes);
  // 450 for "07:30" or "7:30"; nothing unless 00:00 to 23:59.
  static std::optional<int> ParseTime(const std::string& text);
  // A date "2026-12-24", or "12-24" for every year; nothing unless a real date.
  static std::optional<Date> ParseDate(const std::string& text);
  static std::string DateText(const Date& date);
  // The last day of a holiday with its real year: the year after from's when it comes before.
  static Date EndOf(const Holiday& holiday);
  // "Monday", "Dec 24" for an exception day, "Day" for the one day.
  static std::string DayLabel(const Day& day);
  // A value typed for a point, checked as the value dialogs check it: a state of the value type
  // (by name or number), or a number in display units within the type's limits. The value as it
  // is stored, or nothing with error set to the message to show.
  std::optional<std::string> CheckValue(const std::string& typed, std::string& error) const;
  // The value of a point as it is shown: a state's name, a number in display units with its unit.
  std::string ValueText(const std::string& value) const;
  // The states a point's value may take (empty for numbers).
  std::vector<std::string> States() const;

 private:
  Form form_ = Form::kWeek;
  std::string type_id_;
  std::string name_;
  std::string value_type_;
  std::string value_suffix_;  // the value fields' name after the point: "state", "setpt"
  int points_per_day_ = 0;
  size_t day_capacity_ = 0;
  size_t holiday_capacity_ = 0;
  std::vector<std::pair<std::string, std::string>> fields_;  // name and type, exchange order
};

// The weekday keys in order: "mon" ... "sun".
KOLVANE_API const std::vector<std::string>& WeekDays();

}  // namespace kolvane::schedule
