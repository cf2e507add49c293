#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "interfaces/ICompatibleSNVTs.h"
#include "interfaces/IFields.h"
#include "interfaces/ISNVType.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// One configuration property of a profile.
class KOLVANE_API IConfigProperty : public virtual IUnknown {
 public:
  // Name.
  virtual std::string IConfigProperty_Name() const = 0;
  // Renames the property.
  virtual void IConfigProperty_Name(const std::string& value) = 0;
  // The value text (numbers with the user's decimal separator; a structure in braces).
  virtual std::string IConfigProperty_Value() const = 0;
  // Stores the value text as it is; the profile then needs saving.
  virtual void IConfigProperty_Value(const std::string& value) = 0;
  // The value in display units with the unit text.
  virtual std::string IConfigProperty_DispValue() const = 0;
  // The default with the type's own unit.
  virtual std::string IConfigProperty_DispDefault() const = 0;
  // The lower limit for display.
  virtual std::string IConfigProperty_DispMin() const = 0;
  // The upper limit for display.
  virtual std::string IConfigProperty_DispMax() const = 0;
  // The default value text.
  virtual std::string IConfigProperty_DefaultValue() const = 0;
  // Reference text.
  virtual std::string IConfigProperty_RefValue() const = 0;
  // Sets the reference text.
  virtual void IConfigProperty_RefValue(const std::string& value) = 0;
  // Raw bytes of the value as hexadecimal text.
  virtual std::string IConfigProperty_RawValue() const = 0;
  // Edits the value in the dialog of the type's kind, or in the schedule editor.
  virtual void IConfigProperty_SetValue() = 0;
  // Changes the type: bounds, default and editor follow it.
  virtual void IConfigProperty_SetSnvtType(const std::string& type_name) = 0;
  // The property's type.
  virtual std::shared_ptr<ISNVType> IConfigProperty_SNVTType() const = 0;
  // The fields of a structure type, else nullptr.
  virtual std::shared_ptr<IFields> IConfigProperty_Fields() const = 0;
  // Zero-based position in the collection.
  virtual int32_t IConfigProperty_Index() const = 0;
  // Key unique in the profile, e.g. "PGeneric_Profile\CPS\CP3".
  virtual std::string IConfigProperty_GlobalKey() const = 0;
  // The same text as IConfigProperty_GlobalKey.
  virtual std::string IConfigProperty_ExtendedKey() const = 0;
  // Free text of the host.
  virtual std::string IConfigProperty_Tag() const = 0;
  // Sets the free text.
  virtual void IConfigProperty_Tag(const std::string& value) = 0;
  // Index text written as the element's "Index".
  virtual std::string IConfigProperty_IndexInFile() const = 0;
  // Sets the index text.
  virtual void IConfigProperty_IndexInFile(const std::string& value) = 0;
  // Key of the host's point.
  virtual std::string IConfigProperty_PointKey() const = 0;
  // Sets the point key, also as the fields' display-key prefix.
  virtual void IConfigProperty_PointKey(const std::string& value) = 0;
  // Export number; -1 until exported.
  virtual int32_t IConfigProperty_ConnectionIndex() const = 0;
  // Sets the export number.
  virtual void IConfigProperty_ConnectionIndex(int32_t value) = 0;
  // Running connection number given by the host.
  virtual int32_t IConfigProperty_IncrementalConnIndex() const = 0;
  // Sets the running connection number.
  virtual void IConfigProperty_IncrementalConnIndex(int32_t value) = 0;
  // Horizontal place on the host's drawing.
  virtual double IConfigProperty_XPosition() const = 0;
  // Moves the property horizontally; the profile then needs saving.
  virtual void IConfigProperty_XPosition(double value) = 0;
  // Vertical place on the host's drawing.
  virtual double IConfigProperty_YPosition() const = 0;
  // Moves the property vertically; the profile then needs saving.
  virtual void IConfigProperty_YPosition(double value) = 0;
  // Types offered to the host for this property.
  virtual std::shared_ptr<ICompatibleSNVTs> IConfigProperty_AvailableTypes() const = 0;
  // Sets the types offered to the host.
  virtual void IConfigProperty_AvailableTypes(std::shared_ptr<ICompatibleSNVTs> value) = 0;
  // Always 3.
  virtual int32_t IConfigProperty_NodeType() const = 0;
  // Connected, or any field connected.
  virtual bool IConfigProperty_IsConnected() const = 0;
  // A structure of a user type (identifier from "40000" to below "49999"): an array for the
  // firmware.
  virtual bool IConfigProperty_IsArrayForFW() const = 0;
  // A structure of any other type.
  virtual bool IConfigProperty_IsStructForFW() const = 0;
  // The property is mandatory; cleared by loading.
  virtual bool IConfigProperty_Mandatory() const = 0;
};

}  // namespace kolvane
