#pragma once

#include <memory>

#include <pugixml.hpp>

#include "foundation/Export.h"

namespace kolvane {

// The units the built-in "UnitManager.Converter" shows values in: the catalogue's own (SI), or US
// customary for the types the unit table names.
enum class UnitSystem { kSI, kUSCustomary };

// Chooses the unit system of the built-in converter on this thread; returns the one it replaces.
KOLVANE_API UnitSystem SetUnitSystem(UnitSystem system);

// The unit system of the built-in converter on this thread.
KOLVANE_API UnitSystem CurrentUnitSystem();

// Hands in the unit table ("units.xml": per type an element "SNVT_" + id with UNIT, FACTOR and
// OFFSET, us = si x FACTOR + OFFSET); hand it in again after editing it, nullptr for none.
KOLVANE_API void SetUnitTable(const std::shared_ptr<pugi::xml_document>& table);

}  // namespace kolvane
