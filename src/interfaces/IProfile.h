#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <pugixml.hpp>

#include "interfaces/ICompatibleSNVTs.h"
#include "interfaces/IConfigProperties.h"
#include "interfaces/INetworkVariables.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// The application profile of one device: its network variables and configuration properties.
class KOLVANE_API IProfile : public virtual IUnknown {
 public:
  // Rebuilds every network variable's compatible type list from the NVO table.
  virtual void Iprofile_RebuildCompatibilityList() = 0;
  // Connection counter kept for the host.
  virtual int32_t IProfile_IncrementalConnIndex() const = 0;
  // Sets the connection counter.
  virtual void IProfile_IncrementalConnIndex(int32_t value) = 0;
  // The profile holds changes that have not been saved.
  virtual bool IProfile_NeedSave() const = 0;
  // An item was removed since the last save: redraw the lists of incompatible items.
  virtual bool IProfile_DisplayIncompatible() const = 0;
  // Shows "DataSheet not available".
  virtual void IProfile_ViewDatasheet(const std::string& ignored) = 0;
  // Does nothing; returns 0.
  virtual int32_t IProfile_Export(const std::string& a, const std::string& b, const std::string& c,
                                  const std::string& d) = 0;
  // Sets the name (the global key is not recomputed).
  virtual void IProfile_Name(const std::string& value) = 0;
  // False after every load.
  virtual bool IProfile_DatasheetAvailable() const = 0;
  // Always false.
  virtual bool IProfile_IsFixed() const = 0;
  // Always 1.
  virtual int32_t IProfile_NodeType() const = 0;
  // The profile's name.
  virtual std::string IProfile_Name() const = 0;
  // Free text of the host.
  virtual std::string IProfile_Tag() const = 0;
  // Sets the free text.
  virtual void IProfile_Tag(const std::string& value) = 0;
  // Inputs that are not flagged "IsNC".
  virtual int32_t IProfile_NumberNVIs() const = 0;
  // Outputs, flagged or not.
  virtual int32_t IProfile_NumberNVOs() const = 0;
  // Configuration properties.
  virtual int32_t IProfile_NumberCPs() const = 0;
  // "P" + the name the last load gave.
  virtual std::string IProfile_GlobalKey() const = 0;
  // Loads a full profile document; an empty name is read from "Profile/Name" and handed back.
  virtual void IProfile_FriendSet(const std::shared_ptr<pugi::xml_document>& profile,
                                  std::string& name, const std::shared_ptr<IUnknown>& parent,
                                  const std::shared_ptr<pugi::xml_document>& catalogue,
                                  const std::shared_ptr<pugi::xml_document>& nvo_table,
                                  const std::string& text) = 0;
  // Writes the values as one "ApplicationProfile" element under parent; returns 0.
  virtual int32_t Iprofile_XmlSaveValue(pugi::xml_node parent, pugi::xml_document& document) = 0;
  // Generates the XIF file and the type files through the registered generator.
  virtual int32_t Iprofile_XIFandTypegenerate(const std::string& file_name) = 0;
  // The network variables.
  virtual std::shared_ptr<INetworkVariables> IProfile_NVs() const = 0;
  // The configuration properties.
  virtual std::shared_ptr<IConfigProperties> IProfile_CPs() const = 0;
  // Drops the reference to the host object that owns the profile.
  virtual void IProfile_ClearParent() = 0;
  // The host object that owns the profile.
  virtual std::shared_ptr<IUnknown> IProfile_Parent() const = 0;
  // The same text as IProfile_GlobalKey.
  virtual std::string IProfile_ExtendedKey() const = 0;
  // Loads a generic item list: children with "Permanent" are properties, the others variables.
  virtual void IProfile_XmlLoad(pugi::xml_node node, const std::shared_ptr<IUnknown>& parent) = 0;
  // Hands in the type catalogue (always replaced) and the NVO table; hand in again after editing.
  virtual void Iprofile_SetXmlDomDocs(const std::shared_ptr<pugi::xml_document>& catalogue,
                                      const std::shared_ptr<pugi::xml_document>& nvo_table) = 0;
  // Does nothing.
  virtual void IProfile_ExportUserDefProfile(const std::string& ignored) = 0;
  // Adds a network variable (kind 2) or configuration property (kind 3) under a unique name;
  // nullptr for another kind.
  virtual std::shared_ptr<IUnknown> Iprofile_AddNetworkItem(
      int32_t kind, const std::string& type_name, const std::string& name, int32_t direction,
      const std::shared_ptr<ICompatibleSNVTs>& available_types, const std::string& point_key) = 0;
  // Writes the values for interoperability (with "ItemKey"); returns 0.
  virtual int32_t Iprofile_SaveValueForInteroperability(pugi::xml_node parent,
                                                        pugi::xml_document& document) = 0;
  // Retired: shows "REMOVED: Iprofile_XmlLoadValue" and returns 0.
  virtual int32_t Iprofile_XmlLoadValue() = 0;
};

}  // namespace kolvane
