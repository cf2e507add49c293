#include "types/CStates.h"

#include "foundation/Error.h"
#include "foundation/Numbers.h"

namespace kolvane {

std::shared_ptr<iState> CStates::IStates_Item(int16_t value) const {
  const auto* state = states_.Find(std::to_string(value));
  return state ? *state : nullptr;
}

int16_t CStates::IStates_Count() const { return RoundToInt16(states_.Count()); }

std::vector<std::shared_ptr<iState>> CStates::IStates_NewEnum() const { return states_.Values(); }

void CStates::IStates_Add(std::shared_ptr<iState>& state) {
  if (!state) return;
  const std::string key = std::to_string(state->iState_Value());
  if (!states_.Contains(key)) states_.Add(key, state);
}

void CStates::IStates_Remove(const std::shared_ptr<iState>& state) {
  if (!state) return;
  const std::string key = std::to_string(state->iState_Value());
  if (states_.Contains(key)) states_.Remove(key);
}

std::string CStates::IStates_ToString() const {
  if (states_.Count() == 0) {
    RaiseError(ErrorNumber::kInvalidProcedureCall, "the set holds no state");
  }
  std::string text;
  for (const auto& entry : states_) text += entry.item->iState_ToString() + ";";
  text.pop_back();
  return text;
}

}  // namespace kolvane
