#pragma once

#include <string>

#include "interfaces/IUnknown.h"

namespace kolvane {

// The outside schedule editor, created by ProgID
// "Brask.Ondo.UI.SchedulerEditor.SchedulerFace"; a host registers one.
class KOLVANE_API IScheduleEditor : public virtual IUnknown {
 public:
  // The exchange text: one "FIELD" element (see CConfigProperty::ScheduleExchangeText).
  virtual std::string xml() const = 0;
  // Hands the editor the exchange text.
  virtual void xml(const std::string& value) = 0;
  // Path of the type catalogue the editor reads.
  virtual void TypeDBPath(const std::string& value) = 0;
  // Shows the editor modally; the edited text is read back through xml().
  virtual void ShowDialog() = 0;
};

}  // namespace kolvane
