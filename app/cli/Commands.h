#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "Session.h"

// The kolvane tool's commands. Each writes its result on out and problems on err, one line
// each, and returns the exit status (0 done, 1 failed or found errors).
namespace kolvane::cli {

// "kolvane types": the catalogue's types as a table.
struct TypesOptions {
  CommonOptions common;
  std::vector<std::string> ids;  // types to list; every type when empty
};
int RunTypes(const TypesOptions& options, std::ostream& out, std::ostream& err);

// "kolvane raw": the raw bytes of a value of a type.
struct RawOptions {
  CommonOptions common;
  std::string type;
  std::string value;
};
int RunRaw(const RawOptions& options, std::ostream& out, std::ostream& err);

// "kolvane compat": the types a type connects to, by the NVO table.
struct CompatOptions {
  CommonOptions common;
  std::string type;
};
int RunCompat(const CompatOptions& options, std::ostream& out, std::ostream& err);

// "kolvane show": every item with its texts, raw bytes and fields, then the counts.
struct ShowOptions {
  CommonOptions common;
  std::string profile;  // the bundled example when empty
};
int RunShow(const ShowOptions& options, std::ostream& out, std::ostream& err);

// "kolvane get": the value of one item or field.
struct GetOptions {
  CommonOptions common;
  std::string profile;
  std::string item;
};
int RunGet(const GetOptions& options, std::ostream& out, std::ostream& err);

// "kolvane save": the values document, after setting values.
struct SaveOptions {
  CommonOptions common;
  std::string profile;
  std::string output;
  std::vector<std::string> assignments;  // ITEM[.FIELD...]=VALUE
  std::string values_file;               // CSV of path,value rows; none when empty
  std::string values_document;           // a values document to apply first; none when empty
  // The order of --set (true) and --set-from (false) on the command line; assignments first,
  // then the file, when empty.
  std::vector<bool> set_order;
  bool interoperability = false;
};
int RunSave(const SaveOptions& options, std::ostream& out, std::ostream& err);

// "kolvane check": findings a device engineer fixes before commissioning.
struct CheckOptions {
  CommonOptions common;
  std::string profile;
};
int RunCheck(const CheckOptions& options, std::ostream& out, std::ostream& err);

// "kolvane export": one row per item and per field, as CSV or JSON.
struct ExportOptions {
  CommonOptions common;
  std::string profile;
  std::string format = "csv";  // "csv" or "json"
};
int RunExport(const ExportOptions& options, std::ostream& out, std::ostream& err);

// "kolvane diff": two profiles, or two values documents, item by item; 0 equal, 1 different.
struct DiffOptions {
  CommonOptions common;
  std::string first;
  std::string second;
};
int RunDiff(const DiffOptions& options, std::ostream& out, std::ostream& err);

// "kolvane xif import" and "kolvane xif show": a device interface file as a profile.
struct XifOptions {
  CommonOptions common;
  std::string device;   // the .xif file
  std::string output;   // import: the profile document to write; standard output when empty
  std::string profile;  // export: the profile to write as a device interface file
  std::string version = "4.501";  // export: the XIF version to declare
  std::string platform;           // export: a .xif of the target platform; the bundled one
  std::string types;              // export: the folder for the user types; none when empty
};
// "kolvane xif export": a profile as a device interface file, through the built-in generator.
int RunXifExport(const XifOptions& options, std::ostream& out, std::ostream& err);
int RunXifImport(const XifOptions& options, std::ostream& out, std::ostream& err);
int RunXifShow(const XifOptions& options, std::ostream& out, std::ostream& err);

// "kolvane schedule": a schedule property as a table, holidays taken from an iCalendar file.
struct ScheduleOptions {
  CommonOptions common;
  std::string profile;
  std::string item;
  std::string holidays_file;  // .ics whose events become holidays; none when empty
  std::string output;         // the values document to write after the import; none when empty
};
int RunSchedule(const ScheduleOptions& options, std::ostream& out, std::ostream& err);

}  // namespace kolvane::cli
