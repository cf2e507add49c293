#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "interfaces/IFields.h"
#include "interfaces/ISNVType.h"
#include "interfaces/IUnknown.h"

namespace kolvane {

// One named field of a structured value.
class KOLVANE_API IField : public virtual IUnknown {
 public:
  // Field name, as the catalogue names it.
  virtual std::string IField_Name() const = 0;
  // 1-based position among its siblings.
  virtual int32_t IField_Index() const = 0;
  // Byte offset inside the owner's raw value (a structure field: its first sub-field's).
  virtual int32_t IField_Offset() const = 0;
  // The owner: a network variable, a configuration property or a field.
  virtual std::shared_ptr<IUnknown> IField_Parent() const = 0;
  // The field's own type.
  virtual std::shared_ptr<ISNVType> IField_SNVTType() const = 0;
  // The sub-fields of a structure field, else nullptr.
  virtual std::shared_ptr<IFields> IField_Fields() const = 0;
  // Owner's global key, "\", name.
  virtual std::string IField_GlobalKey() const = 0;
  // The same text as IField_GlobalKey.
  virtual std::string IField_ExtendedKey() const = 0;
  // Item-type code handed in when the field was built.
  virtual int32_t IField_NodeType() const = 0;
  // True while at least one connection uses the field.
  virtual bool IField_IsConnected() const = 0;
  // Lets the field be listed (see IDisplayItem_IsDisplayable).
  virtual void IField_IsDisplayUsable(bool value) = 0;
  // Reference value text.
  virtual std::string IField_RefValue() const = 0;
  // Sets the reference value text.
  virtual void IField_RefValue(const std::string& value) = 0;
  // Does nothing: a field is loaded through its owner.
  virtual void IField_Load() = 0;
  // Does nothing: a field is saved through its owner.
  virtual void IField_Save() = 0;
  // Does nothing.
  virtual void IField_Import() = 0;
  // Does nothing.
  virtual void IField_Export() = 0;
  // Does nothing: a field's value is edited through its owner's dialog.
  virtual void IField_SetValue() = 0;
  // The value text (numbers with the user's decimal separator; a structure in braces).
  virtual std::string IField_Value() const = 0;
  // Stores the value text as it is.
  virtual void IField_Value(const std::string& value) = 0;
  // The type's default value text, asked of the units converter.
  virtual std::string IField_DefaultValue() const = 0;
  // The value in display units, with the unit text.
  virtual std::string IField_DispValue() const = 0;
  // The default with the type's own unit text.
  virtual std::string IField_DispDefault() const = 0;
  // The type's minimum in display units.
  virtual std::string IField_DispMin() const = 0;
  // The type's maximum in display units.
  virtual std::string IField_DispMax() const = 0;
};

}  // namespace kolvane
