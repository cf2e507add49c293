#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dialogs/DataPoint.h"
#include "dialogs/Form.h"

namespace kolvane {

// What the dialogs that edit one value share: the items handed in with their values at entry,
// and the flag set by the structure dialog that opened them.
class KOLVANE_API ValueDialog : public Form {
 public:
  // Adds an item to those the dialog edits and remembers its value at entry; error 13 for an
  // object that is no network variable, configuration property or field.
  void DataPoint(std::shared_ptr<IUnknown> item);

  // Set by the structure dialog that opens this one: closing without OK gives the items their
  // values at entry back.
  void CalledFramModif4(bool value) { called_from_structure_ = value; }

  // True while the structure dialog's flag is set.
  bool CalledFramModif4() const { return called_from_structure_; }

  void Form_Unload(int16_t& Cancel) override;

 protected:
  struct Item {
    internal::DataPoint point;
    std::string value_at_entry;
  };
  std::vector<Item> items_;

 private:
  bool called_from_structure_ = false;
};

}  // namespace kolvane
