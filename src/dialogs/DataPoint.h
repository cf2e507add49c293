#pragma once

#include <memory>
#include <string>

#include "interfaces/IFields.h"
#include "interfaces/ISNVType.h"
#include "interfaces/IUnknown.h"

namespace kolvane::internal {

// What the edit dialogs read and write of the item handed to them: a network variable, a
// configuration property or a field implements it with its own members.
class DataPointItem {
 public:
  virtual ~DataPointItem() = default;
  virtual std::string DataPointValue() const = 0;
  virtual void DataPointValue(const std::string& value) = 0;
  virtual std::string DataPointName() const = 0;
  virtual std::shared_ptr<ISNVType> DataPointType() const = 0;
  virtual std::shared_ptr<IFields> DataPointFields() const = 0;
};

// The late-bound "Value", "Name", "SNVTType" and "fields" of an item handed to a dialog.
class DataPoint {
 public:
  // Error 13 when item is none of the items a dialog edits.
  explicit DataPoint(std::shared_ptr<IUnknown> item);

  std::string Value() const { return item_->DataPointValue(); }
  void Value(const std::string& value) { item_->DataPointValue(value); }
  std::string Name() const { return item_->DataPointName(); }
  std::shared_ptr<ISNVType> SNVTType() const { return item_->DataPointType(); }
  std::shared_ptr<IFields> fields() const { return item_->DataPointFields(); }
  // The object handed in.
  const std::shared_ptr<IUnknown>& object() const { return object_; }

 private:
  std::shared_ptr<IUnknown> object_;
  std::shared_ptr<DataPointItem> item_;
};

}  // namespace kolvane::internal
