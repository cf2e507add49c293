#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <variant>

#include "dialogs/Form.h"

// A user driven by the fuzzer's bytes: each form shown gets a run of actions on its controls
// (keys typed into text boxes, boxes checked, entries chosen, buttons clicked, cells
// double-clicked) until the bytes run out or the form closes. Nested forms get the same user.
class FuzzedUser final : public kolvane::FormHost {
 public:
  explicit FuzzedUser(FuzzedDataProvider& bytes) : bytes_(bytes) {}

  void RunModal(kolvane::Form& form) override {
    if (++depth_ > 4) {  // a structure dialog opens its fields' dialogs: not without end
      --depth_;
      return;
    }
    for (int step = 0; step < 64 && form.Loaded() && bytes_.remaining_bytes() > 0; ++step) {
      auto controls = form.Controls();
      if (controls.empty()) break;
      Act(controls[bytes_.ConsumeIntegralInRange<size_t>(0, controls.size() - 1)]);
    }
    --depth_;
  }

 private:
  void Act(kolvane::FormControl& control) {
    using namespace kolvane;
    if (auto* box = std::get_if<TextBox*>(&control.Control)) {
      auto key = static_cast<int16_t>(bytes_.ConsumeIntegral<uint8_t>());
      if (control.KeyPress) control.KeyPress(key);
      if (key == 8 && !(*box)->Text.empty()) {
        (*box)->Text.pop_back();
      } else if (key >= 32) {
        (*box)->Text += static_cast<char>(key);
      }
      if (key != 0 && control.Change) control.Change();
    } else if (auto* check = std::get_if<CheckBox*>(&control.Control)) {
      (*check)->Value = static_cast<int16_t>(1 - (*check)->Value);
      if (control.Click) control.Click();
    } else if (auto* combo = std::get_if<ComboBox*>(&control.Control)) {
      const auto count = static_cast<int32_t>((*combo)->List.size());
      (*combo)->ListIndex = bytes_.ConsumeIntegralInRange<int32_t>(-1, count);
      if (control.Click) control.Click();
    } else if (auto* list = std::get_if<ListView*>(&control.Control)) {
      const auto count = static_cast<int32_t>((*list)->ListItems.size());
      (*list)->SelectedItem = bytes_.ConsumeIntegralInRange<int32_t>(-1, count);
      if (bytes_.ConsumeBool()) {
        if (control.DblClick) control.DblClick();
      } else if (control.MouseDown) {
        control.MouseDown(2, 0, 0, 0);
      }
    } else if (control.Click) {
      control.Click();
    } else if (control.DblClick) {
      control.DblClick();
    }
  }

  FuzzedDataProvider& bytes_;
  int depth_ = 0;
};
