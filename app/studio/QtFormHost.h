#pragma once

#include <QDialog>
#include <string>
#include <vector>

#include "Kolvane.h"

class QLineEdit;

namespace kolvane::studio {

// Renders any form as a Qt dialog built from the form's control list. The user's input reaches
// the form's event handlers; after each event the widgets are redrawn from the form's state, and
// the dialog closes once the form has unloaded.
class FormDialog final : public QDialog {
  Q_OBJECT

 public:
  FormDialog(Form& form, QWidget* parent);

  // Redraws every widget from the form's state.
  void Refresh();
  // The button that closed the form: "cmdCancel" also for Escape and the close button.
  const std::string& Pressed() const { return pressed_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  // Escape and the window's close button unload the form; a form that cancels stays open.
  void reject() override;
  // Clicks the enabled OK button, if the form has one.
  void PressOk();

 private:
  struct Binding {
    FormControl control;
    QWidget* widget = nullptr;
  };

  QWidget* MakeWidget(Binding& binding);
  // Gives edit the selection (or the cursor) of the form's text box.
  static void SelectAsForm(QLineEdit& edit, const TextBox& box);
  // Copies what the user changed in the widgets into the form (texts, selections, checks, rows,
  // focus), runs the handler, then closes or redraws.
  void Dispatch(const std::function<void()>& handler);
  void SyncFromWidgets();
  // A typed key: KeyPress, then (unless dropped) the edit, then Change. True when consumed.
  bool TypeKey(Binding& binding, QLineEdit& edit, int16_t code);

  Form& form_;
  std::vector<Binding> bindings_;
  QWidget* week_view_ = nullptr;  // a schedule's week at a glance
  bool typing_ = false;  // set while a typed key edits a line edit
  std::string pressed_;
};

// The form host the studio installs: each form runs as a modal FormDialog over the active window.
class QtFormHost final : public FormHost {
 public:
  void RunModal(Form& form) override;
  // Whether the outermost form of the last modal run was cancelled (its nested forms aside).
  static bool LastRunCancelled();
};

}  // namespace kolvane::studio
