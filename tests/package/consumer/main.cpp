// A host built against the installed package: only Kolvane.h and the exported target.
#include <Kolvane.h>

#include <iostream>
#include <memory>

int main() {
  auto states = std::make_shared<kolvane::CStates>();
  for (int16_t value : {0, 1}) {
    std::shared_ptr<kolvane::iState> state = std::make_shared<kolvane::CState>();
    state->iState_Value(value);
    state->iState_Name(value ? "ON" : "OFF");
    states->IStates_Add(state);
  }
  std::shared_ptr<kolvane::IUnknown> unknown = states;
  auto as_states = std::dynamic_pointer_cast<kolvane::IStates>(unknown);
  if (!as_states || as_states->IStates_ToString() != "(0,OFF);(1,ON)") return 1;

  std::string shown;
  kolvane::SetMessageBoxHandler([&](const std::string& text, int32_t, const std::string&) {
    shown = text;
    return kolvane::vbOK;
  });
  kolvane::MsgBox("hello");
  if (shown != "hello") return 2;

  try {
    kolvane::CreateObject("No.Such.Component");
    return 3;
  } catch (const kolvane::Error& error) {
    if (error.number() != 429) return 4;
  }
  std::cout << "consumer ok\n";
  return 0;
}
