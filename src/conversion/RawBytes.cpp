#include "conversion/RawBytes.h"

#include "foundation/Error.h"
#include "conversion/SNVTDataConversion.h"
#include "items/ItemCore.h"

namespace kolvane {

RawBytes CheckedRawBytes(const std::shared_ptr<IUnknown>& item) {
  const auto core = std::dynamic_pointer_cast<internal::ItemCore>(item);
  if (!core) return {"", "not a network variable, configuration property or field"};
  try {
    return {core->CheckedRawText(), ""};
  } catch (const Error& error) {
    return {"", error.detail()};
  }
}

RawBytes CheckedRawBytes(const std::string& value, const ISNVType& type) {
  try {
    return {SNVTDataConversion::CheckedValueToRaw(value, type), ""};
  } catch (const Error& error) {
    return {"", error.detail()};
  }
}

}  // namespace kolvane
