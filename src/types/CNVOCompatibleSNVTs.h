#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "foundation/KeyedCollection.h"
#include "interfaces/IClonable.h"
#include "interfaces/ICompatibleSNVTs.h"

namespace kolvane {

// A list of compatible types keyed by identifier. Create with
// std::make_shared<CNVOCompatibleSNVTs>().
class KOLVANE_API CNVOCompatibleSNVTs final : public ICompatibleSNVTs, public IClonable {
 public:
  int32_t ICompatibleSNVTs_Count() const override;
  std::shared_ptr<ICompatibleSNVT> ICompatibleSNVTs_Item(int32_t position) const override;
  std::vector<std::shared_ptr<ICompatibleSNVT>> ICompatibleSNVTs_NewEnum() const override;
  void ICompatibleSNVTs_Add(const std::string& text) override;
  void ICompatibleSNVTs_Remove(const std::string& id) override;
  bool ICompatibleSNVTs_Exists(const std::string& id) const override;
  std::shared_ptr<ICompatibleSNVTs> ICompatibleSNVTs_Merge(
      const std::shared_ptr<ICompatibleSNVTs>& other) const override;
  std::string ICompatibleSNVTs_ToString() const override;
  std::shared_ptr<IUnknown> IClonable_Clone() const override;

  // Adds the identifiers of a comma-separated text, yielding to the host before each one.
  void AddList(const std::string& text);

 private:
  // Adds one entry; a duplicate identifier is skipped.
  void AddEntry(const std::string& id);

  KeyedCollection<std::shared_ptr<ICompatibleSNVT>> entries_;
};

}  // namespace kolvane
