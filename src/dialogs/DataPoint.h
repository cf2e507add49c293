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
  virtual std::string DataPointValue() = 0;
  virtual void DataPointValue(const std::string& value) = 0;
  virtual std::string DataPointName() const = 0;
  virtual std::shared_ptr<ISNVType> DataPointType() const = 0;
  virtual std::shared_ptr<IFields> DataPointFields() const = 0;
};

// The late-bound "Value", "Name", "SNVTType" and "fields" of an item handed to a dialog. Items
// keep their dialogs, so the dialog holds its item weakly; an item that is gone raises 91.
class DataPoint {
 public:
  // Error 13 when item is none of the items a dialog edits.
  explicit DataPoint(const std::shared_ptr<IUnknown>& item);

  std::string Value() { return Item()->DataPointValue(); }
  void Value(const std::string& value) { Item()->DataPointValue(value); }
  std::string Name() const { return Item()->DataPointName(); }
  std::shared_ptr<ISNVType> SNVTType() const { return Item()->DataPointType(); }
  std::shared_ptr<IFields> fields() const { return Item()->DataPointFields(); }

 private:
  std::shared_ptr<DataPointItem> Item() const;

  std::weak_ptr<DataPointItem> item_;
};

}  // namespace kolvane::internal
