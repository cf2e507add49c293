#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "interfaces/ICompatibleSNVT.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// The types an item may be connected with or switched to, keyed by identifier.
class KOLVANE_API ICompatibleSNVTs : public virtual IUnknown {
 public:
  // Number of entries.
  virtual int32_t ICompatibleSNVTs_Count() const = 0;
  // The entry at a 1-based position, or nullptr when out of range.
  virtual std::shared_ptr<ICompatibleSNVT> ICompatibleSNVTs_Item(int32_t position) const = 0;
  // The entries in insertion order.
  virtual std::vector<std::shared_ptr<ICompatibleSNVT>> ICompatibleSNVTs_NewEnum() const = 0;
  // Adds the identifiers of a comma-separated text; duplicates are skipped and an empty token
  // ends the list ("a,,b" adds only a).
  virtual void ICompatibleSNVTs_Add(const std::string& text) = 0;
  // Removes the entry of an identifier; error 5 when there is none.
  virtual void ICompatibleSNVTs_Remove(const std::string& id) = 0;
  // True when the list holds the identifier (without regard to case).
  virtual bool ICompatibleSNVTs_Exists(const std::string& id) const = 0;
  // A new list of the other list's entries that this list holds too, in the other list's order.
  virtual std::shared_ptr<ICompatibleSNVTs> ICompatibleSNVTs_Merge(
      const std::shared_ptr<ICompatibleSNVTs>& other) const = 0;
  // The list as text, made by the "Moraface.Utility" component.
  virtual std::string ICompatibleSNVTs_ToString() const = 0;
};

}  // namespace kolvane
