#include "host/BuiltInComponents.h"

#include <memory>

#include "host/CScheduleEditor.h"
#include "host/CUnitConverter.h"
#include "host/CXifGenerator.h"
#include "host/CUtility.h"

namespace kolvane::internal {

// The built-in components keep no state of their own: every item of a thread shares one.
template <class Component>
ClassFactory Shared() {
  return [] {
    thread_local const auto component = std::make_shared<Component>();
    return component;
  };
}

std::vector<std::pair<std::string, ClassFactory>> BuiltInComponents() {
  return {
      {"UnitManager.Converter", Shared<CUnitConverter>()},
      {"Moraface.Utility", Shared<CUtility>()},
      // The generator keeps what it is handed: a new one each time.
      {"TarnXIFandTypesGen.XIFAndTypesGen", [] { return std::make_shared<CXifGenerator>(); }},
      {"Brask.Ondo.UI.SchedulerEditor.SchedulerFace", [] { return std::make_shared<CScheduleEditor>(); }},
  };
}

}  // namespace kolvane::internal
