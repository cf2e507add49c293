#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dialogs/DataPoint.h"
#include "dialogs/Form.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// Edits a structured value field by field, opening each field's own dialog.
class KOLVANE_API frmCPModif4 final : public Form {
 public:
  std::string Caption() const override { return "Structure Value"; }

  // Adds an item to those the dialog edits; error 13 for an object that is no network variable,
  // configuration property or field.
  void DataPoint(const std::shared_ptr<IUnknown>& item) { items_.emplace_back(item); }

  Label lblName;
  ListView lvwMain;
  CommandButton cmdOk{"OK"};
  CommandButton cmdCancel{"Cancel"};

 private:
  std::vector<internal::DataPoint> items_;
};

}  // namespace kolvane
