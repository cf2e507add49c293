// kolvane: inspect, check and edit LonWorks device profiles from the shell.

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "Json.h"
#include "Table.h"

namespace {

using kolvane::cli::CommonOptions;

constexpr int kUsageError = 2;

void AddCommonOptions(CLI::App* command, CommonOptions& common, bool with_nvo) {
  command->add_option("--catalogue", common.catalogue,
                      "Type catalogue (snvts.xml); the bundled one by default");
  if (with_nvo) {
    command->add_option("--nvo,--table", common.nvo,
                        "NVO compatibility table (nvotable.xml); the bundled one by default");
  }
  command->add_option("--units", common.units, "Display units: si (the catalogue's, default) or us")
      ->check(CLI::IsMember({"si", "us"}));
  command->add_option("--units-table", common.units_table,
                      "Unit table for --units us (units.xml: per type its US unit, FACTOR and "
                      "OFFSET); the bundled one by default");
  command->add_flag("--json", common.json, "Machine-readable output");
  command->add_flag("-q,--quiet", common.quiet, "No warnings or progress on standard error");
}

void AddProfile(CLI::App* command, std::string& profile) {
  command->add_option("PROFILE", profile, "Profile document; the bundled example by default");
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Inspect, check and edit LonWorks device profiles.", "kolvane"};
  app.set_version_flag("--version", KOLVANE_VERSION);
  app.require_subcommand(1);
  app.footer(
      "Examples:\n"
      "  kolvane show                           every item of the bundled example\n"
      "  kolvane get profile.xml nciSetpoint    one value\n"
      "  kolvane save profile.xml -o values.xml --set nciSetpoint=22.5\n"
      "  kolvane check profile.xml              findings before commissioning\n"
      "  kolvane export profile.xml > all.csv   every item and field, one row each\n"
      "  kolvane diff old.xml new.xml           what changed between two devices\n"
      "  kolvane raw temp_p 21.5                0866\n"
      "  kolvane xif import device.xif -o device.xml   a real device as a profile");

  kolvane::cli::ShowOptions show;
  CLI::App* show_command = app.add_subcommand(
      "show",
      "Every network variable and configuration property: type, value, default, limits, "
      "raw bytes, fields; then the counts. On a terminal the table fits its width.");
  AddProfile(show_command, show.profile);
  AddCommonOptions(show_command, show.common, true);

  kolvane::cli::GetOptions get;
  CLI::App* get_command = app.add_subcommand("get", "The value of an item or field.");
  std::vector<std::string> get_arguments;
  get_command
      ->add_option("[PROFILE] ITEM", get_arguments,
                   "Profile document (the bundled example when left out), then the item, or "
                   "item.field[.field...]")
      ->required()
      ->expected(1, 2);
  AddCommonOptions(get_command, get.common, true);

  kolvane::cli::SaveOptions save;
  CLI::App* save_command = app.add_subcommand(
      "save", "Write the values document (stored or interoperability form), after setting values.");
  AddProfile(save_command, save.profile);
  save_command->add_option("-o,--output", save.output, "Values document to write")->required();
  // One ITEM=VALUE per --set, so that a profile after it stays the profile.
  save_command->add_option("--set", save.assignments, "ITEM[.FIELD...]=VALUE, applied in order")
      ->allow_extra_args(false)
      ->check([](const std::string& assignment) {
        return assignment.find('=') == std::string::npos ? "expected ITEM=VALUE, got " + assignment
                                                          : std::string();
      });
  save_command->add_option("--set-from", save.values_file,
                           "CSV of path,value rows (the export format's columns will do) or "
                           "an export --format json document, all checked before anything is "
                           "written");
  save_command->add_option("--values-from", save.values_document,
                           "A values document (either form) whose values are set first, matched "
                           "by point key, then by name");
  save_command->add_flag("--interop", save.interoperability, "Interoperability form");
  AddCommonOptions(save_command, save.common, true);

  kolvane::cli::ExportOptions exported;
  CLI::App* export_command = app.add_subcommand(
      "export", "One row per item and per field: path, kind, type, direction, value, default, "
                "minimum, maximum, unit, raw bytes; CSV (RFC 4180) or JSON.");
  AddProfile(export_command, exported.profile);
  export_command->add_option("--format", exported.format, "csv (default) or json")
      ->check(CLI::IsMember({"csv", "json"}));
  AddCommonOptions(export_command, exported.common, true);

  kolvane::cli::DiffOptions diff;
  CLI::App* diff_command = app.add_subcommand(
      "diff", "Two profiles, or two values documents, item by item and field by field: items "
              "only in one, type changes, value, default and limit changes. Exit status 0 when "
              "equal, 1 when they differ, 2 on trouble.");
  diff_command->add_option("FIRST", diff.first, "Profile or values document")->required();
  diff_command->add_option("SECOND", diff.second, "Profile or values document")->required();
  AddCommonOptions(diff_command, diff.common, true);

  kolvane::cli::CheckOptions check;
  CLI::App* check_command = app.add_subcommand(
      "check",
      "Findings before commissioning: unknown types, structures that contain themselves, "
      "values out of limits, missing defaults, duplicate names, outputs nothing accepts. "
      "Exit status 1 when any is an error.");
  AddProfile(check_command, check.profile);
  AddCommonOptions(check_command, check.common, true);

  kolvane::cli::TypesOptions types;
  CLI::App* types_command =
      app.add_subcommand("types",
                         "List the catalogue's types: kind, length, scaling, limits, "
                         "units and enumeration states.");
  types_command->add_option("ID", types.ids,
                            "Identifiers to list (the text after SNVT_); all when none");
  AddCommonOptions(types_command, types.common, true);

  kolvane::cli::RawOptions raw;
  CLI::App* raw_command = app.add_subcommand(
      "raw", "Print the raw bytes (hexadecimal, most significant first) of a value of a type.");
  raw_command->add_option("TYPE", raw.type, "Type identifier, e.g. temp_p")->required();
  raw_command
      ->add_option("VALUE", raw.value, "Value in the type's unit, e.g. 21.5, OC_OCCUPIED, Invalid")
      ->required();
  AddCommonOptions(raw_command, raw.common, true);

  kolvane::cli::CompatOptions compat;
  CLI::App* compat_command = app.add_subcommand(
      "compat", "Print the types a type connects to according to the NVO compatibility table.");
  compat_command->add_option("TYPE", compat.type, "Type identifier, e.g. temp_p")->required();
  AddCommonOptions(compat_command, compat.common, true);

  kolvane::cli::ScheduleOptions scheduled;
  CLI::App* schedule_command = app.add_subcommand(
      "schedule", "A schedule property's program as a table: day, time, value; holidays and "
                  "exception days. Holidays can be taken from an iCalendar file.");
  std::vector<std::string> schedule_arguments;
  schedule_command
      ->add_option("[PROFILE] ITEM", schedule_arguments,
                   "Profile document (the bundled example when left out), then the property")
      ->required()
      ->expected(1, 2);
  schedule_command->add_option("--holidays-from", scheduled.holidays_file,
                               "iCalendar file (.ics) whose events become holidays of the "
                               "property (a holiday calendar, SNVT_40060)");
  schedule_command->add_option("-o,--output", scheduled.output,
                               "Values document to write with the schedule as it ends");
  AddCommonOptions(schedule_command, scheduled.common, true);

  kolvane::cli::XifOptions xif;
  CLI::App* xif_command =
      app.add_subcommand("xif", "Device interface files (.xif): read a real device's interface.");
  xif_command->require_subcommand(1);
  CLI::App* xif_import = xif_command->add_subcommand(
      "import", "Write the profile document of a device interface file: its network variables, "
                "configuration properties with their values, program ID and functional blocks.");
  xif_import->add_option("DEVICE", xif.device, "Device interface file (.xif)")->required();
  xif_import->add_option("-o,--output", xif.output,
                         "Profile document to write; standard output when left out or -");
  AddCommonOptions(xif_import, xif.common, false);
  CLI::App* xif_show = xif_command->add_subcommand(
      "show", "The device: program ID decoded, counts, functional blocks, and each network "
              "variable and property with its type and value.");
  xif_show->add_option("DEVICE", xif.device, "Device interface file (.xif)")->required();
  AddCommonOptions(xif_show, xif.common, false);

  CLI::App* xif_export = xif_command->add_subcommand(
      "export", "Write a profile as a device interface file (.xif), atomically: one VAR per "
                "network variable, the properties as configuration variables with their values.");
  xif_export->add_option("PROFILE", xif.profile, "Profile document")->required();
  xif_export->add_option("-o,--output", xif.output, "Device interface file to write")->required();
  xif_export->add_option("--version", xif.version, "XIF version to declare: 4.501 (default) or 4.402")
      ->check(CLI::IsMember({"4.501", "4.402"}));
  xif_export->add_option("--platform", xif.platform,
                         "A device interface file of the target platform, whose chip and channel "
                         "lines are copied; an FT 5000 on TP/FT-10 by default");
  xif_export->add_option("--types", xif.types, "Folder to write the profile's user types into");
  AddCommonOptions(xif_export, xif.common, true);

  // --units may also stand before the command ("kolvane --units us show").
  std::string global_units;
  app.add_option("--units", global_units, "Display units for the command that follows: si or us")
      ->check(CLI::IsMember({"si", "us"}));

  try {
    // A first word that is no command is named as such, before options are read.
    if (argc > 1 && argv[1][0] != '-') {
      const std::string command = argv[1];
      bool known = false;
      for (const CLI::App* sub : app.get_subcommands({})) known = known || sub->get_name() == command;
      if (!known) {
        std::cerr << "kolvane: unknown command \"" << command << "\"; run kolvane --help for the commands\n";
        return kUsageError;
      }
    }
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const int status = app.exit(error);
    return status == 0 ? 0 : kUsageError;
  }

  using namespace kolvane::cli;
  if (!global_units.empty()) {
    for (CommonOptions* common : {&show.common, &get.common, &save.common, &check.common,
                                  &exported.common, &diff.common, &types.common, &raw.common,
                                  &compat.common, &scheduled.common, &xif.common}) {
      // The command's own --units, when given, wins.
      if (common->units == "si") common->units = global_units;
    }
  }
  // The command, writing on out and err.
  const auto dispatch = [&](std::ostream& out, std::ostream& err) -> int {
    if (app.got_subcommand(show_command)) return RunShow(show, out, err);
    if (app.got_subcommand(get_command)) {
      get.item = get_arguments.back();
      if (get_arguments.size() == 2) get.profile = get_arguments.front();
      return RunGet(get, out, err);
    }
    if (app.got_subcommand(save_command)) {
      for (const CLI::Option* option : save_command->parse_order()) {
        if (option->get_name() == "--set") save.set_order.push_back(true);
        if (option->get_name() == "--set-from") save.set_order.push_back(false);
      }
      return RunSave(save, out, err);
    }
    if (app.got_subcommand(check_command)) return RunCheck(check, out, err);
    if (app.got_subcommand(export_command)) return RunExport(exported, out, err);
    if (app.got_subcommand(diff_command)) return RunDiff(diff, out, err);
    if (app.got_subcommand(types_command)) return RunTypes(types, out, err);
    if (app.got_subcommand(raw_command)) return RunRaw(raw, out, err);
    if (app.got_subcommand(compat_command)) return RunCompat(compat, out, err);
    if (app.got_subcommand(schedule_command)) {
      scheduled.item = schedule_arguments.back();
      if (schedule_arguments.size() == 2) scheduled.profile = schedule_arguments.front();
      return RunSchedule(scheduled, out, err);
    }
    if (xif_command->got_subcommand(xif_import)) return RunXifImport(xif, out, err);
    if (xif_command->got_subcommand(xif_show)) return RunXifShow(xif, out, err);
    if (xif_command->got_subcommand(xif_export)) return RunXifExport(xif, out, err);
    return kUsageError;
  };
  bool json = false;
  for (const CommonOptions* common : {&show.common, &get.common, &save.common, &check.common,
                                      &exported.common, &diff.common, &types.common, &raw.common,
                                      &compat.common, &scheduled.common, &xif.common}) {
    json = json || common->json;
  }
  if (app.got_subcommand(export_command) && exported.common.json && exported.format == "csv" &&
      export_command->count("--format") > 0) {
    std::cerr << "kolvane: error: --json and --format csv ask for two formats; give one\n";
    return kUsageError;
  }
  // Messages go out line by line, none echoing a huge input whole.
  kolvane::cli::BoundedLines bounded_err(std::cerr);
  std::ostream err_stream(&bounded_err);
  if (!json) return dispatch(std::cout, err_stream);
  // With --json a failure that printed nothing else says so on standard output as well.
  std::ostringstream out;
  std::ostringstream err;
  const int status = dispatch(out, err);
  std::cout << out.str() << std::flush;
  err_stream << err.str() << std::flush;
  if (status != 0 && out.str().empty()) {
    JsonWriter failure(std::cout);
    failure.BeginObject().Key("ok").Bool(false).Key("status").Number(status).Key("errors").BeginArray();
    std::istringstream lines(err.str());
    for (std::string line; std::getline(lines, line);) {
      if (line.rfind("kolvane: error: ", 0) == 0) line.erase(0, 16);
      if (!line.empty()) failure.String(kolvane::cli::Bounded(line));
    }
    failure.EndArray().EndObject();
  }
  return status;
}
