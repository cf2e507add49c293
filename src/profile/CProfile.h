#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include <pugixml.hpp>

#include "foundation/ProfileOwner.h"
#include "interfaces/IProfile.h"

namespace kolvane {

class CConfigProperties;
class CNetworkVariables;
namespace internal {
class NvoTable;
}  // namespace internal

// The application profile of one device. Create it with kolvane::CreateProfile().
class CProfile final : public IProfile,
                       public internal::ProfileOwner,
                       public std::enable_shared_from_this<CProfile> {
 public:
  // Detects the decimal separator, reads the settings file, makes both collections and marks
  // the profile as needing saving.
  static std::shared_ptr<CProfile> Create();

  void Iprofile_RebuildCompatibilityList() override;
  int32_t IProfile_IncrementalConnIndex() const override;
  void IProfile_IncrementalConnIndex(int32_t value) override;
  bool IProfile_NeedSave() const override;
  bool IProfile_DisplayIncompatible() const override;
  void IProfile_ViewDatasheet(const std::string& ignored) override;
  int32_t IProfile_Export(const std::string& a, const std::string& b, const std::string& c,
                          const std::string& d) override;
  void IProfile_Name(const std::string& value) override;
  bool IProfile_DatasheetAvailable() const override;
  bool IProfile_IsFixed() const override;
  int32_t IProfile_NodeType() const override;
  std::string IProfile_Name() const override;
  std::string IProfile_Tag() const override;
  void IProfile_Tag(const std::string& value) override;
  int32_t IProfile_NumberNVIs() const override;
  int32_t IProfile_NumberNVOs() const override;
  int32_t IProfile_NumberCPs() const override;
  std::string IProfile_GlobalKey() const override;
  void IProfile_FriendSet(const std::shared_ptr<pugi::xml_document>& profile, std::string& name,
                          const std::shared_ptr<IUnknown>& parent,
                          const std::shared_ptr<pugi::xml_document>& catalogue,
                          const std::shared_ptr<pugi::xml_document>& nvo_table,
                          const std::string& text) override;
  int32_t Iprofile_XmlSaveValue(pugi::xml_node parent, pugi::xml_document& document) override;
  int32_t Iprofile_XIFandTypegenerate(const std::string& file_name) override;
  std::shared_ptr<INetworkVariables> IProfile_NVs() const override;
  std::shared_ptr<IConfigProperties> IProfile_CPs() const override;
  void IProfile_ClearParent() override;
  std::shared_ptr<IUnknown> IProfile_Parent() const override;
  std::string IProfile_ExtendedKey() const override;
  void IProfile_XmlLoad(pugi::xml_node node, const std::shared_ptr<IUnknown>& parent) override;
  void Iprofile_SetXmlDomDocs(const std::shared_ptr<pugi::xml_document>& catalogue,
                              const std::shared_ptr<pugi::xml_document>& nvo_table) override;
  void IProfile_ExportUserDefProfile(const std::string& ignored) override;
  std::shared_ptr<IUnknown> Iprofile_AddNetworkItem(
      int32_t kind, const std::string& type_name, const std::string& name, int32_t direction,
      const std::shared_ptr<ICompatibleSNVTs>& available_types,
      const std::string& point_key) override;
  int32_t Iprofile_SaveValueForInteroperability(pugi::xml_node parent,
                                                pugi::xml_document& document) override;
  int32_t Iprofile_XmlLoadValue() override;

  // internal::ProfileOwner
  void RebuildCompatibilityLists() override;

  // The name an added item gets: name itself while free, else cut and suffixed "_1", "_2", ...
  // to at most 20 characters. Error 5 for a name made of a number only.
  std::string UniqueName(const std::string& name) const;
  // A new point key "P" + n, one above the highest in use.
  std::string NewPointKey();

 private:
  CProfile() = default;
  void LoadDocument(const pugi::xml_document& document);
  void SetNvoTable(const std::shared_ptr<pugi::xml_document>& nvo_table);
  // The names of every item, indexed once and kept while no name changes.
  const std::unordered_set<std::string>& ItemNames() const;
  int32_t SaveValues(pugi::xml_node parent, pugi::xml_document& document, bool interoperability);

  std::shared_ptr<CNetworkVariables> nvs_;
  std::shared_ptr<CConfigProperties> cps_;
  std::weak_ptr<IUnknown> parent_;
  std::string name_;
  std::string tag_;
  std::string global_key_;
  bool datasheet_available_ = false;
  int32_t incremental_conn_index_ = 0;
  std::shared_ptr<pugi::xml_document> nvo_table_;
  // nvo_table_ indexed on the first rebuild after it was handed in.
  std::shared_ptr<const internal::NvoTable> nvo_index_;
  mutable std::unordered_set<std::string> names_;
  mutable uint64_t names_stamp_ = 0;
  mutable std::unordered_map<std::string, int32_t> next_suffix_;
  mutable bool names_valid_ = false;
  bool compatibility_rebuilt_ = false;
  int16_t last_point_key_ = -1;
};

}  // namespace kolvane
