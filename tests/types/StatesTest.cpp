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

TEST(StatesTest, StatesAreKeyedByValue) {
  CStates states;
  EXPECT_EQ(test::ErrorNumberOf([&] { states.IStates_ToString(); }), 5);

  auto off = State(0, "OFF");
  auto on = State(1, "ON");
  auto duplicate = State(1, "DUP");
  std::shared_ptr<iState> none;
  states.IStates_Add(off);
  states.IStates_Add(on);
  states.IStates_Add(duplicate);
  states.IStates_Add(none);
  EXPECT_EQ(states.IStates_Count(), 2);
  EXPECT_EQ(states.IStates_ToString(), "(0,OFF);(1,ON)");
  EXPECT_EQ(states.IStates_Item(1), on);
  EXPECT_EQ(states.IStates_Item(2), nullptr);

  states.IStates_Remove(none);
  states.IStates_Remove(State(9, "ABSENT"));
  EXPECT_EQ(states.IStates_Count(), 2);
  states.IStates_Remove(State(0, "OTHER"));
  EXPECT_EQ(states.IStates_ToString(), "(1,ON)");
  EXPECT_EQ(states.IStates_Item(0), nullptr);

  // Re-adding the removed value goes to the end.
  states.IStates_Add(off);
  const auto all = states.IStates_NewEnum();
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0], on);
  EXPECT_EQ(all[1], off);
}

TEST(StatesTest, ValuesAreKeysNotPositions) {
  CStates states;
  auto seven = State(7, "SEVEN");
  auto five = State(5, "FIVE");
  auto nul = State(-1, "NUL");
  auto lowest = State(INT16_MIN, "LOW");
  for (auto* state : {&seven, &five, &nul, &lowest}) states.IStates_Add(*state);
  EXPECT_EQ(states.IStates_Item(1), nullptr);
  EXPECT_EQ(states.IStates_Item(7), seven);
  EXPECT_EQ(states.IStates_Item(-1), nul);
  EXPECT_EQ(states.IStates_Item(INT16_MIN), lowest);
  EXPECT_EQ(states.IStates_ToString(), "(7,SEVEN);(5,FIVE);(-1,NUL);(-32768,LOW)");
  EXPECT_EQ(states.IStates_NewEnum(),
            (std::vector<std::shared_ptr<iState>>{seven, five, nul, lowest}));
}

TEST(StatesTest, TypeOverrideHoldsTheVerySetItIsGiven) {
  CTypeOverride override;
  EXPECT_EQ(override.ITypeOverride_OverridingType(), "");
  EXPECT_EQ(override.ITypeOverride_States(), nullptr);
  auto states = std::make_shared<CStates>();
  override.ITypeOverride_OverridingType("switch_state");
  override.ITypeOverride_States(states);
  EXPECT_EQ(override.ITypeOverride_OverridingType(), "switch_state");
  EXPECT_EQ(override.ITypeOverride_States(), states);
  auto on = State(1, "ON");
  states->IStates_Add(on);
  EXPECT_EQ(override.ITypeOverride_States()->IStates_Count(), 1);
}

}  // namespace
}  // namespace kolvane
