#include "types/CState.h"
#include "types/CStates.h"
#include "types/CTypeOverride.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

std::shared_ptr<iState> State(int16_t value, const std::string& name) {
  auto state = std::make_shared<CState>();
  state->iState_Value(value);
  state->iState_Name(name);
  return state;
}

TEST(StatesTest, StatesAreKeyedByTheirValue) {
  CStates states;
  EXPECT_EQ(test::ErrorNumberOf([&] { states.IStates_ToString(); }), 5);
  auto off = State(0, "OFF"), on = State(1, "ON"), duplicate = State(1, "DUP");
  std::shared_ptr<iState> none;
  for (auto* state : {&off, &on, &duplicate, &none}) states.IStates_Add(*state);
  EXPECT_EQ(states.IStates_ToString(), "(0,OFF);(1,ON)");
  EXPECT_EQ(states.IStates_Item(1), on);
  EXPECT_EQ(states.IStates_Item(2), nullptr);
  states.IStates_Remove(none);
  states.IStates_Remove(State(9, "ABSENT"));
  EXPECT_EQ(states.IStates_Count(), 2);
  states.IStates_Remove(State(0, "OTHER"));
  EXPECT_EQ(states.IStates_ToString(), "(1,ON)");
  states.IStates_Add(off);
  EXPECT_EQ(states.IStates_NewEnum(), (std::vector{on, off}));

  // Values are keys, not positions.
  auto seven = State(7, "SEVEN"), nul = State(-1, "NUL"), lowest = State(INT16_MIN, "LOW");
  for (auto* state : {&seven, &nul, &lowest}) states.IStates_Add(*state);
  states.IStates_Remove(on);
  EXPECT_EQ(states.IStates_Item(1), nullptr);
  EXPECT_EQ(states.IStates_Item(7), seven);
  EXPECT_EQ(states.IStates_Item(-1), nul);
  EXPECT_EQ(states.IStates_Item(INT16_MIN), lowest);
  EXPECT_EQ(states.IStates_ToString(), "(0,OFF);(7,SEVEN);(-1,NUL);(-32768,LOW)");
  EXPECT_EQ(states.IStates_NewEnum(), (std::vector{off, seven, nul, lowest}));
}

TEST(StatesTest, TypeOverrideHoldsTheVerySetItIsGiven) {
  CTypeOverride override;
  auto set = std::make_shared<CStates>();
  override.ITypeOverride_OverridingType("switch_state");
  override.ITypeOverride_States(set);
  EXPECT_EQ(override.ITypeOverride_OverridingType(), "switch_state");
  EXPECT_EQ(override.ITypeOverride_States(), set);
}

}  // namespace
}  // namespace kolvane
