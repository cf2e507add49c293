#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "interfaces/IFields.h"
#include "interfaces/ISNVType.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// What the host's point list shows of an item.
class KOLVANE_API IDisplayItem : public virtual IUnknown {
 public:
  // Text shown for the item.
  virtual std::string IDisplayItem_DisplayText() const = 0;
  // The host proposes a text.
  virtual void IDisplayItem_DisplayText(const std::string& value) = 0;
  // Key of the host point bound to the item.
  virtual std::string IDisplayItem_Key() const = 0;
  // Kind of item: 1 input, 2 output, 0 property, 3 to 5 fields.
  virtual int32_t IDisplayItem_ItemType() const = 0;
  // Icon number for the list.
  virtual int32_t IDisplayItem_Icon() const = 0;
  // The host may write the value.
  virtual bool IDisplayItem_IsWritable() const = 0;
  // The value may be trended.
  virtual bool IDisplayItem_IsTrendable() const = 0;
  // Reference text.
  virtual std::string IDisplayItem_Reference() const = 0;
  // The item is connected.
  virtual bool IDisplayItem_IsConnected() const = 0;
  // The item is to be listed.
  virtual bool IDisplayItem_IsDisplayable() const = 0;
  // The item's type.
  virtual std::shared_ptr<ISNVType> IDisplayItem_SNVTType() const = 0;
  // Sub-items, or nullptr.
  virtual std::shared_ptr<IFields> IDisplayItem_Fields() const = 0;
};

}  // namespace kolvane
