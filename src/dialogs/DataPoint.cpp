#include "dialogs/DataPoint.h"

#include "foundation/Error.h"

namespace kolvane::internal {

DataPoint::DataPoint(std::shared_ptr<IUnknown> item)
    : object_(std::move(item)), item_(std::dynamic_pointer_cast<DataPointItem>(object_)) {
  if (!item_) {
    RaiseError(ErrorNumber::kTypeMismatch,
               "a dialog edits a network variable, a configuration property or a field");
  }
}

}  // namespace kolvane::internal
