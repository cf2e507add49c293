#pragma once

#include <string>

#include "interfaces/IScheduleEditor.h"

namespace kolvane {

// The built-in schedule editor of "Brask.Ondo.UI.SchedulerEditor.SchedulerFace": shows a
// schedule property's exchange text in frmSchedule through the host's form host, and hands the
// edited text back; Cancel leaves the text as it was. Types are read from the catalogue the
// library was handed, or from TypeDBPath when none was.
class CScheduleEditor final : public IScheduleEditor {
 public:
  std::string xml() const override { return xml_; }
  void xml(const std::string& value) override { xml_ = value; }
  void TypeDBPath(const std::string& value) override { type_db_path_ = value; }
  // Error 5 when the text is no schedule of the catalogue's schedule types.
  void ShowDialog() override;

 private:
  std::string xml_;
  std::string type_db_path_;
};

}  // namespace kolvane
