#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "interfaces/ICompatibleSNVTs.h"
#include "interfaces/IFields.h"
#include "interfaces/ISNVType.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// One network variable: an input or an output of a standard type.
class KOLVANE_API INetworkVariable : public virtual IUnknown {
 public:
  // Types offered to the host for this variable.
  virtual std::shared_ptr<ICompatibleSNVTs> INetworkVariable_AvailableTypes() const = 0;
  // Sets the types offered to the host.
  virtual void INetworkVariable_AvailableTypes(std::shared_ptr<ICompatibleSNVTs> value) = 0;
  // Export (connection) number; -1 for a variable not yet exported.
  virtual int32_t INetworkVariable_ConnectionIndex() const = 0;
  // Sets the export number.
  virtual void INetworkVariable_ConnectionIndex(int32_t value) = 0;
  // The default value text.
  virtual std::string INetworkVariable_DefaultValue() const = 0;
  // 0 input, 1 output.
  virtual int32_t INetworkVariable_Direction() const = 0;
  // The same text as INetworkVariable_GlobalKey.
  virtual std::string INetworkVariable_ExtendedKey() const = 0;
  // The fields of a structure type, else nullptr.
  virtual std::shared_ptr<IFields> INetworkVariable_Fields() const = 0;
  // Key unique in the profile, e.g. "PGeneric_Profile\NVS\NV3".
  virtual std::string INetworkVariable_GlobalKey() const = 0;
  // Running connection number given by the host; -1 until then.
  virtual int32_t INetworkVariable_IncrementalConnIndex() const = 0;
  // Zero-based position in the collection.
  virtual int32_t INetworkVariable_Index() const = 0;
  // The variable is flagged "IsNC".
  virtual bool INetworkVariable_isNC() const = 0;
  // Offset of the point in the field-bus map; -1 when none.
  virtual int32_t INetworkVariable_K4Offset() const = 0;
  // Sets the field-bus map offset.
  virtual void INetworkVariable_K4Offset(int32_t value) = 0;
  // The item this variable is linked to, or nullptr.
  virtual std::shared_ptr<IUnknown> INetworkVariable_LinkedSource() const = 0;
  // Links the variable to an item.
  virtual void INetworkVariable_LinkedSource(std::shared_ptr<IUnknown> value) = 0;
  // The variable is mandatory in the profile.
  virtual bool INetworkVariable_Mandatory() const = 0;
  // Name.
  virtual std::string INetworkVariable_Name() const = 0;
  // Renames the variable.
  virtual void INetworkVariable_Name(const std::string& value) = 0;
  // Always 2.
  virtual int32_t INetworkVariable_NodeType() const = 0;
  // Key of the host's point.
  virtual std::string INetworkVariable_PointKey() const = 0;
  // Sets the point key, also for every field.
  virtual void INetworkVariable_PointKey(const std::string& value) = 0;
  // Reference text.
  virtual std::string INetworkVariable_RefValue() const = 0;
  // Sets the reference text.
  virtual void INetworkVariable_RefValue(const std::string& value) = 0;
  // Types this variable may be connected with, from the NVO table; nullptr before a rebuild.
  virtual std::shared_ptr<ICompatibleSNVTs> INetworkVariable_SNVTCompatibles() const = 0;
  // The variable's type.
  virtual std::shared_ptr<ISNVType> INetworkVariable_SNVTType() const = 0;
  // Free text of the host.
  virtual std::string INetworkVariable_Tag() const = 0;
  // Sets the free text.
  virtual void INetworkVariable_Tag(const std::string& value) = 0;
  // Horizontal place on the host's drawing.
  virtual double INetworkVariable_XPosition() const = 0;
  // Moves the variable horizontally; the profile then needs saving.
  virtual void INetworkVariable_XPosition(double value) = 0;
  // Vertical place on the host's drawing.
  virtual double INetworkVariable_YPosition() const = 0;
  // Moves the variable vertically; the profile then needs saving.
  virtual void INetworkVariable_YPosition(double value) = 0;
  // Changes the type (same direction) and rebuilds the fields.
  virtual void INetworkVariable_SetSnvtType(const std::string& type_name) = 0;
  // Connected: an output's flag; an input's flag or any connected field.
  virtual bool INetworkVariable_IsConnected() const = 0;
  // The value text (a structure's: its field values, which this also writes into the fields).
  virtual std::string INetworkVariable_Value() = 0;
  // Stores the value text as it is; the profile then needs saving.
  virtual void INetworkVariable_Value(const std::string& value) = 0;
  // The value in display units with the unit text.
  virtual std::string INetworkVariable_DispValue() const = 0;
  // The default with the type's own unit.
  virtual std::string INetworkVariable_DispDefault() const = 0;
  // The lower limit for display.
  virtual std::string INetworkVariable_DispMin() const = 0;
  // The upper limit for display.
  virtual std::string INetworkVariable_DispMax() const = 0;
  // Raw bytes of the value as hexadecimal text.
  virtual std::string INetworkVariable_RawValue() const = 0;
  // Raw bytes of the type's invalid value.
  virtual std::string INetworkVariable_InvalidRaw() const = 0;
  // Opens the variable's options dialog.
  virtual void INetworkVariable_SetValue() = 0;
  // Does nothing: variables are saved through the profile. Returns "".
  virtual std::string INetworkVariable_XMLSave() = 0;
};

}  // namespace kolvane
