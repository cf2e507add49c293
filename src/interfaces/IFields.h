#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "interfaces/IUnknown.h"

namespace kolvane {

class IField;

// The fields of a structured value, in byte order.
class KOLVANE_API IFields : public virtual IUnknown {
 public:
  // Number of fields.
  virtual int32_t IFields_Count() const = 0;
  // The field named index, else the field at the 1-based position the text's leading number
  // gives; nullptr when neither exists.
  virtual std::shared_ptr<IField> IFields_Item(const std::string& index) const = 0;
  // The fields in order.
  virtual std::vector<std::shared_ptr<IField>> IFields_NewEnum() const = 0;
  // Sum of the fields' type lengths in bytes; error 6 on overflow.
  virtual int32_t IFields_Length() const = 0;
};

}  // namespace kolvane
