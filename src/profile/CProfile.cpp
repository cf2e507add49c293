#include "profile/CProfile.h"

#include "Kolvane.h"

#include <filesystem>
#include <limits>
#include <unordered_set>

#include "cp/CConfigProperties.h"
#include "cp/CConfigProperty.h"
#include "foundation/Characters.h"
#include "foundation/ContinueOnError.h"
#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/HostServices.h"
#include "foundation/ItemNames.h"
#include "foundation/Numbers.h"
#include "foundation/mXML.h"
#include "items/ItemCore.h"
#include "interfaces/IXIFAndTypesGen.h"
#include "nv/CNetworkVariable.h"
#include "nv/CNetworkVariables.h"
#include "types/NvoTable.h"

namespace kolvane {

namespace {

constexpr size_t kMaxNameLength = 20;

// The first element named child under an element named parent, in document order.
pugi::xml_node FirstByPath(const pugi::xml_document& document, const char* parent,
                           const char* child) {
  // A node set is kept in the order the steps found its nodes; first() is the document's.
  return document.select_nodes((std::string("//") + parent + "/" + child).c_str()).first().node();
}

bool IsNumber(const std::string& text) {
  try {
    ParseNumber(text);
    return true;
  } catch (const Error&) {
    return false;
  }
}

}  // namespace

std::shared_ptr<CProfile> CProfile::Create() {
  std::shared_ptr<CProfile> profile(new CProfile());
  Globals::DetectDecimalSeparator();
  Globals::ReadSettings();
  profile->last_point_key_ = -1;
  profile->cps_ = std::make_shared<CConfigProperties>();
  profile->cps_->SetProfile(profile);
  profile->nvs_ = std::make_shared<CNetworkVariables>();
  profile->nvs_->SetProfile(profile);
  Globals::NeedSaveFlag = true;
  return profile;
}

void CProfile::Iprofile_RebuildCompatibilityList() {
  compatibility_rebuilt_ = true;
  RebuildCompatibilityLists();
}

int32_t CProfile::IProfile_IncrementalConnIndex() const { return incremental_conn_index_; }
void CProfile::IProfile_IncrementalConnIndex(int32_t value) { incremental_conn_index_ = value; }
bool CProfile::IProfile_NeedSave() const { return Globals::NeedSaveFlag; }
bool CProfile::IProfile_DisplayIncompatible() const { return Globals::DisplayIncompatibleFlag; }

void CProfile::IProfile_ViewDatasheet(const std::string& /*ignored*/) {
  MsgBox("DataSheet not available", vbOKOnly);
}

int32_t CProfile::IProfile_Export(const std::string& /*a*/, const std::string& /*b*/,
                                  const std::string& /*c*/, const std::string& /*d*/) {
  return 0;
}

void CProfile::IProfile_Name(const std::string& value) { name_ = value; }
bool CProfile::IProfile_DatasheetAvailable() const { return datasheet_available_; }
bool CProfile::IProfile_IsFixed() const { return false; }
int32_t CProfile::IProfile_NodeType() const { return 1; }
std::string CProfile::IProfile_Name() const { return name_; }
std::string CProfile::IProfile_Tag() const { return tag_; }
void CProfile::IProfile_Tag(const std::string& value) { tag_ = value; }

int32_t CProfile::IProfile_NumberNVIs() const {
  int32_t count = 0;
  for (const auto& entry : nvs_->Items()) {
    const auto& variable = entry.item;
    if (variable->INetworkVariable_Direction() == internal::kInput &&
        !variable->INetworkVariable_isNC()) {
      ++count;
    }
  }
  return count;
}

int32_t CProfile::IProfile_NumberNVOs() const {
  int32_t count = 0;
  for (const auto& entry : nvs_->Items()) {
    if (entry.item->INetworkVariable_Direction() == internal::kOutput) ++count;
  }
  return count;
}

int32_t CProfile::IProfile_NumberCPs() const { return cps_->IConfigProperties_Count(); }
std::string CProfile::IProfile_GlobalKey() const { return global_key_; }

void CProfile::IProfile_FriendSet(const std::shared_ptr<pugi::xml_document>& profile,
                                  std::string& name, const std::shared_ptr<IUnknown>& parent,
                                  const std::shared_ptr<pugi::xml_document>& catalogue,
                                  const std::shared_ptr<pugi::xml_document>& nvo_table,
                                  const std::string& /*text*/) {
  Globals::ProfileDocument = profile;
  SetNvoTable(nvo_table);
  if (name.empty() && profile) {
    ContinueOnError([&] { name = FirstByPath(*profile, "Profile", "Name").first_child().value(); });
  }
  ContinueOnError([&] {
    name_ = name;
    global_key_ = "P" + name;
    parent_ = parent;
    if (!Globals::SnvtCatalogDocument) Globals::SetSnvtCatalogDocument(catalogue);
    // The load yields to the host, which may hand in other documents meanwhile.
    if (const auto document = profile) LoadDocument(*document);
    RebuildCompatibilityLists();
    datasheet_available_ = false;
  });
}

int32_t CProfile::Iprofile_XmlSaveValue(pugi::xml_node parent, pugi::xml_document& document) {
  return SaveValues(parent, document, false);
}

int32_t CProfile::Iprofile_XIFandTypegenerate(const std::string& file_name) {
  const std::string folder = ComponentFolder();
  std::error_code ec;
  const bool two_up = std::filesystem::exists(folder + "/../../snvts.xml", ec);
  const std::string base = folder + (two_up ? "/../../" : "/../../../");
  return ContinueOnError([&] {
    auto generator = CreateObjectAs<IXIFAndTypesGen>("TarnXIFandTypesGen.XIFAndTypesGen");
    generator->Source("Profile");
    generator->OutputFolder(base + "LON");
    generator->XifFile(base + "LON/" + file_name + ".xif");
    generator->TypesFolder(base + "Types");
    generator->ResourceCatalogue("LDRF.CAT");
    generator->SourceProfile(shared_from_this());
    const int32_t status = generator->Generate();
    if (status != 0) RaiseError(status, "the generator failed");
  });
}

std::shared_ptr<INetworkVariables> CProfile::IProfile_NVs() const { return nvs_; }
std::shared_ptr<IConfigProperties> CProfile::IProfile_CPs() const { return cps_; }
void CProfile::IProfile_ClearParent() { parent_.reset(); }
std::shared_ptr<IUnknown> CProfile::IProfile_Parent() const { return parent_.lock(); }
std::string CProfile::IProfile_ExtendedKey() const { return global_key_; }

void CProfile::IProfile_XmlLoad(pugi::xml_node node, const std::shared_ptr<IUnknown>& parent) {
  name_ = "GenericProfile";
  global_key_ = "PGenericProfile";
  datasheet_available_ = false;
  parent_ = parent;
  const auto self = shared_from_this();
  for (pugi::xml_node child : node.children()) {
    DoEvents();
    if (child.type() == pugi::node_comment) continue;
    ContinueOnError([&] {
      std::string name = child.attribute("Name").value();
      if (!child.attribute("Permanent")) {
        nvs_->AddFromXml(name, child, self);
      } else {
        cps_->AddFromXml(name, child, self);
      }
    });
  }
  ContinueOnError([&] { RebuildCompatibilityLists(); });
}

void CProfile::Iprofile_SetXmlDomDocs(const std::shared_ptr<pugi::xml_document>& catalogue,
                                      const std::shared_ptr<pugi::xml_document>& nvo_table) {
  Globals::SetSnvtCatalogDocument(catalogue);
  SetNvoTable(nvo_table);
}

void CProfile::SetNvoTable(const std::shared_ptr<pugi::xml_document>& nvo_table) {
  nvo_table_ = nvo_table;
  nvo_index_.reset();
}

void CProfile::IProfile_ExportUserDefProfile(const std::string& /*ignored*/) {}

std::shared_ptr<IUnknown> CProfile::Iprofile_AddNetworkItem(
    int32_t kind, const std::string& type_name, const std::string& name, int32_t direction,
    const std::shared_ptr<ICompatibleSNVTs>& available_types, const std::string& point_key) {
  const std::string unique = UniqueName(name);
  if (kind != internal::kVariableItem && kind != internal::kPropertyItem) return nullptr;
  // The key is made before the item is added, so that a failure (error 6 for a key number past
  // 16 bits) adds nothing; a key that goes to no item is given again.
  const int16_t last_point_key = last_point_key_;
  const std::string key = point_key.empty() ? NewPointKey() : point_key;
  const uint64_t names_before = internal::ItemNamesStamp();
  std::shared_ptr<IUnknown> item;
  if (kind == internal::kVariableItem) {
    if (auto variable = nvs_->INetworkVariables_AddNV(unique, direction, type_name)) {
      variable->INetworkVariable_PointKey(key);
      variable->INetworkVariable_AvailableTypes(available_types);
      item = variable;
    }
  } else if (auto property = cps_->IConfigProperties_AddNewCP(unique, type_name)) {
    property->IConfigProperty_PointKey(key);
    property->IConfigProperty_AvailableTypes(available_types);
    item = property;
  }
  if (!item) {
    last_point_key_ = last_point_key;
    return nullptr;
  }
  // An add sets the new item's name and appends it: two changes. When nothing else changed the
  // names meanwhile (a host re-entering at a yield may have), the index takes the new name
  // instead of being rebuilt by the next add.
  if (internal::ItemNamesStamp() == names_before + 2) {
    names_.insert(unique);
    names_stamp_ = internal::ItemNamesStamp();
  }
  return item;
}

int32_t CProfile::Iprofile_SaveValueForInteroperability(pugi::xml_node parent,
                                                        pugi::xml_document& document) {
  return SaveValues(parent, document, true);
}

int32_t CProfile::Iprofile_XmlLoadValue() {
  MsgBox("REMOVED: Iprofile_XmlLoadValue", vbOKOnly);
  return 0;
}

void CProfile::RebuildCompatibilityLists() {
  if (!nvs_) return;
  if (!nvo_index_) {
    static const pugi::xml_document kEmptyTable;
    nvo_index_ = std::make_shared<const internal::NvoTable>(nvo_table_ ? *nvo_table_ : kEmptyTable);
  }
  // Building a list yields to the host, which may add, remove or edit items, or hand in another
  // table: walk a snapshot and keep the table alive until the walk ends.
  const auto table = nvo_index_;
  for (const auto& variable : nvs_->Items().Values()) variable->RebuildCompatibles(*table);
}

std::string CProfile::UniqueName(const std::string& name) const {
  if (IsNumber(name)) {
    RaiseError(ErrorNumber::kInvalidProcedureCall, "\"" + name + "\" is a number, not a name");
  }
  const std::unordered_set<std::string>& taken = ItemNames();
  // Cut by characters, not bytes; the check is made on the uncut name, the result is cut.
  const auto cut = [&name](const std::string& suffix) {
    return std::string(LeftCharacters(name, kMaxNameLength - suffix.size())) + suffix;
  };
  std::string suffix;
  std::string candidate = name;
  // Suffixes below the one found last time for this name are still taken while the index lives
  // (names were only added since), so the search goes on from there.
  int32_t& next = next_suffix_[name];
  for (int32_t n = std::max(next, 1); taken.count(candidate) != 0; ++n) {
    if (n > std::numeric_limits<int16_t>::max()) RaiseError(ErrorNumber::kOverflow, name);
    suffix = "_" + std::to_string(n);
    candidate = cut(suffix);
    next = n;
  }
  return cut(suffix);
}

const std::unordered_set<std::string>& CProfile::ItemNames() const {
  if (names_stamp_ != internal::ItemNamesStamp() || !names_valid_) {
    names_.clear();
    next_suffix_.clear();
    for (const auto& entry : nvs_->Items()) names_.insert(entry.item->INetworkVariable_Name());
    for (const auto& entry : cps_->Items()) names_.insert(entry.item->IConfigProperty_Name());
    names_stamp_ = internal::ItemNamesStamp();
    names_valid_ = true;
  }
  return names_;
}

std::string CProfile::NewPointKey() {
  if (last_point_key_ != -1) {
    if (last_point_key_ == std::numeric_limits<int16_t>::max()) {
      RaiseError(ErrorNumber::kOverflow, "point key");
    }
    ++last_point_key_;
  } else {
    int16_t highest = 0;
    // A key whose number does not fit 16 bits raises error 6.
    const auto consider = [&highest](const std::string& key) {
      if (key.size() >= 2) highest = std::max(highest, RoundToInt16(LeadingNumber(key.substr(1))));
    };
    for (const auto& entry : nvs_->Items()) consider(entry.item->INetworkVariable_PointKey());
    for (const auto& entry : cps_->Items()) consider(entry.item->IConfigProperty_PointKey());
    if (highest == std::numeric_limits<int16_t>::max())
      RaiseError(ErrorNumber::kOverflow, "point key");
    last_point_key_ = static_cast<int16_t>(highest + 1);
  }
  return "P" + std::to_string(last_point_key_);
}

void CProfile::LoadDocument(const pugi::xml_document& document) {
  const auto self = shared_from_this();
  const auto load = [&](const char* list, auto&& add) {
    for (pugi::xml_node child : FirstByPath(document, "Profile", list).children()) {
      DoEvents();
      if (child.type() == pugi::node_comment) continue;
      ContinueOnError([&] { add(std::string(mXML::BaseName(child)), child); });
    }
  };
  load("NVs",
       [&](const std::string& name, pugi::xml_node child) { nvs_->AddFromXml(name, child, self); });
  load("CPs",
       [&](const std::string& name, pugi::xml_node child) { cps_->AddFromXml(name, child, self); });
}

int32_t CProfile::SaveValues(pugi::xml_node parent, pugi::xml_document& document,
                             bool interoperability) {
  pugi::xml_node application;
  ContinueOnError([&] {
    application =
        mXML::AppendXmlElement(document, parent, "ApplicationProfile", mXML::kNoTextField);
  });
  // A message box the host answers may re-enter: walk snapshots.
  for (const auto& variable : nvs_->Items().Values()) {
    ContinueOnError([&] {
      codec::WritePointRecord(document, application, variable->PointRecord(interoperability),
                              interoperability);
    });
  }
  for (const auto& property : cps_->Items().Values()) {
    ContinueOnError([&] {
      codec::WritePointRecord(document, application, property->PointRecord(), interoperability);
    });
  }
  Globals::NeedSaveFlag = false;
  Globals::DisplayIncompatibleFlag = false;
  return 0;
}

std::shared_ptr<IProfile> CreateProfile() { return CProfile::Create(); }

}  // namespace kolvane
