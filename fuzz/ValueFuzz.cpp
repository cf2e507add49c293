// A type of any kind, length and scaling made from the fuzzer's bytes, a property of it with a
// fuzzed value, and a user typing into its edit dialog: raw conversion, display texts and every
// dialog must neither crash nor hang.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "FuzzHost.h"
#include "FuzzSupport.h"

#include "Kolvane.h"
#include "conversion/SNVTDataConversion.h"
#include "cp/CConfigProperties.h"
#include "cp/CConfigProperty.h"
#include "foundation/Globals.h"
#include "types/CSNVTType.h"

namespace {

constexpr const char* kKinds[] = {"SignedNumeric", "UnsignedNumeric", "Float", "Bitfield",
                                  "Enum",          "Textual",         "Struct"};

std::string Escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '<') {
      out += "&lt;";
    } else if (c == '&') {
      out += "&amp;";
    } else if (c != '\0') {
      out += c;
    }
  }
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider bytes(data, size);
  const std::string kind = kKinds[bytes.ConsumeIntegralInRange<size_t>(0, 6)];
  const int length = bytes.ConsumeIntegralInRange<int>(0, 40);
  const int a = bytes.ConsumeIntegralInRange<int>(-8, 8);
  const int b = bytes.ConsumeIntegralInRange<int>(-8, 4);
  const int c = bytes.ConsumeIntegralInRange<int>(-40000, 40000);
  const std::string low = bytes.ConsumeRandomLengthString(12);
  const std::string high = bytes.ConsumeRandomLengthString(12);
  const std::string value = bytes.ConsumeRandomLengthString(40);
  const std::string comma = bytes.ConsumeBool() ? "," : ".";
  const std::string catalogue_text =
      "<SNVTS><SNVT_t><NAME>t</NAME><TYPE>" + kind + "</TYPE><LENGTH>" + std::to_string(length) +
      "</LENGTH><A_COEF>" + std::to_string(a) + "</A_COEF><B_COEF>" + std::to_string(b) +
      "</B_COEF><C_COEF>" + std::to_string(c) + "</C_COEF><MIN>" + Escaped(low) + "</MIN><MAX>" +
      Escaped(high) + "</MAX><UNIT>°C</UNIT><Enums><S0>0</S0><S1>1</S1><S_NUL>-1</S_NUL></Enums>"
      "<Fields><x>u</x><y>t2</y></Fields></SNVT_t>"
      "<SNVT_u><NAME>u</NAME><TYPE>UnsignedNumeric</TYPE><LENGTH>1</LENGTH><A_COEF>1</A_COEF>"
      "</SNVT_u><SNVT_t2><NAME>t2</NAME><TYPE>Enum</TYPE><Enums><OFF>0</OFF><ON>1</ON></Enums>"
      "</SNVT_t2></SNVTS>";
  auto catalogue = std::make_shared<pugi::xml_document>();
  if (!catalogue->load_string(catalogue_text.c_str())) return 0;
  kolvane::Globals::SetSnvtCatalogDocument(catalogue);
  kolvane::Globals::DecimalSeparator = comma;
  kolvane::Globals::AlternateSeparator = comma == "," ? "." : ",";

  kolvane::CSNVTType type;
  type.Load("t");
  Try([&] { (void)kolvane::SNVTDataConversion::TypedValueToRaw(value, type); });
  Try([&] { (void)kolvane::SNVTDataConversion::CheckedValueToRaw(value, type); });

  kolvane::CConfigProperties properties;
  auto property = properties.IConfigProperties_AddNewCP("nciValue", "t");
  if (property) {
    Try([&] { property->IConfigProperty_Value(value); });
    Try([&] { (void)property->IConfigProperty_Value(); });
    (void)kolvane::CheckedRawBytes(property);
    Try([&] { (void)property->IConfigProperty_DispValue(); });
    Try([&] { (void)property->IConfigProperty_DispMin(); });
    Try([&] { (void)property->IConfigProperty_RawValue(); });
    FuzzedUser user(bytes);
    auto previous = kolvane::SetFormHost(std::shared_ptr<kolvane::FormHost>(
        &user, [](kolvane::FormHost*) {}));
    Try([&] { property->IConfigProperty_SetValue(); });
    kolvane::SetFormHost(previous);
    Try([&] { (void)property->IConfigProperty_RawValue(); });
  }
  kolvane::Globals::DecimalSeparator = ".";
  kolvane::Globals::AlternateSeparator = ",";
  kolvane::Globals::SetSnvtCatalogDocument(nullptr);
  return 0;
}
