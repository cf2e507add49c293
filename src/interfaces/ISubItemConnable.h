#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "interfaces/ISNVType.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// What the host needs to connect an item to a point.
class KOLVANE_API ISubItemConnable : public virtual IUnknown {
 public:
  // A connection to the item was made (true) or undone (false).
  virtual void ISubItemConnable_IsConnected(bool value) = 0;
  // Marks the item as the one with priority.
  virtual void ISubItemConnable_HasPriority(bool value) = 0;
  // Assigns a running connection number.
  virtual void ISubItemConnable_IncrementalConnIndex(int32_t value) = 0;
  // Tells which type was connected.
  virtual void ISubItemConnable_ConnectedType(const std::string& value) = 0;
  // Kind of item for connection purposes: 2 network variable, 3 property, fields their own.
  virtual int32_t ISubItemConnable_ItemType() const = 0;
  // Profile-wide key.
  virtual std::string ISubItemConnable_GlobalKey() const = 0;
  // Name.
  virtual std::string ISubItemConnable_Name() const = 0;
  // Type.
  virtual std::shared_ptr<ISNVType> ISubItemConnable_SNVTType() const = 0;
  // Whether a point of the named type may be connected.
  virtual bool ISubItemConnable_IsSNVTCompatible(const std::string& type_name) = 0;
};

}  // namespace kolvane
