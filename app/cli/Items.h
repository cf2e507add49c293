#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Csv.h"
#include "ProfileItems.h"

namespace kolvane::cli {

using app::CsvRecord;
using app::DisplayOf;
using app::ReadCsv;
using app::WriteCsvRecord;
using app::FieldsOf;
using app::ItemRef;
using app::TopItems;

// The item at path; nullptr-object with error text (naming the closest names) when there is
// none.
ItemRef FindItem(const IProfile& profile, const std::string& path, std::string& error);

// The value text of an item: the plain value; for a structure the brace text of its fields'
// values (read without writing the fields).
std::string ValueOf(const ItemRef& item);
using app::SetValueOf;
using app::RawBytesOf;
using app::RawColumnOf;

}  // namespace kolvane::cli
