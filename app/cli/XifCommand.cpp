#include <cstdio>
#include <filesystem>
#include <sstream>

#include "Commands.h"
#include "DeviceFiles.h"
#include "Documents.h"
#include "Items.h"
#include "Json.h"
#include "Table.h"

namespace kolvane::cli {

namespace {

std::string HexText(unsigned value, int digits) {
  char text[16];
  std::snprintf(text, sizeof text, "%0*X", digits, value);
  return text;
}

}  // namespace

int RunXifImport(const XifOptions& options, std::ostream& out, std::ostream& err) {
  Session session(options.common, err);
  if (!session.Open()) return 1;
  std::string error;
  const auto imported = app::ImportDeviceFile(options.device, session.catalogue(), error);
  if (!imported) {
    err << "kolvane: error: " << error << '\n';
    return 1;
  }
  if (!options.common.quiet) {
    for (const std::string& note : imported->notes) err << "kolvane: note: " << note << '\n';
  }
  std::ostringstream text;
  imported->document->save(text, "  ", pugi::format_default, pugi::encoding_utf8);
  return WriteFileAtomically(options.output.empty() ? "-" : options.output, text.str(), out, err) ? 0 : 1;
}

int RunXifShow(const XifOptions& options, std::ostream& out, std::ostream& err) {
  std::string error;
  const auto device = app::ReadDeviceFile(options.device, error);
  if (!device) {
    err << "kolvane: error: " << error << '\n';
    return 1;
  }
  CommonOptions quiet = options.common;
  quiet.quiet = true;  // the import's notes are listed below
  Session session(quiet, err);
  if (!session.Open()) return 1;
  const auto profile = session.LoadProfile(options.device);
  if (!profile) return 1;
  const xif::ProgramId& id = device->program_id;
  int configuration = 0;
  for (const xif::Variable& variable : device->variables) {
    configuration += variable.flags.ConfigurationClass() ? 1 : 0;
  }
  const size_t file_properties = device->FileProperties().size();
  const std::string name = app::DeviceName(*device, options.device);
  const auto items = TopItems(*profile);
  if (options.common.json) {
    JsonWriter json(out);
    json.BeginObject().Member("device", name).Member("version", device->version);
    json.Key("program_id").BeginObject().Member("text", id.Text());
    json.Key("format").Number(id.Format()).Member("manufacturer", HexText(id.Manufacturer(), 5));
    json.Member("class", HexText(id.DeviceClass(), 4)).Member("usage", HexText(id.Usage(), 2));
    json.Member("channel", HexText(id.Channel(), 2)).Member("model", HexText(id.Model(), 2));
    json.EndObject();
    json.Key("counts").BeginObject();
    json.Key("variables").Number(static_cast<long long>(device->variables.size()));
    json.Key("configuration_variables").Number(configuration);
    json.Key("tags").Number(static_cast<long long>(device->tags.size()));
    json.Key("file_properties").Number(static_cast<long long>(file_properties));
    json.EndObject();
    json.Key("blocks").BeginArray();
    int index = 0;
    for (const xif::FunctionalBlock& block : device->node_doc.blocks) {
      json.BeginObject().Key("index").Number(index).Key("key").Number(block.profile_key);
      json.Member("name", block.name).Key("array").Number(block.array_count).EndObject();
      index += block.array_count > 0 ? block.array_count : 1;
    }
    json.EndArray().Key("items").BeginArray();
    for (const ItemRef& item : items) {
      const RawBytes bytes = RawBytesOf(item);
      json.BeginObject().Member("path", item.path).Member("kind", item.kind);
      json.Member("type", app::TypeIdOf(item)).Member("value", DisplayOf(item)[0]);
      json.Member("raw", bytes.raw).EndObject();
    }
    json.EndArray().Key("notes").BeginArray();
    for (const std::string& note : session.import_notes()) json.String(note);
    json.EndArray().EndObject();
    return 0;
  }
  out << "Device " << name << " (XIF " << device->version << ")\n";
  out << "Program ID " << id.Text() << ": format " << id.Format() << ", manufacturer "
      << HexText(id.Manufacturer(), 5) << ", class " << HexText(id.DeviceClass(), 4) << ", usage "
      << HexText(id.Usage(), 2) << ", channel " << HexText(id.Channel(), 2) << ", model "
      << HexText(id.Model(), 2) << '\n';
  out << device->variables.size() << " network variables (" << configuration
      << " configuration), " << device->tags.size() << " message tags, " << file_properties
      << " properties in configuration files\n";
  if (!device->node_doc.blocks.empty()) {
    out << "\nFunctional blocks\n";
    int index = 0;
    for (const xif::FunctionalBlock& block : device->node_doc.blocks) {
      const int count = block.array_count > 0 ? block.array_count : 1;
      out << "  " << index;
      if (count > 1) out << ".." << index + count - 1;
      out << "  " << (block.name.empty() ? "(no name)" : block.name);
      if (block.array_count > 0) out << "[" << block.array_count << "]";
      out << ", profile " << block.key_text << '\n';
      index += count;
    }
  }
  out << '\n';
  Table table({"Item", "Kind", "Type", "Value", "Raw"});
  for (const ItemRef& item : items) {
    table.AddRow({item.path, item.kind, app::TypeIdOf(item), DisplayOf(item)[0], RawColumnOf(item)});
  }
  table.Print(out);
  for (const std::string& note : session.import_notes()) out << "note: " << note << '\n';
  return 0;
}

int RunXifExport(const XifOptions& options, std::ostream& out, std::ostream& err) {
  Session session(options.common, err);
  if (!session.Open()) return 1;
  const auto profile = session.LoadProfile(options.profile);
  if (!profile) return 1;
  std::shared_ptr<IXIFAndTypesGen> generator;
  try {
    generator = CreateObjectAs<IXIFAndTypesGen>("TarnXIFandTypesGen.XIFAndTypesGen");
    generator->Source("Profile");
    generator->XifFile(options.output);
    generator->TypesFolder(options.types);
    generator->Version(options.version);
    generator->Platform(options.platform);
    generator->SourceProfile(profile);
    generator->Generate();
  } catch (const Error& error) {
    err << "kolvane: error: " << options.profile << ": " << error.detail() << '\n';
    return 1;
  }
  if (options.common.json) {
    JsonWriter json(out);
    json.BeginObject().Member("written", options.output).Key("messages").BeginArray();
    for (const std::string& message : generator->Messages()) json.String(message);
    json.EndArray().EndObject();
  } else if (!options.common.quiet) {
    for (const std::string& message : generator->Messages()) err << "kolvane: " << message << '\n';
  }
  return 0;
}

}  // namespace kolvane::cli
