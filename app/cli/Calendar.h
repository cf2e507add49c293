#pragma once

#include <string>
#include <vector>

#include "host/Schedule.h"

namespace kolvane::cli {

// The holidays of an iCalendar file (RFC 5545), read with libical: each VEVENT's dates, from
// DTSTART to the day before an all-day DTEND (or to DTEND's day for a timed event, or as long
// as DURATION says); an event repeated yearly (RRULE FREQ=YEARLY) holds every year. Events that
// repeat otherwise, and events without a start, are left out with a note. False with error set when the
// file cannot be read or is no calendar.
bool ReadHolidays(const std::string& path, std::vector<schedule::Holiday>& holidays,
                  std::vector<std::string>& notes, std::string& error);

}  // namespace kolvane::cli
