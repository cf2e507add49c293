#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Kolvane.h"

namespace kolvane::app {

// One network variable, configuration property or field of a loaded profile, as the tools
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

// The item's type identifier ("temp_p"); empty without a type.
std::string TypeIdOf(const ItemRef& item);

// The fields of an item, with their paths below it.
std::vector<ItemRef> FieldsOf(const ItemRef& item);

// The leaves of an item in field order: its fields', theirs below them, or the item itself when
// it has no fields.
std::vector<ItemRef> LeavesOf(const ItemRef& item);

// Display texts: value, default, minimum, maximum; blanks trimmed, empty where a getter fails.
std::vector<std::string> DisplayOf(const ItemRef& item);

// Raw bytes of an item's or field's value as a device holds them, or why it holds none.
RawBytes RawBytesOf(const ItemRef& item);

// The raw bytes as a column shows them: the hexadecimal text, or "! " and why there is none.
std::string RawColumnOf(const RawBytes& bytes);
std::string RawColumnOf(const ItemRef& item);

// "minimum .. maximum" from DisplayOf's texts; empty for a structure (its fields have limits)
// and for a type without any.
std::string LimitsOf(const ItemRef& item, const std::vector<std::string>& display);

// Sets the value text of an item through the member a host uses (a network variable's fields
// joined into its value, as the structure dialog does).
void SetValueOf(const ItemRef& item, const std::string& value);

// The value and default texts a leaf item (no structure) holds.
std::string LeafValueOf(const ItemRef& item);
std::string LeafDefaultOf(const ItemRef& item);

// A finding as check reports it: "error: nciRoom.fan: value 7 is no state of SNVT_x [code]".
std::string FindingLine(const Finding& finding);

// Whether a type is of a number kind (signed, unsigned or float).
bool IsNumberType(const ISNVType* type);

// Sets the values a values document holds ("ApplicationProfile" of "ApPoint" records, either
// form): each record's item found by its point key, then by its name; a record without a value
// leaves its item. Returns a note for each record naming an item the profile lacks.
std::vector<std::string> ApplyValues(const IProfile& profile, const pugi::xml_document& values);

// The profile's values as an XML document text: the stored form, or the interoperability form
// with item keys.
std::string ValuesDocumentText(IProfile& profile, bool interoperability);

// ValuesDocumentText with every item left as it was: a structure variable's value getter, which
// the save calls, writes its fields from the variable's value text; the fields are put back.
std::string ValuesDocumentTextUnchanged(IProfile& profile, bool interoperability);

// The options of each network variable by name (kolvane::NetworkVariableOptions): "SendOnDelta"
// and "RcvHrtBtEnable". A profile document keeps them on the item's element.
using Options = std::map<std::string, std::map<std::string, std::string>>;
Options NetworkVariableOptions(const IProfile& profile);

// Writes options onto the network variables' elements of a profile document, removing those
// a variable no longer has.
void StoreOptions(const Options& options, pugi::xml_document& document);

}  // namespace kolvane::app
