#pragma once

#include <cstdint>
#include <string>

#include "interfaces/IUnknown.h"

namespace kolvane {

// A standard network variable type as the type catalogue defines it. Read-only.
class KOLVANE_API ISNVType : public virtual IUnknown {
 public:
  // Identifier the type was loaded with (the text after "SNVT_").
  virtual std::string ISNVType_ID() const = 0;
  // Region code ("K4REGION").
  virtual int32_t ISNVType_K4Region() const = 0;
  // Factor ("FACTOR").
  virtual int32_t ISNVType_Factor() const = 0;
  // Scaling coefficient A of value = A * 10^B * (raw + C).
  virtual int32_t ISNVType_ACoef() const = 0;
  // Scaling coefficient B.
  virtual int32_t ISNVType_BCoef() const = 0;
  // Scaling coefficient C.
  virtual int32_t ISNVType_CCoef() const = 0;
  // Kind: "SignedNumeric", "UnsignedNumeric", "Float", "Bitfield", "Enum", "Textual", "Struct".
  virtual std::string ISNVType_GenType() const = 0;
  // "Numeric", "Float", "Logic", "Textual" or "Invalid", derived from the kind.
  virtual std::string ISNVType_LUIType() const = 0;
  // The value that means invalid ("255" for every enumeration).
  virtual std::string ISNVType_InvalidValue() const = 0;
  // Display name.
  virtual std::string ISNVType_Name() const = 0;
  // Minimum, as text.
  virtual std::string ISNVType_Min() const = 0;
  // Maximum, as text.
  virtual std::string ISNVType_Max() const = 0;
  // Engineering unit text.
  virtual std::string ISNVType_Units() const = 0;
  // BACnet engineering unit text.
  virtual std::string ISNVType_BACnetUnits() const = 0;
  // Enumeration states as "value,name;" entries, e.g. "0,OFF;1,ON;".
  virtual std::string ISNVType_EnumDesc() const = 0;
  // Length in bytes.
  virtual int32_t ISNVType_Length() const = 0;
  // Always false: structures are told by their kind.
  virtual bool ISNVType_HasField() const = 0;
};

}  // namespace kolvane
