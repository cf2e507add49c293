#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "Items.h"
#include "Kolvane.h"

namespace kolvane::cli {

// Options every command takes.
struct CommonOptions {
  std::string catalogue;  // snvts.xml; the bundled one when empty
  std::string nvo;        // nvotable.xml; the bundled one when empty
  bool json = false;      // machine-readable output
  bool quiet = false;     // no warnings or progress on stderr
  std::string units = "si";  // display units: "si" or "us"
  std::string units_table;   // units.xml for US units; the bundled one when empty
};

// A message box the library showed while the command ran.
struct Message {
  std::string title;
  std::string text;
};

// The library as a host drives it: documents handed in, message boxes turned into lines on
// stderr ("Title: text") or collected for JSON, progress on a terminal driven by the yield hook.
class Session {
 public:
  Session(const CommonOptions& options, std::ostream& err);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Reads the catalogue and the NVO table, and for US units the unit table; false (after one
  // error line) when one fails.
  bool Open();
  // Reads and loads a profile (the bundled example when path is empty); nullptr after one error
  // line when the file cannot be read.
  std::shared_ptr<IProfile> LoadProfile(const std::string& path);
  // Open, LoadProfile, then the item named by its path (a field as "item.field"); profile keeps
  // the loaded profile alive. An empty ItemRef after one error line when any step fails.
  ItemRef LoadItem(const std::string& path, const std::string& name, std::shared_ptr<IProfile>& profile);

  const std::vector<Message>& messages() const { return messages_; }
  const std::shared_ptr<pugi::xml_document>& catalogue() const { return catalogue_; }
  const std::shared_ptr<pugi::xml_document>& nvo_table() const { return nvo_table_; }
  // The path of the profile loaded last.
  const std::string& profile_path() const { return profile_path_; }
  // The profile document loaded last.
  const std::shared_ptr<pugi::xml_document>& profile_document() const { return profile_document_; }
  // What a device interface file's import could not say as the file did.
  const std::vector<std::string>& import_notes() const { return import_notes_; }

 private:
  const CommonOptions& options_;
  std::ostream& err_;
  std::vector<Message> messages_;
  std::shared_ptr<pugi::xml_document> catalogue_;
  std::shared_ptr<pugi::xml_document> nvo_table_;
  std::shared_ptr<pugi::xml_document> profile_document_;
  std::string profile_path_;
  std::vector<std::string> import_notes_;
  MessageBoxHandler previous_boxes_;
  YieldHandler previous_yield_;
  UnitSystem previous_units_ = UnitSystem::kSI;
  long items_seen_ = 0;
  bool progress_ = false;
};

// Writes the collected messages as a JSON array member "messages".
class JsonWriter;
void WriteMessages(JsonWriter& json, const std::vector<Message>& messages);

}  // namespace kolvane::cli
