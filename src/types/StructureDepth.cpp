#include "types/StructureDepth.h"

#include "foundation/Error.h"
#include "foundation/HostServices.h"

namespace kolvane::internal {

namespace {

thread_local int nesting = 0;
thread_local int32_t fields = 0;
thread_local bool reported = false;
thread_local bool reported_depth = false;
thread_local std::string outermost;

}  // namespace

StructureExpansion::StructureExpansion(const std::string& type_name) {
  if (nesting++ == 0) {
    fields = 0;
    reported = false;
    reported_depth = false;
    outermost = type_name;
  }
}

StructureExpansion::~StructureExpansion() { --nesting; }

void StructureExpansion::CountField() {
  if (++fields <= kMaxStructureFields) return;
  const std::string text = "Error: SNVT_" + outermost + " has more than " +
                           std::to_string(kMaxStructureFields) + " fields";
  if (!reported) {
    reported = true;
    MsgBox(text, vbOKOnly);
  }
  RaiseError(ErrorNumber::kOutOfStackSpace, text);
}

void StructureExpansion::TooDeep() {
  const std::string text = "Error: SNVT_" + outermost + " nests deeper than " +
                           std::to_string(kMaxStructureDepth) + " levels";
  if (!reported_depth) {
    reported_depth = true;
    MsgBox(text, vbOKOnly);
  }
  RaiseError(ErrorNumber::kOutOfStackSpace, text);
}

}  // namespace kolvane::internal
