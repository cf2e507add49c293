#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <sstream>

#include <sys/ioctl.h>
#include <unistd.h>

#include "Commands.h"
#include "Compare.h"
#include "DeviceFiles.h"
#include "Documents.h"
#include "Items.h"
#include "Json.h"
#include "Csv.h"
#include "Table.h"
#include "Values.h"
#include "conversion/SNVTDataConversion.h"
#include "conversion/ValueCodec.h"
#include "host/CXifGenerator.h"
#include "items/ItemCore.h"
#include "foundation/Characters.h"
#include "foundation/Error.h"
#include "foundation/Numbers.h"
#include "foundation/Text.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"

namespace kolvane::cli {

namespace {

// The columns of the terminal standard output writes to ($COLUMNS when set); 0 when it
// writes to no terminal.
size_t TerminalWidth() {
  if (isatty(STDOUT_FILENO) != 1) return 0;
  if (const char* columns = std::getenv("COLUMNS")) {
    const long given = std::strtol(columns, nullptr, 10);
    if (given > 0) return static_cast<size_t>(given);
  }
  winsize size{};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

struct Counts {
  int32_t inputs = 0;
  int32_t outputs = 0;
  int32_t properties = 0;
};

Counts CountItems(const IProfile& profile) {
  return {profile.IProfile_NumberNVIs(), profile.IProfile_NumberNVOs(),
          profile.IProfile_NumberCPs()};
}

bool IsNumber(const ItemRef& item) { return app::IsNumberType(item.type.get()); }

// The display unit of a number item; empty for other kinds.
std::string UnitOf(const ItemRef& item) {
  return IsNumber(item) ? app::DisplayConverter()->DisplayUnits(app::TypeIdOf(item)) : "";
}

void AddRows(Table& table, const ItemRef& item, const std::string& indent) {
  const auto texts = DisplayOf(item);
  const std::string limits = app::EnforcedLimitsOf(item, texts);
  table.AddRow({indent + item.path.substr(item.path.rfind('.') + 1),
                indent.empty() ? item.kind : "", app::TypeIdOf(item), texts[0], texts[1], limits,
                RawColumnOf(item)});
  for (const ItemRef& field : FieldsOf(item)) AddRows(table, field, indent + "  ");
}

void WriteItem(JsonWriter& json, const ItemRef& item) {
  const auto texts = DisplayOf(item);
  // The keys of every command's JSON: path, kind, type, value, default, minimum, maximum, unit,
  // raw, raw_problem.
  json.BeginObject()
      .Member("path", item.path)
      .Member("kind", item.kind)
      .Member("type", app::TypeIdOf(item))
      .Member("value", texts[0])
      .Member("default", texts[1])
      .Member("minimum", texts[2])
      .Member("maximum", texts[3])
      .Member("unit", UnitOf(item));
  const RawBytes bytes = RawBytesOf(item);
  json.Member("raw", bytes.raw);
  if (!bytes.problem.empty()) json.Member("raw_problem", bytes.problem);
  const auto fields = FieldsOf(item);
  if (!fields.empty()) {
    json.Key("fields").BeginArray();
    for (const ItemRef& field : fields) WriteItem(json, field);
    json.EndArray();
  }
  json.EndObject();
}

void WriteCounts(JsonWriter& json, const Counts& counts) {
  json.Key("counts")
      .BeginObject()
      .Key("inputs")
      .Number(counts.inputs)
      .Key("outputs")
      .Number(counts.outputs)
      .Key("properties")
      .Number(counts.properties)
      .EndObject();
}

// The texts a profile's properties hold other than their documents wrote them: the loader makes
// the first "," of a text without "." the decimal separator ("Hall 2,5 m" becomes "Hall 2.5 m").
std::vector<std::pair<std::string, std::pair<std::string, std::string>>> ChangedTexts(
    const IProfile& profile, const pugi::xml_document& document) {
  std::vector<std::pair<std::string, std::pair<std::string, std::string>>> changed;
  const pugi::xml_node list = document.child("Profile").child("CPs");
  for (const ItemRef& item : TopItems(profile)) {
    if (item.kind != "cp" || !item.type || item.type->ISNVType_GenType() != "Textual") continue;
    const pugi::xml_node element = list.child(item.path.c_str());
    std::string written;
    for (pugi::xml_node child : element.children()) {
      const std::string name = ToLower(child.name());
      if (name == "default" || name == "value") written = child.text().get();
    }
    const std::string held = ValueOf(item);
    if (!written.empty() && written != held) changed.push_back({item.path, {written, held}});
  }
  return changed;
}

// Findings in the profile document the items no longer show: a direction neither in nor out,
// two variables of one point key, a property child that is no field of its structure.
void CheckDocument(const IProfile& loaded, const pugi::xml_document& document,
                   std::vector<Finding>& findings) {
  const pugi::xml_node profile = document.child("Profile");
  std::map<std::string, std::shared_ptr<INetworkVariable>> variables;
  for (const auto& nv : loaded.IProfile_NVs()->INetworkVariables_NewEnum()) {
    variables.emplace(nv->INetworkVariable_Name(), nv);
  }
  std::map<std::string, std::string> keys;
  for (pugi::xml_node nv : profile.child("NVs").children()) {
    if (nv.type() != pugi::node_element) continue;
    // What a save writes otherwise: the export number the variable's place gives it, a whole
    // location.
    const pugi::xml_node info = nv.child("ExtendedInfo");
    if (const auto found = variables.find(nv.name()); found != variables.end() && info) {
      const std::string index = info.attribute("ExportIndex").value();
      const std::string given = std::to_string(found->second->INetworkVariable_ConnectionIndex());
      if (!index.empty() && index != given) {
        findings.push_back({"export-index-renumbered", false, nv.name(),
                            "ExportIndex " + index + " is saved as " + given +
                                ", the variable's place among the variables"});
      }
      const std::string location = info.attribute("Location").value();
      if (location.find('.') != std::string::npos || location.find(',') != std::string::npos) {
        findings.push_back({"location-rounded", false, nv.name(),
                            "Location " + location + " is saved in whole numbers"});
      }
    }
    const std::string direction = ToLower(nv.attribute("Direction").value());
    if (direction != "in" && direction != "out") {
      findings.push_back({"direction-unknown", true, nv.name(),
                          "Direction=\"" + std::string(nv.attribute("Direction").value()) +
                              "\" is neither In nor Out; the variable is read as an output"});
    }
    const std::string key = nv.attribute("Key").value();
    if (key.empty()) continue;
    if (const auto [at, added] = keys.emplace(ToLower(key), nv.name()); !added) {
      findings.push_back({"key-duplicate", true, nv.name(),
                          "point key " + key + " is " + at->second + "'s too"});
    }
  }
  static const std::set<std::string> kKnown = {"snvttype", "default", "value", "min", "max",
                                               "deviceinterface", "extendedinfo", "sisd"};
  for (pugi::xml_node cp : profile.child("CPs").children()) {
    if (cp.type() != pugi::node_element) continue;
    const std::string type = cp.child_value("SNVTType");
    const pugi::xml_node fields = internal::FindSnvtChild(type, "Fields");
    for (pugi::xml_node child : cp.children()) {
      if (child.type() != pugi::node_element || kKnown.count(ToLower(child.name()))) continue;
      if (fields && fields.child(child.name())) continue;
      findings.push_back({"field-unknown", false, cp.name(),
                          "<" + std::string(child.name()) + "> is " +
                              (fields ? "no field of SNVT_" + type : "no element a property has") +
                              "; it is not read"});
    }
  }
}

// Findings of a device interface file that its profile no longer shows: strings naming
// functional blocks or variables the device lacks, element lines that disagree with the
// standard type their index names, what the import could not say.
void CheckDevice(const xif::DeviceInterface& device, const std::vector<std::string>& notes,
                 std::vector<Finding>& findings) {
  const int blocks = device.node_doc.parsed ? device.node_doc.BlockIndexCount() : -1;
  const auto variables = static_cast<int>(device.variables.size());
  const auto check_targets = [&](const std::string& where, const xif::PropertyDescriptor& property) {
    const int limit = property.applies_to == 1 ? blocks : property.applies_to == 2 ? variables : -1;
    if (limit < 0) return;
    for (const int index : property.Selected()) {
      if (index >= limit) {
        findings.push_back({"xif-target-unknown", true, where,
                            std::string("the property applies to ") +
                                (property.applies_to == 1 ? "functional block " : "network variable ") +
                                std::to_string(index) + "; the device has " + std::to_string(limit)});
      }
    }
  };
  std::map<int, std::string> by_index;
  for (const std::string& id : internal::SnvtIdentifiers()) {
    const pugi::xml_attribute index = internal::FindSnvtElement(id).attribute("INDEX");
    if (!index.empty()) by_index.emplace(index.as_int(), id);
  }
  for (const xif::Variable& variable : device.variables) {
    const xif::VariableDoc doc = variable.ParsedDoc();
    if (doc.form == xif::VariableDoc::Form::kMember && blocks >= 0 && doc.block >= blocks) {
      findings.push_back({"xif-block-unknown", true, variable.name,
                          "its string names functional block " + std::to_string(doc.block) +
                              "; the device has " + std::to_string(blocks)});
    }
    if (doc.form == xif::VariableDoc::Form::kProperty) check_targets(variable.name, doc.property);
    const auto known = by_index.find(variable.type_index);
    if (known == by_index.end()) {
      if (variable.type_index != 0) {
        findings.push_back({"xif-type-unknown", false, variable.name,
                            "type index " + std::to_string(variable.type_index) +
                                " is no standard type of the catalogue"});
      }
      continue;
    }
    const int expected = internal::DeclaredLength(known->second).value_or(1);
    if (variable.array_count == 0 && expected != variable.Size()) {
      findings.push_back({"xif-length-mismatch", true, variable.name,
                          "its element lines give " + std::to_string(variable.Size()) +
                              " bytes; SNVT_" + known->second + " has " + std::to_string(expected)});
    }
  }
  if (const xif::ConfigFile* layout = device.File("template")) {
    for (const xif::PropertyDescriptor& entry : layout->entries) {
      check_targets("FILE template", entry);
    }
  }
  for (const std::string& note : notes) {
    if (note.find("element lines") != std::string::npos || note.find("type index") != std::string::npos) {
      continue;  // said above
    }
    findings.push_back({"xif-import", false, note.substr(0, note.find(':')),
                        note.substr(note.find(':') + 2)});
  }
}

}  // namespace

int RunShow(const ShowOptions& options, std::ostream& out, std::ostream& err) {
  Session session(options.common, err);
  if (!session.Open()) return 1;
  const auto profile = session.LoadProfile(options.profile);
  if (!profile) return 1;
  const auto items = TopItems(*profile);
  const Counts counts = CountItems(*profile);
  if (options.common.json) {
    JsonWriter json(out);
    json.BeginObject().Member("profile", profile->IProfile_Name()).Key("items").BeginArray();
    for (const ItemRef& item : items) WriteItem(json, item);
    json.EndArray();
    WriteCounts(json, counts);
    WriteMessages(json, session.messages());
    json.EndObject();
    return 0;
  }
  Table table({"Item", "Kind", "Type", "Value", "Default", "Limits", "Raw"});
  // Wide structures and long texts fit a screen; get, export and --json give them whole.
  table.Limit(3, 40);
  table.Limit(4, 40);
  table.Limit(6, 32);
  for (const ItemRef& item : items) AddRows(table, item, "");
  // On a terminal the value, default, limits and raw columns share what its width leaves.
  if (const size_t width = TerminalWidth(); width > 0) table.FitTo(width, {3, 4, 5, 6});
  out << "Profile " << profile->IProfile_Name() << "\n\n";
  table.Print(out);
  const auto counted = [](int32_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
  };
  out << "\n"
      << counted(counts.inputs, "input", "inputs") << ", "
      << counted(counts.outputs, "output", "outputs") << ", "
      << counted(counts.properties, "configuration property", "configuration properties") << '\n';
  return 0;
}

int RunGet(const GetOptions& options, std::ostream& out, std::ostream& err) {
  Session session(options.common, err);
  std::shared_ptr<IProfile> profile;
  const ItemRef item = session.LoadItem(options.profile, options.item, profile);
  if (!item.object) return 1;
  // A number in the chosen display units; a structure as its fields show.
  const std::string value = app::ExportedValueOf(item);
  if (options.common.json) {
    JsonWriter json(out);
    json.BeginObject().Member("path", item.path).Member("type", app::TypeIdOf(item));
    const RawBytes bytes = RawBytesOf(item);
    json.Member("value", value).Member("unit", UnitOf(item)).Member("raw", bytes.raw);
    if (!bytes.problem.empty()) json.Member("raw_problem", bytes.problem);
    WriteMessages(json, session.messages());
    json.EndObject();
  } else {
    out << value << '\n';
  }
  return 0;
}

// Why a text cannot stand in an XML document: bytes that are no UTF-8 (a spreadsheet's
// Windows-1252, say), or a control character; empty when it can.
std::string TextProblem(const std::string& text) {
  for (size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x20 && byte != '\t') {
      return "the value holds control character " + std::to_string(byte) + ", which XML cannot hold";
    }
    const size_t length = Utf8SequenceLength(std::string_view(text).substr(i));
    if (length == 0) {
      return "the value is not UTF-8 at byte " + std::to_string(i + 1) +
             " (save the file as UTF-8)";
    }
    i += length;
  }
  return "";
}

// Sets the values of a CSV file's path,value rows (a header row naming "path" and "value" picks
// those columns; an empty value leaves the item as it is), or of an exported JSON document's; every row is checked first, and each
// refused one is reported as "FILE:LINE: ..."; false when any is.
bool SetFromFile(const IProfile& profile, const std::string& path, std::ostream& err) {
  std::string text;
  std::string error;
  if (!app::ReadTextFile(path, text, error)) {
    err << "kolvane: error: " << error << '\n';
    return false;
  }
  // A spreadsheet's UTF-8 byte-order mark is no part of the header.
  if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.erase(0, 3);
  // What "export --format json" wrote is read as its rows; a record's line is then its row.
  const size_t start = text.find_first_not_of(" \t\r\n");
  const bool json = start != std::string::npos && text[start] == '{';
  std::istringstream in(text);
  std::vector<CsvRecord> records;
  if (!(json ? ReadExportedRows(text, records, error) : ReadCsv(in, records, error))) {
    err << "kolvane: error: " << path << ": " << error << '\n';
    return false;
  }
  size_t path_column = 0;
  size_t value_column = 1;
  std::optional<size_t> unit_column;
  size_t columns = records.empty() ? 2 : records.front().fields.size();
  size_t first = 0;
  if (!records.empty() && !records.front().fields.empty() && records.front().fields[0] == "path") {
    const auto& header = records.front().fields;
    const auto value_at = std::find(header.begin(), header.end(), "value");
    if (value_at == header.end()) {
      err << "kolvane: error: " << path << ":" << records.front().line
          << ": the header names no \"value\" column\n";
      return false;
    }
    value_column = static_cast<size_t>(value_at - header.begin());
    if (const auto unit_at = std::find(header.begin(), header.end(), "unit"); unit_at != header.end()) {
      unit_column = static_cast<size_t>(unit_at - header.begin());
    }
    first = 1;
  }
  if (columns < 2) columns = 2;
  std::vector<std::pair<ItemRef, std::string>> accepted;
  bool refused = false;
  for (size_t i = first; i < records.size(); ++i) {
    const CsvRecord& record = records[i];
    const std::string where =
        path + (json ? ": row " : ":") + std::to_string(record.line) + ": ";
    if (record.fields.size() != columns) {
      err << "kolvane: error: " << where << record.fields.size() << " columns, expected "
          << columns << '\n';
      refused = true;
      continue;
    }
    if (record.fields[value_column].empty()) continue;  // an empty cell leaves the value
    // Only text a values document can hold: valid UTF-8 without control characters.
    if (const std::string problem = TextProblem(record.fields[value_column]); !problem.empty()) {
      err << "kolvane: error: " << where << problem << '\n';
      refused = true;
      continue;
    }
    const ItemRef item = FindItem(profile, record.fields[path_column], error);
    // A row as the export wrote it changes nothing: an item keeps the value it has.
    if (item.object && record.fields[value_column] == ExportedValueOf(item)) continue;
    std::string typed = record.fields[value_column];
    // A number's unit column says what unit it is in: the row is read in it, or refused.
    if (unit_column && item.object && IsNumber(item) && !record.fields[*unit_column].empty() &&
        typed.find(' ') == std::string::npos) {
      typed += " " + record.fields[*unit_column];
    }
    std::string value;
    if (!item.object || !ParseTypedValue(item, typed, value, error)) {
      err << "kolvane: error: " << where << error << '\n';
      refused = true;
      continue;
    }
    accepted.emplace_back(item, value);
  }
  if (refused) return false;
  for (const auto& [item, value] : accepted) SetValueOf(item, value);
  return true;
}

int RunSave(const SaveOptions& options, std::ostream& out, std::ostream& err) {
  Session session(options.common, err);
  if (!session.Open()) return 1;
  const auto profile = session.LoadProfile(options.profile);
  if (!profile) return 1;
  std::error_code ec;
  if (std::filesystem::equivalent(options.output, session.profile_path(), ec)) {
    err << "kolvane: error: " << options.output << ": will not write over the profile it read\n";
    return 1;
  }
  // A values document saved before: a day's edits resumed.
  if (!options.values_document.empty()) {
    std::string error;
    const auto values = app::ReadValuesDocument(options.values_document, error);
    if (!values) {
      err << "kolvane: error: " << error << '\n';
      return 1;
    }
    for (const std::string& note : app::ApplyValues(*profile, *values)) {
      if (!options.common.quiet) err << "kolvane: warning: " << options.values_document << ": " << note << '\n';
    }
  }
  // --set and --set-from in the order they were given: a later value wins. A file's rows are all
  // checked before any is set.
  size_t assignment_at = 0;
  std::vector<bool> order = options.set_order;
  if (order.empty()) {
    order.assign(options.assignments.size(), true);
    if (!options.values_file.empty()) order.insert(order.begin(), false);
  }
  for (const bool is_assignment : order) {
    if (!is_assignment) {
      if (!SetFromFile(*profile, options.values_file, err)) return 1;
      continue;
    }
    if (assignment_at >= options.assignments.size()) break;
    const std::string& assignment = options.assignments[assignment_at++];
    const size_t equals = assignment.find('=');
    if (equals == std::string::npos) {
      err << "kolvane: error: --set " << assignment << ": expected ITEM=VALUE\n";
      return 1;
    }
    std::string error;
    const ItemRef item = FindItem(*profile, assignment.substr(0, equals), error);
    if (!item.object) {
      err << "kolvane: error: " << error << '\n';
      return 1;
    }
    std::string value;
    if (!ParseTypedValue(item, assignment.substr(equals + 1), value, error)) {
      err << "kolvane: error: " << error << '\n';
      return 1;
    }
    SetValueOf(item, value);
    if (const RawBytes bytes = RawBytesOf(item); !bytes.problem.empty()) {
      err << "kolvane: error: " << item.path << ": \"" << value << "\" does not fit SNVT_"
          << app::TypeIdOf(item) << ": " << bytes.problem << '\n';
      return 1;
    }
  }
  // A text the save writes otherwise than the profile wrote it is said.
  if (!options.common.quiet && session.profile_document()) {
    for (const auto& [path, texts] : ChangedTexts(*profile, *session.profile_document())) {
      const bool set = std::any_of(options.assignments.begin(), options.assignments.end(),
                                   [&](const std::string& a) { return a.rfind(path + "=", 0) == 0; });
      if (!set) {
        err << "kolvane: note: " << path << ": \"" << texts.first << "\" is saved as \""
            << texts.second << "\"\n";
      }
    }
  }
  const std::string text = app::ValuesDocumentText(*profile, options.interoperability);
  if (!WriteFileAtomically(options.output, text, out, err)) return 1;
  if (options.common.json) {
    JsonWriter json(out);
    json.BeginObject().Member("written", options.output);
    WriteMessages(json, session.messages());
    json.EndObject();
  }
  return 0;
}

int RunCheck(const CheckOptions& options, std::ostream& out, std::ostream& err) {
  CommonOptions quiet = options.common;
  quiet.quiet = true;  // the loader's messages become findings
  Session session(quiet, err);
  if (!session.Open()) return 1;
  const auto profile = session.LoadProfile(options.profile);
  if (!profile) return 1;
  // Findings come from the items themselves, not from the loader's messages.
  std::vector<Finding> findings;
  if (session.profile_document()) {
    CheckDocument(*profile, *session.profile_document(), findings);
    for (const auto& [path, texts] : ChangedTexts(*profile, *session.profile_document())) {
      findings.push_back({"text-separator", false, path,
                          "\"" + texts.first + "\" is read as \"" + texts.second +
                              "\": the first comma of a text without a period is the decimal separator"});
    }
  }
  if (app::IsDeviceFile(options.profile)) {
    std::string error;
    if (const auto device = app::ReadDeviceFile(options.profile, error)) {
      CheckDevice(*device, session.import_notes(), findings);
    }
  }
  std::map<std::string, int> names;
  for (const ItemRef& item : TopItems(*profile)) {
    if (++names[item.path] == 2) findings.push_back({"name-duplicate", true, item.path, "name used twice"});
    for (Finding& finding : CheckItem(item.object, item.path)) findings.push_back(std::move(finding));
    const auto nv = std::dynamic_pointer_cast<INetworkVariable>(item.object);
    if (nv && nv->INetworkVariable_Direction() == internal::kOutput) {
      const auto compatibles = nv->INetworkVariable_SNVTCompatibles();
      if (!compatibles || compatibles->ICompatibleSNVTs_Count() == 0) {
        findings.push_back({"output-unconnectable", false, item.path,
                            "output without compatible types"});
      }
    }
  }
  // What would stop the profile from becoming a device interface file.
  try {
    (void)CXifGenerator::Build(*profile, "check", "4.501", CXifGenerator::BundledPlatform());
  } catch (const Error& error) {
    findings.push_back({"xif-export", false, "device interface", error.detail()});
  } catch (const xif::XifError& error) {
    findings.push_back({"xif-export", false, "device interface", error.what()});
  }
  bool failed = false;
  for (const Finding& finding : findings) failed = failed || finding.error;
  if (options.common.json) {
    JsonWriter json(out);
    json.BeginObject().Key("findings").BeginArray();
    for (const Finding& finding : findings) {
      json.BeginObject()
          .Member("code", finding.code)
          .Member("severity", finding.error ? "error" : "warning")
          .Member("path", finding.path)
          .Member("text", finding.text)
          .EndObject();
    }
    json.EndArray().Key("ok").Bool(!failed).EndObject();
  } else {
    for (const Finding& finding : findings) {
      if (!finding.error && options.common.quiet) continue;
      out << Bounded(app::FindingLine(finding)) << '\n';
    }
    if (findings.empty()) out << "no findings\n";
  }
  return failed ? 1 : 0;
}

}  // namespace kolvane::cli
