#include "host/Schedule.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <sstream>
#include <tuple>

#include <pugixml.hpp>

#include "conversion/SNVTDataConversion.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/HostServices.h"
#include "foundation/Numbers.h"
#include "interfaces/IUnitConverter.h"
#include "types/CSNVTType.h"

namespace kolvane::schedule {

namespace {

constexpr int kMinutesPerDay = 24 * 60;

std::optional<int> Whole(const std::string& text) {
  try {
    const double number = ParseNumber(text);
    if (number != static_cast<int>(number)) return std::nullopt;
    return static_cast<int>(number);
  } catch (const Error&) {
    return std::nullopt;
  }
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// "state" of "mon1_state".
std::string Suffix(const std::string& name) { return name.substr(name.rfind('_') + 1); }

// At least two digits: "07", "23", "123".
std::string Two(int number) {
  const std::string digits = std::to_string(number);
  return number >= 0 && number < 10 ? "0" + digits : digits;
}

// The states of an enumeration type as (number, name).
std::vector<std::pair<std::string, std::string>> StatesOf(const std::string& type) {
  std::vector<std::pair<std::string, std::string>> states;
  std::istringstream entries(CSNVTType::Shared(type)->ISNVType_EnumDesc());
  for (std::string entry; std::getline(entries, entry, ';');) {
    const size_t comma = entry.find(',');
    if (comma != std::string::npos) states.emplace_back(entry.substr(0, comma), entry.substr(comma + 1));
  }
  return states;
}

bool IsEnum(const std::string& type) { return CSNVTType::Shared(type)->Kind() == TypeKind::kEnum; }

// The value an unused point holds: the enumeration's state -1, else "Invalid".
std::string UnusedValue(const std::string& type) {
  if (IsEnum(type)) {
    for (const auto& [number, name] : StatesOf(type)) {
      if (number == "-1") return name;
    }
  }
  return "Invalid";
}

std::shared_ptr<IUnitConverter> Converter() {
  return CreateObjectAs<IUnitConverter>("UnitManager.Converter");
}

// A number text of any separator in invariant form.
std::string Invariant(std::string text) {
  std::replace(text.begin(), text.end(), ',', '.');
  return text;
}

}  // namespace

const std::vector<std::string>& WeekDays() {
  static const std::vector<std::string> days = {"mon", "tue", "wed", "thu", "fri", "sat", "sun"};
  return days;
}

std::string Schedule::TimeText(int minutes) { return Two(minutes / 60) + ":" + Two(minutes % 60); }

std::optional<int> Schedule::ParseTime(const std::string& text) {
  const size_t colon = text.find(':');
  if (colon == std::string::npos || colon == 0 || colon > 2 || text.size() - colon != 3) return std::nullopt;
  const auto hours = Whole(text.substr(0, colon));
  const auto minutes = Whole(text.substr(colon + 1));
  if (!hours || !minutes || *hours < 0 || *hours > 23 || *minutes < 0 || *minutes > 59) return std::nullopt;
  return *hours * 60 + *minutes;
}

std::optional<Date> Schedule::ParseDate(const std::string& text) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, '-');) parts.push_back(part);
  if (parts.size() != 2 && parts.size() != 3) return std::nullopt;
  std::vector<int> numbers;
  for (const std::string& part : parts) {
    const auto number = Whole(part);
    if (!number || part.empty() || part.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    numbers.push_back(*number);
  }
  Date date;
  if (numbers.size() == 3) {
    date.year = numbers[0];
    if (date.year < 1 || date.year > 9999) return std::nullopt;
  }
  date.month = numbers[numbers.size() - 2];
  date.day = numbers.back();
  static const int kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (date.month < 1 || date.month > 12 || date.day < 1 || date.day > kDays[date.month - 1]) return std::nullopt;
  const bool leap = date.year % 4 == 0 && (date.year % 100 != 0 || date.year % 400 == 0);
  if (date.year != 0 && date.month == 2 && date.day == 29 && !leap) return std::nullopt;
  return date;
}

std::string Schedule::DateText(const Date& date) {
  const std::string month_day = Two(date.month) + "-" + Two(date.day);
  return date.year == 0 ? month_day : std::to_string(date.year) + "-" + month_day;
}

Date Schedule::EndOf(const Holiday& holiday) {
  Date end = holiday.to;
  end.year = holiday.from.year;
  if (end.year != 0 && std::tie(end.month, end.day) < std::tie(holiday.from.month, holiday.from.day)) {
    ++end.year;
  }
  return end;
}

std::string Schedule::DayLabel(const Day& day) {
  static const std::map<std::string, std::string> names = {
      {"mon", "Monday"}, {"tue", "Tuesday"}, {"wed", "Wednesday"}, {"thu", "Thursday"},
      {"fri", "Friday"}, {"sat", "Saturday"}, {"sun", "Sunday"},  {"p", "Day"}};
  if (day.date) return DateText(*day.date);
  const auto found = names.find(day.key);
  return found == names.end() ? day.key : found->second;
}

Schedule Schedule::FromExchange(const std::string& text) {
  pugi::xml_document document;
  if (!document.load_string(text.c_str())) {
    RaiseError(ErrorNumber::kInvalidProcedureCall, "the schedule's exchange text is no XML");
  }
  const pugi::xml_node field = document.select_node("//FIELD").node();
  Schedule schedule;
  schedule.name_ = field.attribute("Name").value();
  std::string type = field.attribute("Type").value();
  if (type.rfind("SNVT_", 0) == 0) type.erase(0, 5);
  schedule.type_id_ = type;
  if (type == "40050" || type == "40051") {
    schedule.form_ = Form::kWeek;
  } else if (type == "40070") {
    schedule.form_ = Form::kDay;
  } else if (type == "40060") {
    schedule.form_ = Form::kHolidays;
  } else if (type == "40061") {
    schedule.form_ = Form::kExceptions;
  } else {
    RaiseError(ErrorNumber::kInvalidProcedureCall, "SNVT_" + type + " is no schedule type");
  }
  std::map<std::string, std::string> values;
  for (pugi::xml_node entry : field.child("FIELDS").children("FIELD")) {
    std::string entry_type = entry.attribute("Type").value();
    if (entry_type.rfind("SNVT_", 0) == 0) entry_type.erase(0, 5);
    schedule.fields_.emplace_back(entry.attribute("Name").value(), entry_type);
    values[entry.attribute("Name").value()] = entry.attribute("Value").value();
  }
  if (schedule.fields_.empty()) {
    RaiseError(ErrorNumber::kInvalidProcedureCall, "SNVT_" + type + " has no fields here");
  }
  // The value fields follow the time fields: their suffix and type.
  for (size_t i = 0; i + 1 < schedule.fields_.size(); ++i) {
    if (EndsWith(schedule.fields_[i].first, "_time")) {
      schedule.value_suffix_ = Suffix(schedule.fields_[i + 1].first);
      schedule.value_type_ = schedule.fields_[i + 1].second;
      break;
    }
  }
  const auto count = [&](const std::string& prefix, const std::string& end) {
    int n = 0;
    for (const auto& [name, field_type] : schedule.fields_) {
      n += name.rfind(prefix, 0) == 0 && EndsWith(name, end) ? 1 : 0;
    }
    return n;
  };
  const auto points_of = [&](const std::string& key) {
    std::vector<Point> points;
    for (int n = 1; n <= schedule.points_per_day_; ++n) {
      const std::string slot = key + std::to_string(n);
      const auto minutes = Whole(values[slot + "_time"]);
      if (!minutes || *minutes < 0 || *minutes >= kMinutesPerDay) continue;
      points.push_back({*minutes, values[slot + "_" + schedule.value_suffix_]});
    }
    std::stable_sort(points.begin(), points.end(),
                     [](const Point& a, const Point& b) { return a.minutes < b.minutes; });
    return points;
  };
  const auto date_of = [&](const std::string& year, const std::string& month,
                           const std::string& day) -> std::optional<Date> {
    const auto y = Whole(values[year]);
    const auto m = Whole(values[month]);
    const auto d = Whole(values[day]);
    if (!m || !d || *m < 1 || *m > 12 || *d < 1 || *d > 31) return std::nullopt;
    return Date{y.value_or(0), *m, *d};
  };
  switch (schedule.form_) {
    case Form::kWeek:
      schedule.points_per_day_ = count("mon", "_time");
      schedule.day_capacity_ = 7;
      for (const std::string& key : WeekDays()) schedule.days.push_back({key, std::nullopt, points_of(key)});
      break;
    case Form::kDay:
      schedule.points_per_day_ = count("p", "_time");
      schedule.day_capacity_ = 1;
      schedule.days.push_back({"p", std::nullopt, points_of("p")});
      break;
    case Form::kExceptions: {
      schedule.day_capacity_ = static_cast<size_t>(count("x", "_year"));
      schedule.points_per_day_ = count("x01", "_time");
      for (size_t i = 1; i <= schedule.day_capacity_; ++i) {
        const std::string key = "x" + Two(static_cast<int>(i));
        if (const auto date = date_of(key + "_year", key + "_month", key + "_day")) {
          schedule.days.push_back({key, date, points_of(key)});
        }
      }
      break;
    }
    case Form::kHolidays:
      schedule.holiday_capacity_ = static_cast<size_t>(count("h", "_year"));
      for (size_t i = 1; i <= schedule.holiday_capacity_; ++i) {
        const std::string key = "h" + Two(static_cast<int>(i));
        const auto from = date_of(key + "_year", key + "_from_month", key + "_from_day");
        const auto to = date_of(key + "_year", key + "_to_month", key + "_to_day");
        if (from && to) schedule.holidays.push_back({*from, *to});
      }
      break;
  }
  return schedule;
}

std::string Schedule::ToExchange() const {
  std::map<std::string, std::string> values;
  const std::string unused = value_type_.empty() ? "" : UnusedValue(value_type_);
  const auto put_points = [&](const std::string& key, const std::vector<Point>& points) {
    std::vector<Point> ordered = points;
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const Point& a, const Point& b) { return a.minutes < b.minutes; });
    for (int n = 1; n <= points_per_day_; ++n) {
      const std::string slot = key + std::to_string(n);
      const bool used = static_cast<size_t>(n) <= ordered.size();
      values[slot + "_time"] = used ? std::to_string(ordered[static_cast<size_t>(n - 1)].minutes) : "Invalid";
      values[slot + "_" + value_suffix_] = used ? ordered[static_cast<size_t>(n - 1)].value : unused;
    }
  };
  switch (form_) {
    case Form::kWeek:
    case Form::kDay:
      for (const Day& day : days) put_points(day.key, day.points);
      break;
    case Form::kExceptions:
      for (size_t i = 1; i <= day_capacity_; ++i) {
        const std::string key = "x" + Two(static_cast<int>(i));
        const Day* day = i <= days.size() ? &days[i - 1] : nullptr;
        values[key + "_year"] = day && day->date ? std::to_string(day->date->year) : "0";
        values[key + "_month"] = day && day->date ? std::to_string(day->date->month) : "Invalid";
        values[key + "_day"] = day && day->date ? std::to_string(day->date->day) : "Invalid";
        put_points(key, day ? day->points : std::vector<Point>{});
      }
      break;
    case Form::kHolidays:
      for (size_t i = 1; i <= holiday_capacity_; ++i) {
        const std::string key = "h" + Two(static_cast<int>(i));
        const Holiday* holiday = i <= holidays.size() ? &holidays[i - 1] : nullptr;
        values[key + "_year"] = holiday ? std::to_string(holiday->from.year) : "0";
        values[key + "_from_month"] = holiday ? std::to_string(holiday->from.month) : "Invalid";
        values[key + "_from_day"] = holiday ? std::to_string(holiday->from.day) : "Invalid";
        values[key + "_to_month"] = holiday ? std::to_string(holiday->to.month) : "Invalid";
        values[key + "_to_day"] = holiday ? std::to_string(holiday->to.day) : "Invalid";
      }
      break;
  }
  pugi::xml_document document;
  pugi::xml_node field = document.append_child("FIELD");
  field.append_attribute("Name") = name_.c_str();
  field.append_attribute("Type") = ("SNVT_" + type_id_).c_str();
  pugi::xml_node list = field.append_child("FIELDS");
  for (const auto& [name, type] : fields_) {
    pugi::xml_node entry = list.append_child("FIELD");
    entry.append_attribute("Name") = name.c_str();
    entry.append_attribute("Type") = ("SNVT_" + type).c_str();
    entry.append_attribute("Value") = values[name].c_str();
  }
  std::ostringstream text;
  document.first_child().print(text, "", pugi::format_raw);
  return text.str();
}

std::vector<std::string> Schedule::States() const {
  std::vector<std::string> names;
  if (value_type_.empty() || !IsEnum(value_type_)) return names;
  for (const auto& [number, name] : StatesOf(value_type_)) {
    if (number != "-1") names.push_back(name);
  }
  return names;
}

std::optional<std::string> Schedule::CheckValue(const std::string& typed, std::string& error) const {
  if (IsEnum(value_type_)) {
    for (const auto& [number, name] : StatesOf(value_type_)) {
      if (number != "-1" && (typed == name || typed == number)) return name;
    }
    std::string valid;
    for (const std::string& name : States()) valid += (valid.empty() ? "" : ", ") + name;
    error = "\"" + typed + "\" is no state; valid: " + valid;
    return std::nullopt;
  }
  const auto converter = Converter();
  const std::string unit = converter->DisplayUnits(value_type_);
  std::string number = typed;
  if (!unit.empty() && EndsWith(number, " " + unit)) number.resize(number.size() - unit.size() - 1);
  double shown = 0;
  try {
    shown = ParseEitherPoint(number);
  } catch (const Error&) {
    error = "\"" + typed + "\" is not a number";
    return std::nullopt;
  }
  const auto type = CSNVTType::Shared(value_type_);
  const auto limit = [&](const std::string& text) {
    return converter->ToDisplayUnits(value_type_, SNVTDataConversion::LocalizeNumber(text));
  };
  const auto with_unit = [&](const std::string& text) { return unit.empty() ? text : text + " " + unit; };
  if (!type->ISNVType_Min().empty() && shown < ParseEitherPoint(limit(type->ISNVType_Min()))) {
    error = "The value is less than " + with_unit(limit(type->ISNVType_Min()));
    return std::nullopt;
  }
  if (!type->ISNVType_Max().empty() && shown > ParseEitherPoint(limit(type->ISNVType_Max()))) {
    error = "The value is greater than " + with_unit(limit(type->ISNVType_Max()));
    return std::nullopt;
  }
  return Invariant(converter->FromDisplayUnits(value_type_, SNVTDataConversion::LocalizeNumber(Invariant(number))));
}

std::string Schedule::ValueText(const std::string& value) const {
  if (value_type_.empty()) return value;
  if (IsEnum(value_type_)) {
    const std::string name =
        SNVTDataConversion::EnumStateName(value, CSNVTType::Shared(value_type_)->ISNVType_EnumDesc());
    return name.empty() ? value : name;
  }
  const auto converter = Converter();
  const std::string unit = converter->DisplayUnits(value_type_);
  const std::string shown = converter->ToDisplayUnits(value_type_, SNVTDataConversion::LocalizeNumber(value));
  return unit.empty() ? shown : shown + " " + unit;
}

}  // namespace kolvane::schedule
