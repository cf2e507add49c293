#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "foundation/Export.h"

namespace kolvane {

// Controls of a form: plain state with Visual Basic's property names. A toolkit renders them and
// forwards the user's input to the form's event handlers.
struct TextBox {
  std::string Text;
  bool Enabled = true;
  bool Visible = true;
  int32_t SelStart = 0;
  int32_t SelLength = 0;
};

struct Label {
  std::string Caption;
  bool Visible = true;
};

struct CheckBox {
  std::string Caption;
  int16_t Value = 0;  // 0 clear, 1 checked
  bool Enabled = true;
};

struct CommandButton {
  std::string Caption;
  bool Enabled = true;
};

struct ComboBox {
  std::vector<std::string> List;
  std::vector<int32_t> ItemData;  // one number per entry of List
  std::string Text;
  int32_t ListIndex = -1;
};

struct ListItem {
  std::string Key;
  std::string Text;
  std::vector<std::string> SubItems;  // columns after the first
  std::string Tag;
};

struct ListView {
  std::vector<std::string> ColumnHeaders{};
  std::vector<ListItem> ListItems{};
  int32_t SelectedItem = -1;  // 0-based row, -1 for none
};

// One control of a form as a host sees it: the state to render and the handlers the user's input
// reaches (empty where the form has none).
struct FormControl {
  std::string Name{};  // "txtNewCPValue"; an element of a control array as "bit(3)"
  std::variant<Label*, TextBox*, CheckBox*, CommandButton*, ComboBox*, ListView*> Control{};
  int16_t Row = 0;       // rows run top to bottom; the controls of a row stand side by side
  std::string Prompt{};  // fixed text drawn in front of the control
  std::function<void(int16_t& KeyAscii)> KeyPress{};
  std::function<void()> Change{};
  std::function<void()> Click{};
  std::function<void()> DblClick{};
  std::function<void(int16_t Button, int16_t Shift, float X, float Y)> MouseDown{};
};

// A modal form. Create with std::make_shared, set its inputs, then Show().
class KOLVANE_API Form {
 public:
  virtual ~Form() = default;

  // Runs Form_Load, hands the form to the installed FormHost until it returns, and unloads the
  // form when it is still loaded (so a form the host leaves open ends as if cancelled).
  void Show();

  // Runs Form_Unload and, unless it cancels, ends the form's modal run ("Unload Me").
  void Unload();

  // True from Show() until the form is unloaded.
  bool Loaded() const { return loaded_; }

  // Name of the control that has the focus (e.g. "cmdOk"); empty when the form has not said.
  std::string ActiveControl;

  // The form's window title.
  virtual std::string Caption() const = 0;

  // The controls in layout order, bound to this form's state and event handlers.
  virtual std::vector<FormControl> Controls() = 0;

  // Called when the form is shown, before the host gets it.
  virtual void Form_Load() {}

  // Called when the form is about to close; setting Cancel to a non-zero value keeps it open.
  virtual void Form_Unload(int16_t& Cancel) { (void)Cancel; }

 protected:
  // Sets a text box's text as the toolkit does: a text that changes raises the box's Change.
  void SetText(TextBox& box, std::string text);

 private:
  bool loaded_ = false;
};

// Runs forms modally: the desktop host shows a window, tests act as the user.
class KOLVANE_API FormHost {
 public:
  virtual ~FormHost() = default;
  // Returns when the form has been unloaded or the host is done with it.
  virtual void RunModal(Form& form) = 0;
};

// Installs the form host (nullptr restores the headless default, which returns at once) and
// returns the one it replaces.
KOLVANE_API std::shared_ptr<FormHost> SetFormHost(std::shared_ptr<FormHost> host);

}  // namespace kolvane
