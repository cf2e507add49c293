#include "Calendar.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include <libical/ical.h>

#include "Files.h"

namespace kolvane::cli {

namespace {

struct ComponentFree {
  void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};

schedule::Date DateOf(const icaltimetype& time) { return {time.year, time.month, time.day}; }

}  // namespace

bool ReadHolidays(const std::string& path, std::vector<schedule::Holiday>& holidays,
                  std::vector<std::string>& notes, std::string& error) {
  std::string text;
  if (!app::ReadTextFile(path, text, error)) return false;
  const std::unique_ptr<icalcomponent, ComponentFree> calendar(icalparser_parse_string(text.c_str()));
  if (!calendar || icalcomponent_isa(calendar.get()) != ICAL_VCALENDAR_COMPONENT) {
    error = path + ": not an iCalendar file (no VCALENDAR)";
    return false;
  }
  for (icalcomponent* event = icalcomponent_get_first_component(calendar.get(), ICAL_VEVENT_COMPONENT);
       event; event = icalcomponent_get_next_component(calendar.get(), ICAL_VEVENT_COMPONENT)) {
    const char* summary = icalcomponent_get_summary(event);
    const std::string name = summary ? summary : "an event";
    const icaltimetype start = icalcomponent_get_dtstart(event);
    if (icaltime_is_null_time(start)) {
      notes.push_back(name + ": no start date; left out");
      continue;
    }
    icaltimetype end = icalcomponent_get_dtend(event);  // libical adds DURATION when given
    if (icaltime_is_null_time(end)) end = start;
    // An all-day DTEND is the day after the last.
    if (icaltime_is_date(end) && icaltime_compare_date_only(end, start) > 0) {
      icaltime_adjust(&end, -1, 0, 0, 0);
    }
    schedule::Holiday holiday{DateOf(start), DateOf(end)};
    if (icalproperty* rule = icalcomponent_get_first_property(event, ICAL_RRULE_PROPERTY)) {
      const icalrecurrencetype recurrence = icalproperty_get_rrule(rule);
      if (recurrence.freq != ICAL_YEARLY_RECURRENCE || recurrence.interval > 1) {
        notes.push_back(name + ": repeats other than every year; left out");
        continue;
      }
      holiday.from.year = 0;
    }
    holiday.to.year = holiday.from.year;
    holidays.push_back(holiday);
  }
  return true;
}

}  // namespace kolvane::cli
