#pragma once

#include <cstdint>
#include <string>

#include "interfaces/iState.h"

namespace kolvane {

// One enumeration state. Create with std::make_shared<CState>().
class KOLVANE_API CState final : public iState {
 public:
  std::string iState_Name() const override;
  void iState_Name(std::string value) override;
  int16_t iState_Value() const override;
  void iState_Value(int16_t value) override;
  std::string iState_ToString() const override;

 private:
  std::string name_;
  int16_t value_ = 0;
};

}  // namespace kolvane
