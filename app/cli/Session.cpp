#include "Session.h"

#include <unistd.h>

#include "Profiles.h"
#include "Documents.h"
#include "Json.h"

namespace kolvane::cli {

namespace {

// Progress shows from this many items on, every this many items.
constexpr long kProgressStep = 500;

}  // namespace

Session::Session(const CommonOptions& options, std::ostream& err)
    : options_(options), err_(err), progress_(!options.quiet && isatty(STDERR_FILENO) == 1) {
  previous_boxes_ =
      SetMessageBoxHandler([this](const std::string& text, int32_t, const std::string& title) {
        messages_.push_back({title.empty() ? "Kolvane" : title, text});
        if (!options_.json && !options_.quiet)
          err_ << messages_.back().title << ": " << text << '\n';
        return vbOK;
      });
  previous_yield_ = SetYieldHandler([this] {
    ++items_seen_;
    if (progress_ && items_seen_ % kProgressStep == 0) {
      err_ << "\rloading: " << items_seen_ << " items" << std::flush;
    }
  });
}

Session::~Session() {
  if (progress_ && items_seen_ >= kProgressStep) err_ << "\r\033[K" << std::flush;
  SetMessageBoxHandler(std::move(previous_boxes_));
  SetYieldHandler(std::move(previous_yield_));
  SetUnitSystem(previous_units_);
}

bool Session::Open() {
  catalogue_ = ReadDocument(options_.catalogue, "snvts.xml", "SNVTS", err_);
  if (!catalogue_) return false;
  nvo_table_ = ReadDocument(options_.nvo, "nvotable.xml", "NVOTable", err_);
  if (!nvo_table_) return false;
  if (options_.units == "us") {
    const auto table = ReadDocument(options_.units_table, "units.xml", "Units", err_);
    if (!table) return false;
    SetUnitTable(table);
    previous_units_ = SetUnitSystem(UnitSystem::kUSCustomary);
  }
  return true;
}

std::shared_ptr<IProfile> Session::LoadProfile(const std::string& path) {
  profile_path_ = DocumentPath(path, "profile.xml");
  std::string error;
  auto loaded = app::LoadProfileFile(path, catalogue_, nvo_table_, error);
  if (!loaded) {
    err_ << "kolvane: error: " << error << '\n';
    profile_document_.reset();
    return nullptr;
  }
  profile_document_ = loaded->document;
  import_notes_ = loaded->notes;
  return loaded->profile;
}

ItemRef Session::LoadItem(const std::string& path, const std::string& name,
                          std::shared_ptr<IProfile>& profile) {
  if (!Open() || !(profile = LoadProfile(path))) return {};
  std::string error;
  ItemRef item = FindItem(*profile, name, error);
  if (!item.object) err_ << "kolvane: error: " << error << '\n';
  return item;
}

void WriteMessages(JsonWriter& json, const std::vector<Message>& messages) {
  json.Key("messages").BeginArray();
  for (const Message& message : messages) {
    json.BeginObject().Member("title", message.title).Member("text", message.text).EndObject();
  }
  json.EndArray();
}

}  // namespace kolvane::cli
