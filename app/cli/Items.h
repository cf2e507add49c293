#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Kolvane.h"

namespace kolvane::cli {

// One network variable, configuration property or field of a loaded profile, as the commands
// address it: "nvoLamp", "nciRoom.fan.value".
struct ItemRef {
  std::string path;
  std::string kind;  // "in", "out", "cp" or "field"
  std::shared_ptr<IUnknown> object;
  std::shared_ptr<ISNVType> type;
  std::shared_ptr<IFields> fields;
};

// Every network variable, then every configuration property, in profile order.
std::vector<ItemRef> TopItems(const IProfile& profile);

// The fields of an item, with their paths below it.
std::vector<ItemRef> FieldsOf(const ItemRef& item);

// The item at path; nullptr-object with error text (naming the closest names) when there is
// none.
ItemRef FindItem(const IProfile& profile, const std::string& path, std::string& error);

// The value text of an item: the plain value; for a structure the brace text of its fields'
// values (read without writing the fields).
std::string ValueOf(const ItemRef& item);
// Sets the value text through the member a host uses.
void SetValueOf(const ItemRef& item, const std::string& value);
// The raw bytes as hexadecimal text; empty when the value has none.
std::string RawOf(const ItemRef& item);
// Display texts: value, default, minimum, maximum.
std::vector<std::string> DisplayOf(const ItemRef& item);

}  // namespace kolvane::cli
