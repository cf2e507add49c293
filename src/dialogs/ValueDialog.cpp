#include "dialogs/ValueDialog.h"

namespace kolvane {

void ValueDialog::DataPoint(std::shared_ptr<IUnknown> item) {
  internal::DataPoint point(item);
  std::string value = point.Value();
  items_.push_back({std::move(point), std::move(value)});
}

void ValueDialog::Form_Unload(int16_t& /*Cancel*/) {
  if (called_from_structure_) {
    for (Item& item : items_) item.point.Value(item.value_at_entry);
  }
  called_from_structure_ = false;
}

}  // namespace kolvane
