#include "types/CState.h"

#include <utility>

namespace kolvane {

std::string CState::iState_Name() const { return name_; }

void CState::iState_Name(std::string value) { name_ = std::move(value); }

int16_t CState::iState_Value() const { return value_; }

void CState::iState_Value(int16_t value) { value_ = value; }

std::string CState::iState_ToString() const {
  return "(" + std::to_string(value_) + "," + name_ + ")";
}

}  // namespace kolvane
