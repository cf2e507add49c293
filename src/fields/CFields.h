#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "foundation/KeyedCollection.h"
#include "interfaces/IFields.h"

namespace kolvane {

class CField;

// The fields of one structured value, keyed by name, built from the type catalogue.
class CFields final : public IFields {
 public:
  int32_t IFields_Count() const override;
  std::shared_ptr<IField> IFields_Item(const std::string& index) const override;
  std::vector<std::shared_ptr<IField>> IFields_NewEnum() const override;
  int32_t IFields_Length() const override;

  // The owner every field built here gets as its parent (held weakly).
  void SetParent(const std::shared_ptr<IUnknown>& owner);

  // Builds one field per element of the catalogue's "Fields" list of type_name, with its value
  // from value_text (split by "Moraface.Utility") or, for an empty text, its type's default.
  // Leaf fields of this level are packed from position on; a nested structure starts at the
  // position as it stood before this level's leaves. Advances position by this level's leaf
  // bytes and returns the last field built. Errors reach the caller: a value text with too few
  // field texts (9), two fields of one name (457).
  std::shared_ptr<CField> BuildFromType(int32_t& position, const std::string& type_name,
                                        int32_t item_type, const std::string& value_text,
                                        bool warn);

  // Gives every field its global key below owner_key (errors ignored).
  void SetGlobalKeys(const std::string& owner_key);
  // Gives every field its display key below prefix.
  void SetParentKeys(const std::string& prefix);
  // IField_Offset of the first field; error 9 when there is none.
  int32_t FirstOffset() const;
  // Loads every field's value from the element holding the owner's field values.
  void LoadValuesFromXml(pugi::xml_node node);
  // Writes every field's value, default and limits under parent (user-defined profile export).
  void ExportToXml(pugi::xml_document& document, pugi::xml_node parent);
  // Writes every field's value under parent.
  void SaveValuesToXml(pugi::xml_document& document, pugi::xml_node parent);
  // True when a field, asked by position "1" to the count, is connected (errors end the
  // asking with the answer so far).
  bool AnyConnected() const;
  // The fields' raw texts joined, in order.
  std::string RawText() const;
  // The fields' invalid raw texts joined, in order.
  std::string InvalidRawText() const;
  // The fields' checked raw texts joined: empty when no field holds a value, else error
  // "name: why" for the first field without a raw form (an empty one among filled ones too).
  std::string CheckedRawText() const;
  // The fields, in order.
  const KeyedCollection<std::shared_ptr<CField>>& Items() const { return items_; }

 private:
  KeyedCollection<std::shared_ptr<CField>> items_;
  std::weak_ptr<IUnknown> parent_;
};

}  // namespace kolvane
