#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "ProfileItems.h"

namespace kolvane::app {

// The columns of an export row: "raw" holds the bytes a device holds, "raw_problem" why there
// are none.
const std::vector<std::string>& ExportColumns();

// The converter of the display units chosen.
std::shared_ptr<IUnitConverter> DisplayConverter();

// A number text of a type's own unit in the display units, without the unit; empty and
// "Invalid" as they are.
std::string InDisplayUnits(const std::string& id, const std::string& value);

// The limits an edit of the item enforces, "minimum .. maximum" with units: a number's own
// (a property's bounds) in the display units; the display texts' (LimitsOf) for other kinds.
std::string EnforcedLimitsOf(const ItemRef& item, const std::vector<std::string>& display);

// An item's value as a row holds it: a number in the display units, a structure as its fields
// show.
std::string ExportedValueOf(const ItemRef& item);

// One row per item and field, in the order the panes list them.
std::vector<std::vector<std::string>> ExportRows(const IProfile& profile);

// Writes rows as CSV with a header row, or as the JSON object {"profile", "rows"}.
void WriteExportCsv(std::ostream& out, const std::vector<std::vector<std::string>>& rows);
void WriteExportJson(std::ostream& out, const std::string& profile_name,
                     const std::vector<std::vector<std::string>>& rows);

}  // namespace kolvane::app
