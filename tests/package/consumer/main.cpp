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
  // A profile made and loaded through the exported surface only.
  auto catalogue = std::make_shared<pugi::xml_document>();
  catalogue->load_string(
      "<SNVTS><SNVT_temp_p><NAME>temp_p</NAME><TYPE>SignedNumeric</TYPE><LENGTH>2</LENGTH>"
      "<A_COEF>1</A_COEF><B_COEF>-2</B_COEF><C_COEF>0</C_COEF></SNVT_temp_p></SNVTS>");
  auto document = std::make_shared<pugi::xml_document>();
  document->load_string(
      "<Profile><Name>Room</Name><NVs><nviTemp Type='temp_p' Direction='In' Key='P1'/></NVs>"
      "</Profile>");
  auto profile = kolvane::CreateProfile();
  profile->Iprofile_SetXmlDomDocs(catalogue, nullptr);
  std::string name;
  profile->IProfile_FriendSet(document, name, nullptr, catalogue, nullptr, "");
  auto variable = profile->IProfile_NVs()->INetworkVariables_Item("NV1");
  if (name != "Room" || !variable) return 5;
  variable->INetworkVariable_Value("21.5");
  if (variable->INetworkVariable_RawValue() != "0866") return 6;
  std::cout << "consumer ok\n";
  return 0;
}
