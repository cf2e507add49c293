#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/KeyedCollection.h"
#include "interfaces/IStates.h"

namespace kolvane {

// A set of enumeration states keyed by value. Create with std::make_shared<CStates>().
class KOLVANE_API CStates final : public IStates {
 public:
  std::shared_ptr<iState> IStates_Item(int16_t value) const override;
  int16_t IStates_Count() const override;
  std::vector<std::shared_ptr<iState>> IStates_NewEnum() const override;
  void IStates_Add(std::shared_ptr<iState>& state) override;
  void IStates_Remove(const std::shared_ptr<iState>& state) override;
  std::string IStates_ToString() const override;

 private:
  KeyedCollection<std::shared_ptr<iState>> states_;
};

}  // namespace kolvane
