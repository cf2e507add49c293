#include "Calendar.h"
#include "Commands.h"
#include "Documents.h"
#include "Items.h"
#include "Json.h"
#include "Table.h"
#include "cp/CConfigProperty.h"
#include "foundation/Error.h"
#include "host/Schedule.h"

namespace kolvane::cli {

namespace {

using schedule::Schedule;

void PrintTable(const Schedule& program, std::ostream& out) {
  if (program.form() == Schedule::Form::kHolidays) {
    Table table({"From", "To"});
    for (const auto& holiday : program.holidays) {
      table.AddRow({Schedule::DateText(holiday.from), Schedule::DateText(Schedule::EndOf(holiday))});
    }
    table.Print(out);
    out << program.holidays.size() << " of " << program.holiday_capacity() << " holidays\n";
    return;
  }
  Table table({"Day", "Time", "Value"});
  for (const auto& day : program.days) {
    if (day.points.empty()) table.AddRow({Schedule::DayLabel(day), "", "(no switching point)"});
    for (const auto& point : day.points) {
      table.AddRow({Schedule::DayLabel(day), Schedule::TimeText(point.minutes),
                    program.ValueText(point.value)});
    }
  }
  table.Print(out);
}

void WriteJson(const std::string& item, const std::string& type, const Schedule& program,
               std::ostream& out) {
  JsonWriter json(out);
  json.BeginObject().Member("path", item).Member("type", type).Key("days").BeginArray();
  for (const auto& day : program.days) {
    json.BeginObject().Member("day", Schedule::DayLabel(day)).Key("points").BeginArray();
    for (const auto& point : day.points) {
      json.BeginObject().Member("time", Schedule::TimeText(point.minutes));
      json.Member("value", program.ValueText(point.value)).EndObject();
    }
    json.EndArray().EndObject();
  }
  json.EndArray().Key("holidays").BeginArray();
  for (const auto& holiday : program.holidays) {
    json.BeginObject().Member("from", Schedule::DateText(holiday.from));
    json.Member("to", Schedule::DateText(Schedule::EndOf(holiday))).EndObject();
  }
  json.EndArray().EndObject();
}

}  // namespace

int RunSchedule(const ScheduleOptions& options, std::ostream& out, std::ostream& err) {
  Session session(options.common, err);
  std::shared_ptr<IProfile> profile;
  const ItemRef item = session.LoadItem(options.profile, options.item, profile);
  if (!item.object) return 1;
  std::string error;
  const auto property = std::dynamic_pointer_cast<CConfigProperty>(item.object);
  const std::string type = app::TypeIdOf(item);
  Schedule program;
  try {
    if (!property) RaiseError(ErrorNumber::kInvalidProcedureCall, "only a property holds a schedule");
    program = Schedule::FromExchange(property->ScheduleExchangeText());
  } catch (const Error& refused) {
    err << "kolvane: error: " << item.path << ": " << refused.detail() << '\n';
    return 1;
  }
  if (!options.holidays_file.empty()) {
    if (program.form() != Schedule::Form::kHolidays) {
      err << "kolvane: error: " << item.path << ": SNVT_" << type
          << " holds no holidays (a holiday calendar is SNVT_40060)\n";
      return 1;
    }
    std::vector<schedule::Holiday> holidays;
    std::vector<std::string> notes;
    if (!ReadHolidays(options.holidays_file, holidays, notes, error)) {
      err << "kolvane: error: " << error << '\n';
      return 1;
    }
    for (const std::string& note : notes) err << "kolvane: note: " << options.holidays_file << ": " << note << '\n';
    if (program.holidays.size() + holidays.size() > program.holiday_capacity()) {
      err << "kolvane: error: " << options.holidays_file << ": " << holidays.size()
          << " holidays do not fit: " << item.path << " holds "
          << program.holiday_capacity() - program.holidays.size() << " more\n";
      return 1;
    }
    for (const auto& holiday : holidays) {
      if (holiday.from.year > 9999) {
        err << "kolvane: error: " << options.holidays_file << ": year " << holiday.from.year
            << " is beyond 9999\n";
        return 1;
      }
      program.holidays.push_back(holiday);
    }
    property->ApplyScheduleExchangeText(program.ToExchange());
    program = Schedule::FromExchange(property->ScheduleExchangeText());
  }
  if (!options.output.empty()) {
    if (!WriteFileAtomically(options.output, app::ValuesDocumentText(*profile, false), out, err)) return 1;
  }
  if (options.common.json) {
    WriteJson(item.path, type, program, out);
  } else {
    out << item.path << " (SNVT_" << type << ")\n";
    PrintTable(program, out);
  }
  return 0;
}

}  // namespace kolvane::cli
