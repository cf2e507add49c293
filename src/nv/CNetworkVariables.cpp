#include "nv/CNetworkVariables.h"

#include <limits>

#include "foundation/ContinueOnError.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/ItemLookup.h"
#include "foundation/ItemNames.h"
#include "foundation/Numbers.h"
#include "foundation/ProfileOwner.h"
#include "nv/CNetworkVariable.h"

namespace kolvane {

namespace {

constexpr char kGlobalKey[] = "PGeneric_Profile\\NVS";

}  // namespace

std::shared_ptr<INetworkVariable> CNetworkVariables::INetworkVariables_AddNV(
    const std::string& name, int32_t direction, const std::string& type_name) {
  std::shared_ptr<CNetworkVariable> added;
  ContinueOnError([&] {
    const std::string key = NextKey();
    Globals::NeedSaveFlag = true;
    auto variable = std::make_shared<CNetworkVariable>();
    variable->INetworkVariable_Name(name);
    variable->InitType(direction, type_name);
    Append(key, variable);
    variable->INetworkVariable_ConnectionIndex(-1);
    RebuildCompatibilityLists();
    added = variable;
  });
  return added;
}

int32_t CNetworkVariables::INetworkVariables_Count() const { return items_.Count(); }

std::shared_ptr<INetworkVariable> CNetworkVariables::INetworkVariables_Item(
    const std::string& key) const {
  const auto* variable = internal::FindByKeyOrPosition(items_, key);
  return variable ? *variable : nullptr;
}

void CNetworkVariables::INetworkVariables_Remove(
    const std::shared_ptr<INetworkVariable>& variable) {
  Globals::NeedSaveFlag = true;
  Globals::DisplayIncompatibleFlag = true;
  // The position of the removed variable; the count when it is not in the list.
  int32_t position = items_.Count();
  for (int32_t p = 1; p <= items_.Count(); ++p) {
    if (std::static_pointer_cast<INetworkVariable>(items_.ItemAt(p)) == variable) {
      items_.RemoveAt(p);
      internal::ItemNamesChanged();
      position = p;
      break;
    }
  }
  for (const auto& entry : items_) {
    const auto& remaining = entry.item;
    if (remaining->INetworkVariable_Index() > position - 1) {
      const int32_t connection = remaining->INetworkVariable_ConnectionIndex();
      remaining->SetIndex(remaining->INetworkVariable_Index() - 1);
      remaining->INetworkVariable_ConnectionIndex(connection);
    }
  }
  RebuildCompatibilityLists();
}

std::vector<std::shared_ptr<INetworkVariable>> CNetworkVariables::INetworkVariables_NewEnum()
    const {
  return items_.Values<std::shared_ptr<INetworkVariable>>();
}

std::string CNetworkVariables::INetworkVariables_GlobalKey() const { return kGlobalKey; }
std::string CNetworkVariables::INetworkVariables_ExtendedKey() const { return kGlobalKey; }
int32_t CNetworkVariables::INetworkVariables_CDBUsage() const { return 0; }
int32_t CNetworkVariables::INetworkVariables_DDBUsage() const { return 0; }
int32_t CNetworkVariables::INetworkVariables_SDBUsage() const { return 0; }
int32_t CNetworkVariables::INetworkVariables_ExecTime() const { return 0; }

void CNetworkVariables::SetProfile(const std::shared_ptr<IUnknown>& profile) { profile_ = profile; }

std::shared_ptr<CNetworkVariable> CNetworkVariables::AddFromXml(
    const std::string& name, pugi::xml_node element, const std::shared_ptr<IUnknown>& profile) {
  std::shared_ptr<CNetworkVariable> added;
  ContinueOnError([&] {
    const std::string key = NextKey();
    auto variable = std::make_shared<CNetworkVariable>();
    variable->INetworkVariable_Name(name);
    variable->LoadFromXml(element);
    Append(key, variable);
    variable->SetOwner(profile);
    added = variable;
  });
  return added;
}

std::string CNetworkVariables::NextKey() {
  if (running_number_ == std::numeric_limits<int32_t>::max()) {
    RaiseError(ErrorNumber::kOverflow, "running number");
  }
  return "NV" + std::to_string(++running_number_);
}

void CNetworkVariables::Append(const std::string& key,
                               const std::shared_ptr<CNetworkVariable>& variable) {
  variable->SetGlobalKey(std::string(kGlobalKey) + "\\" + key);
  items_.Add(key, variable);
  internal::ItemNamesChanged();
  variable->SetIndex(items_.Count() - 1);
}

void CNetworkVariables::RebuildCompatibilityLists() const {
  if (const auto owner = std::dynamic_pointer_cast<internal::ProfileOwner>(profile_.lock())) {
    owner->RebuildCompatibilityLists();
  }
}

}  // namespace kolvane
