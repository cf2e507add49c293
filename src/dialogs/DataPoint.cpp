#include "dialogs/DataPoint.h"

#include "foundation/Error.h"

namespace kolvane::internal {

DataPoint::DataPoint(const std::shared_ptr<IUnknown>& item)
    : item_(std::dynamic_pointer_cast<DataPointItem>(item)) {
  if (item_.expired()) {
    RaiseError(ErrorNumber::kTypeMismatch,
               "a dialog edits a network variable, a configuration property or a field");
  }
}

std::shared_ptr<DataPointItem> DataPoint::Item() const {
  auto item = item_.lock();
  if (!item) RaiseError(ErrorNumber::kObjectNotSet, "the edited item is gone");
  return item;
}

}  // namespace kolvane::internal
