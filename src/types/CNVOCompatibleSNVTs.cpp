#include "types/CNVOCompatibleSNVTs.h"

#include <algorithm>

#include "foundation/Error.h"
#include "foundation/HostServices.h"
#include "interfaces/IUtility.h"
#include "types/CNVOCompatibleSNVT.h"

namespace kolvane {

int32_t CNVOCompatibleSNVTs::ICompatibleSNVTs_Count() const { return entries_.Count(); }

std::shared_ptr<ICompatibleSNVT> CNVOCompatibleSNVTs::ICompatibleSNVTs_Item(
    int32_t position) const {
  if (position < 1 || position > entries_.Count()) return nullptr;
  return entries_.ItemAt(position);
}

std::vector<std::shared_ptr<ICompatibleSNVT>> CNVOCompatibleSNVTs::ICompatibleSNVTs_NewEnum()
    const {
  return entries_.Values();
}

void CNVOCompatibleSNVTs::ICompatibleSNVTs_Add(const std::string& text) { AddList(text); }

void CNVOCompatibleSNVTs::ICompatibleSNVTs_Remove(const std::string& id) { entries_.Remove(id); }

bool CNVOCompatibleSNVTs::ICompatibleSNVTs_Exists(const std::string& id) const {
  return entries_.Contains(id);
}

std::shared_ptr<ICompatibleSNVTs> CNVOCompatibleSNVTs::ICompatibleSNVTs_Merge(
    const std::shared_ptr<ICompatibleSNVTs>& other) const {
  if (!other) RaiseError(ErrorNumber::kObjectNotSet, "no list to merge with");
  auto merged = std::make_shared<CNVOCompatibleSNVTs>();
  for (const auto& entry : other->ICompatibleSNVTs_NewEnum()) {
    const std::string id = entry->ICompatibleSNVT_ID();
    if (ICompatibleSNVTs_Exists(id)) merged->AddEntry(id);
  }
  return merged;
}

std::string CNVOCompatibleSNVTs::ICompatibleSNVTs_ToString() const {
  auto utility = CreateObjectAs<IUtility>("Moraface.Utility");
  return utility->CompatibleListText(*this);
}

std::shared_ptr<IUnknown> CNVOCompatibleSNVTs::IClonable_Clone() const {
  auto clone = std::make_shared<CNVOCompatibleSNVTs>();
  for (const auto& entry : entries_) clone->AddEntry(entry.item->ICompatibleSNVT_ID());
  return clone;
}

void CNVOCompatibleSNVTs::AddList(const std::string& text) {
  if (text.empty()) return;
  if (text.find(',') == std::string::npos) {
    AddEntry(text);
    return;
  }
  // Token by token as GetToken gives them, in one pass: a yield before each token, and the
  // first empty token (the one after the last, too) ends the list.
  for (size_t start = 0;;) {
    DoEvents();
    if (start > text.size()) break;
    const size_t comma = std::min(text.find(',', start), text.size());
    if (comma == start) break;
    AddEntry(text.substr(start, comma - start));
    start = comma + 1;
  }
}

void CNVOCompatibleSNVTs::AddEntry(const std::string& id) {
  if (entries_.Contains(id)) return;
  auto entry = std::make_shared<CNVOCompatibleSNVT>();
  entry->SetID(id);
  entries_.Add(id, entry);
}

}  // namespace kolvane
