#include "cp/CConfigProperties.h"

#include <functional>
#include <limits>

#include "cp/CConfigProperty.h"
#include "foundation/ContinueOnError.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/ItemLookup.h"
#include "foundation/ItemNames.h"
#include "foundation/Numbers.h"
#include "foundation/ProfileOwner.h"

namespace kolvane {

namespace {

constexpr char kBaseKey[] = "PGeneric_Profile\\CPS";

}  // namespace

std::shared_ptr<IConfigProperty> CConfigProperties::IConfigProperties_AddCP(
    const std::string& name, const std::shared_ptr<pugi::xml_document>& /*document*/,
    pugi::xml_node element) {
  return AddFromXml(name, element, profile_.lock());
}

std::shared_ptr<CConfigProperty> CConfigProperties::AddFromXml(
    const std::string& name, pugi::xml_node element, const std::shared_ptr<IUnknown>& profile) {
  return AddLoaded(name,
                   [&](CConfigProperty& property) { property.LoadFromXml(profile, element, ""); });
}

std::shared_ptr<IConfigProperty> CConfigProperties::IConfigProperties_AddNewCP(
    const std::string& name, const std::string& type_name) {
  std::shared_ptr<CConfigProperty> added;
  ContinueOnError([&] {
    const std::string key = NextKey();
    Globals::NeedSaveFlag = true;
    auto property = std::make_shared<CConfigProperty>();
    property->IConfigProperty_Name(name);
    property->IConfigProperty_SetSnvtType(type_name);
    property->SetGlobalKey(std::string(kBaseKey) + "\\" + key);
    items_.Add(key, property);
    internal::ItemNamesChanged();
    property->SetIndex(items_.Count() - 1);
    property->IConfigProperty_ConnectionIndex(-1);
    NotifyProfile();
    added = property;
  });
  return added;
}

std::shared_ptr<IConfigProperty> CConfigProperties::IConfigProperties_Item(
    const std::string& key) const {
  const auto* property = internal::FindByKeyOrPosition(items_, key);
  return property ? *property : nullptr;
}

int32_t CConfigProperties::IConfigProperties_Count() const { return items_.Count(); }

std::vector<std::shared_ptr<IConfigProperty>> CConfigProperties::IConfigProperties_NewEnum() const {
  return items_.Values<std::shared_ptr<IConfigProperty>>();
}

void CConfigProperties::IConfigProperties_Remove(const std::shared_ptr<IConfigProperty>& property) {
  Globals::NeedSaveFlag = true;
  Globals::DisplayIncompatibleFlag = true;
  // One past the end when the property is not in the collection: then no index moves.
  int32_t position = items_.Count() + 1;
  for (int32_t p = 1; p <= items_.Count(); ++p) {
    if (std::static_pointer_cast<IConfigProperty>(items_.ItemAt(p)) == property) {
      items_.RemoveAt(p);
      internal::ItemNamesChanged();
      position = p;
      break;
    }
  }
  for (const auto& entry : items_) {
    const auto& remaining = entry.item;
    ContinueOnError([&] {
      const int32_t connection = remaining->IConfigProperty_ConnectionIndex();
      if (remaining->IConfigProperty_Index() >= position) {
        remaining->SetIndex(remaining->IConfigProperty_Index() - 1);
        remaining->IConfigProperty_ConnectionIndex(connection);
      }
      if (remaining->Instance()) FixName(*remaining);
    });
  }
  NotifyProfile();
}

std::string CConfigProperties::IConfigProperties_GlobalKey() const { return kBaseKey; }
std::string CConfigProperties::IConfigProperties_ExtendedKey() const { return kBaseKey; }
int32_t CConfigProperties::IConfigProperties_CDBUsage() const { return 0; }
int32_t CConfigProperties::IConfigProperties_DDBUsage() const { return 0; }
int32_t CConfigProperties::IConfigProperties_SDBUsage() const { return 0; }

void CConfigProperties::SetProfile(const std::shared_ptr<IUnknown>& profile) { profile_ = profile; }

std::shared_ptr<CConfigProperty> CConfigProperties::AddFromExport(
    std::string& name, pugi::xml_node element, const std::shared_ptr<IUnknown>& profile) {
  auto added = AddLoaded(name, [&](CConfigProperty& property) {
    property.SetProfile(profile);
    property.LoadFromPointRecord(element);
  });
  if (added) name = added->IConfigProperty_Name();
  return added;
}

std::shared_ptr<CConfigProperty> CConfigProperties::AddLoaded(
    const std::string& name, const std::function<void(CConfigProperty&)>& load) {
  std::shared_ptr<CConfigProperty> added;
  ContinueOnError([&] {
    Globals::NeedSaveFlag = true;
    const std::string key = NextKey();
    auto property = std::make_shared<CConfigProperty>();
    property->IConfigProperty_Name(name);
    load(*property);
    property->Instance(false);
    added = Append(key, property);
  });
  return added;
}

void CConfigProperties::FixName(CConfigProperty& property) const {
  if (!property.Instance()) return;
  const std::string name = property.IConfigProperty_Name();
  const auto taken = [&](const std::string& candidate) {
    for (const auto& entry : items_) {
      if (entry.item.get() != &property && entry.item->IConfigProperty_Name() == candidate) {
        return true;
      }
    }
    return false;
  };
  std::string fixed = name;
  for (int32_t n = 1; taken(fixed); ++n) {
    if (n == std::numeric_limits<int16_t>::max()) RaiseError(ErrorNumber::kOverflow, name);
    fixed = name + "_" + std::to_string(n);
  }
  if (fixed == name) return;
  property.IConfigProperty_Name(fixed);
  if (property.IConfigProperty_GlobalKey().empty()) return;
  if (const auto owner = std::dynamic_pointer_cast<internal::ProfileOwner>(profile_.lock())) {
    owner->ConfigPropertyRenamed(property.IConfigProperty_GlobalKey(), fixed);
  }
}

std::string CConfigProperties::NextKey() {
  if (add_counter_ == std::numeric_limits<int32_t>::max()) {
    RaiseError(ErrorNumber::kOverflow, "add counter");
  }
  return "CP" + std::to_string(++add_counter_);
}

void CConfigProperties::NotifyProfile() const {
  if (const auto owner = std::dynamic_pointer_cast<internal::ProfileOwner>(profile_.lock())) {
    owner->ConfigPropertiesChanged();
  }
}

std::shared_ptr<CConfigProperty> CConfigProperties::Append(
    const std::string& key, const std::shared_ptr<CConfigProperty>& property) {
  property->SetIndex(items_.Count());
  FixName(*property);
  property->SetProfile(profile_.lock());
  property->IConfigProperty_ConnectionIndex(-1);
  property->SetGlobalKey(std::string(kBaseKey) + "\\" + key);
  items_.Add(key, property);
  internal::ItemNamesChanged();
  NotifyProfile();
  return property;
}

}  // namespace kolvane
