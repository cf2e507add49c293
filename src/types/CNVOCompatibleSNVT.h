#pragma once

#include <string>

#include "interfaces/ICompatibleSNVT.h"

namespace kolvane {

// One entry of a compatible type list.
class KOLVANE_API CNVOCompatibleSNVT final : public ICompatibleSNVT {
 public:
  std::string ICompatibleSNVT_ID() const override;

  // Sets the identifier; used once, when the entry is made.
  void SetID(const std::string& id);

 private:
  std::string id_;
};

}  // namespace kolvane
