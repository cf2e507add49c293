#include "QtFormHost.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "WeekView.h"
#include <algorithm>
#include <map>

#include "QtHost.h"

namespace kolvane::studio {

namespace {

constexpr int16_t kBackspace = 8;
constexpr int16_t kEnter = 13;
constexpr int16_t kEscape = 27;

// Position in a QString (UTF-16 units) of a byte offset into its UTF-8 text, and back. Qt's
// std::string conversions are UTF-8.
int QtIndex(const std::string& text, int32_t bytes) {
  const auto end =
      static_cast<size_t>(std::clamp<int32_t>(bytes, 0, static_cast<int32_t>(text.size())));
  return static_cast<int>(QString::fromUtf8(text.data(), static_cast<qsizetype>(end)).size());
}
int32_t ByteOffset(const QString& text, int index) {
  return static_cast<int32_t>(text.left(index).toUtf8().size());
}

// The code Visual Basic hands to KeyPress for a key; 0 for a key that raises none (arrows,
// Delete, shortcuts). A character outside Latin-1 is "?".
int16_t KeyAscii(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Backspace:
      return kBackspace;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return kEnter;
    case Qt::Key_Escape:
      return kEscape;
    default:
      break;
  }
  if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return 0;
  const QString text = key.text();
  if (text.size() != 1 || !text.at(0).isPrint()) return 0;
  const char16_t unit = text.at(0).unicode();
  return static_cast<int16_t>(unit < 256 ? unit : '?');
}

int16_t ButtonCode(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton:
      return 1;
    case Qt::RightButton:
      return 2;
    case Qt::MiddleButton:
      return 4;
    default:
      return 0;
  }
}

int16_t ShiftCode(Qt::KeyboardModifiers modifiers) {
  return static_cast<int16_t>((modifiers & Qt::ShiftModifier ? 1 : 0) |
                              (modifiers & Qt::ControlModifier ? 2 : 0) |
                              (modifiers & Qt::AltModifier ? 4 : 0));
}

template <class... F>
struct Overloaded : F... {
  using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

}  // namespace

FormDialog::FormDialog(Form& form, QWidget* parent) : QDialog(parent), form_(form) {
  setWindowTitle(QString::fromStdString(form.Caption()));
  setMinimumWidth(340);
  for (FormControl& control : form.Controls()) bindings_.push_back({std::move(control), nullptr});

  std::map<int16_t, std::vector<Binding*>> rows;
  for (Binding& binding : bindings_) rows[binding.control.Row].push_back(&binding);
  auto* layout = new QVBoxLayout(this);
  // Rows of cells (the bits of a bit field) share one grid, so their columns line up.
  QGridLayout* cells = nullptr;
  int cell_row = 0;
  const auto is_cell = [](const Binding* b) {
    return std::holds_alternative<Label*>(b->control.Control) && b->control.DblClick;
  };
  for (auto& [row, members] : rows) {
    if (std::any_of(members.begin(), members.end(), is_cell)) {
      if (!cells) {
        cells = new QGridLayout;
        cells->setHorizontalSpacing(4);
        layout->addLayout(cells);
      }
      int column = 0;
      for (Binding* binding : members) {
        // What leads a row (its caption) takes the first column; each cell a column of its own.
        const int at = is_cell(binding) ? std::max(column, 1) : column;
        cells->addWidget(MakeWidget(*binding), cell_row, at);
        column = at + 1;
      }
      ++cell_row;
      continue;
    }
    auto* line = new QHBoxLayout;
    const bool buttons_only = std::all_of(members.begin(), members.end(), [](const Binding* b) {
      return std::holds_alternative<CommandButton*>(b->control.Control);
    });
    if (buttons_only) line->addStretch();
    for (Binding* binding : members) {
      if (!binding->control.Prompt.empty()) {
        line->addWidget(new QLabel(QString::fromStdString(binding->control.Prompt), this));
      }
      line->addWidget(MakeWidget(*binding));
    }
    layout->addLayout(line);
  }
  // A schedule shows its days at a glance above its lists.
  if (auto* schedule = dynamic_cast<frmSchedule*>(&form);
      schedule && schedule->Schedule().form() != schedule::Schedule::Form::kHolidays) {
    week_view_ = new WeekView(
        *schedule,
        [this, schedule](int day) {
          Dispatch([schedule, day] {
            schedule->cboDay.ListIndex = day;
            schedule->cboDay_Click();
          });
        },
        this);
    layout->insertWidget(0, week_view_);
    setMinimumWidth(720);
  }
  Refresh();
}

QWidget* FormDialog::MakeWidget(Binding& binding) {
  const FormControl& control = binding.control;
  QWidget* widget =
      std::visit(Overloaded{
                     [&](Label*) -> QWidget* {
                       auto* label = new QLabel(this);
                       if (control.DblClick) {  // a cell the user flips, as the bits of a bit field
                         label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
                         label->setAlignment(Qt::AlignCenter);
                         label->setMinimumWidth(22);
                         label->installEventFilter(this);
                         // Reached with Tab or the arrow keys, flipped with Space or Enter.
                         label->setFocusPolicy(Qt::StrongFocus);
                         label->setStyleSheet("QLabel:focus { border: 2px solid palette(highlight); }");
                         label->setToolTip(QString::fromStdString(control.Name));
                       }
                       return label;
                     },
                     [&](TextBox*) -> QWidget* {
                       auto* edit = new QLineEdit(this);
                       edit->installEventFilter(this);
                       connect(edit, &QLineEdit::textEdited, this, [this, &binding] {
                         if (!typing_ && binding.control.Change) Dispatch(binding.control.Change);
                       });
                       return edit;
                     },
                     [&](CheckBox*) -> QWidget* {
                       auto* box = new QCheckBox(this);
                       connect(box, &QCheckBox::clicked, this, [this, &binding] {
                         if (binding.control.Click) Dispatch(binding.control.Click);
                       });
                       return box;
                     },
                     [&](CommandButton*) -> QWidget* {
                       // Enter presses the focused button, elsewhere OK; a text box with a key
                       // handler takes its own Enter first.
                       auto* button = new QPushButton(this);
                       button->setAutoDefault(true);
                       button->setDefault(control.Name == "cmdOk");
                       connect(button, &QPushButton::clicked, this, [this, &binding] {
                         pressed_ = binding.control.Name;
                         if (binding.control.Click) Dispatch(binding.control.Click);
                       });
                       return button;
                     },
                     [&](ComboBox*) -> QWidget* {
                       auto* combo = new QComboBox(this);
                       connect(combo, &QComboBox::activated, this, [this, &binding] {
                         if (binding.control.Click) Dispatch(binding.control.Click);
                       });
                       return combo;
                     },
                     [&](ListView*) -> QWidget* {
                       auto* tree = new QTreeWidget(this);
                       tree->setRootIsDecorated(false);
                       tree->setMinimumHeight(160);
                       tree->viewport()->installEventFilter(this);
                       tree->installEventFilter(this);  // Enter opens the current row
                       connect(tree, &QTreeWidget::itemDoubleClicked, this, [this, &binding] {
                         if (binding.control.DblClick) Dispatch(binding.control.DblClick);
                       });
                       return tree;
                     },
                 },
                 control.Control);
  widget->setObjectName(QString::fromStdString(control.Name));
  binding.widget = widget;
  return widget;
}

void FormDialog::SelectAsForm(QLineEdit& edit, const TextBox& box) {
  const int start = QtIndex(box.Text, box.SelStart);
  const int length = QtIndex(box.Text, box.SelStart + box.SelLength) - start;
  if (length > 0) {
    edit.setSelection(start, length);
  } else {
    edit.setCursorPosition(start);
  }
}

void FormDialog::Refresh() {
  if (week_view_) week_view_->update();
  for (Binding& binding : bindings_) {
    QWidget* widget = binding.widget;
    std::visit(
        Overloaded{
            [&](Label* label) {
              static_cast<QLabel*>(widget)->setText(QString::fromStdString(label->Caption));
              widget->setVisible(label->Visible);
            },
            [&](TextBox* box) {
              auto* edit = static_cast<QLineEdit*>(widget);
              const QString text = QString::fromStdString(box->Text);
              if (edit->text() != text) edit->setText(text);
              SelectAsForm(*edit, *box);
              edit->setEnabled(box->Enabled);
              edit->setVisible(box->Visible);
            },
            [&](CheckBox* check) {
              auto* box = static_cast<QCheckBox*>(widget);
              box->setText(QString::fromStdString(check->Caption));
              box->setChecked(check->Value == 1);
              box->setEnabled(check->Enabled);
            },
            [&](CommandButton* command) {
              auto* button = static_cast<QPushButton*>(widget);
              button->setText(QString::fromStdString(command->Caption));
              button->setEnabled(command->Enabled);
            },
            [&](ComboBox* list) {
              auto* combo = static_cast<QComboBox*>(widget);
              QStringList entries;
              for (const std::string& entry : list->List) entries << QString::fromStdString(entry);
              QStringList shown;
              for (int i = 0; i < combo->count(); ++i) shown << combo->itemText(i);
              if (shown != entries) {
                combo->clear();
                combo->addItems(entries);
              }
              combo->setCurrentIndex(list->ListIndex);
            },
            [&](ListView* view) {
              auto* tree = static_cast<QTreeWidget*>(widget);
              QStringList headers;
              for (const std::string& header : view->ColumnHeaders)
                headers << QString::fromStdString(header);
              tree->setHeaderLabels(headers);
              QList<QStringList> rows;
              for (const ListItem& row : view->ListItems) {
                QStringList cells{QString::fromStdString(row.Text)};
                for (const std::string& cell : row.SubItems) cells << QString::fromStdString(cell);
                rows << cells;
              }
              QList<QStringList> shown;
              for (int i = 0; i < tree->topLevelItemCount(); ++i) {
                QStringList cells;
                for (int c = 0; c < tree->columnCount(); ++c)
                  cells << tree->topLevelItem(i)->text(c);
                while (!cells.isEmpty() && cells.size() > rows.value(i).size()) cells.removeLast();
                shown << cells;
              }
              // Rebuilt only when the rows changed: a rebuild in the middle of a click loses it.
              if (shown != rows) {
                tree->clear();
                for (const QStringList& cells : rows)
                  tree->addTopLevelItem(new QTreeWidgetItem(cells));
                // Every column as wide as its texts, and the list as wide as its columns.
                int width = 2 * tree->frameWidth();
                for (int c = 0; c < tree->columnCount(); ++c) {
                  tree->resizeColumnToContents(c);
                  width += tree->columnWidth(c);
                }
                tree->setMinimumWidth(width);
              }
              if (view->SelectedItem >= 0 && view->SelectedItem < tree->topLevelItemCount()) {
                tree->setCurrentItem(tree->topLevelItem(view->SelectedItem));
              }
            },
        },
        binding.control.Control);
  }
  // The form's ActiveControl is the focus after every handler: the toolkit may have moved it
  // meanwhile (a button disabled while it had the focus hands it on).
  if (!form_.ActiveControl.empty()) {
    for (Binding& binding : bindings_) {
      if (binding.control.Name != form_.ActiveControl || focusWidget() == binding.widget) continue;
      binding.widget->setFocus();
      // Taking the focus may move a text box's selection: the form's stands.
      if (auto* const* box = std::get_if<TextBox*>(&binding.control.Control)) {
        SelectAsForm(*static_cast<QLineEdit*>(binding.widget), **box);
      }
    }
  }
}

void FormDialog::SyncFromWidgets() {
  for (Binding& binding : bindings_) {
    QWidget* widget = binding.widget;
    if (widget->hasFocus()) form_.ActiveControl = binding.control.Name;
    std::visit(Overloaded{
                   [](Label*) {},
                   [](CommandButton*) {},
                   [&](TextBox* box) {
                     auto* edit = static_cast<QLineEdit*>(widget);
                     const QString text = edit->text();
                     box->Text = text.toStdString();
                     const bool selected = edit->hasSelectedText();
                     const int start = selected ? edit->selectionStart() : edit->cursorPosition();
                     box->SelStart = ByteOffset(text, start);
                     box->SelLength = selected ? ByteOffset(text, start + edit->selectionLength()) -
                                                     box->SelStart
                                               : 0;
                   },
                   [&](CheckBox* check) {
                     check->Value = static_cast<QCheckBox*>(widget)->isChecked() ? 1 : 0;
                   },
                   [&](ComboBox* list) {
                     auto* combo = static_cast<QComboBox*>(widget);
                     list->ListIndex = combo->currentIndex();
                     list->Text = combo->currentText().toStdString();
                   },
                   [&](ListView* view) {
                     auto* tree = static_cast<QTreeWidget*>(widget);
                     view->SelectedItem =
                         tree->currentItem() ? tree->indexOfTopLevelItem(tree->currentItem()) : -1;
                   },
               },
               binding.control.Control);
  }
}

void FormDialog::Dispatch(const std::function<void()>& handler) {
  SyncFromWidgets();
  RunGuarded(form_.Caption(), handler);
  if (!form_.Loaded()) {
    done(QDialog::Accepted);
    return;
  }
  Refresh();
}

bool FormDialog::TypeKey(Binding& binding, QLineEdit& edit, int16_t code) {
  const QString before = edit.text();
  const int boxes = MessageBoxesShown();
  int16_t kept = code;
  Dispatch([&] { binding.control.KeyPress(kept); });
  if (!form_.Loaded()) return true;
  if (kept == kEscape) {
    reject();
    return true;
  }
  if (kept == 0 || kept == kEnter) {
    // A text the handler itself changed (Escape restoring it, say) still raises Change.
    if (edit.text() != before && binding.control.Change) Dispatch(binding.control.Change);
    // Enter the handler left alone, without a word, presses OK, as in any dialog.
    if (code == kEnter && form_.Loaded() && MessageBoxesShown() == boxes) PressOk();
    return true;
  }
  typing_ = true;
  if (kept == kBackspace) {
    edit.backspace();
  } else {
    edit.insert(QString(QChar(static_cast<char16_t>(static_cast<unsigned char>(kept)))));
  }
  typing_ = false;
  if (edit.text() != before && binding.control.Change) Dispatch(binding.control.Change);
  return true;
}

bool FormDialog::eventFilter(QObject* watched, QEvent* event) {
  for (Binding& binding : bindings_) {
    const FormControl& control = binding.control;
    if (auto* edit = qobject_cast<QLineEdit*>(binding.widget);
        edit == watched && event->type() == QEvent::KeyPress && control.KeyPress) {
      const int16_t code = KeyAscii(*static_cast<QKeyEvent*>(event));
      return code != 0 && TypeKey(binding, *edit, code);
    }
    if (binding.widget == watched && event->type() == QEvent::MouseButtonDblClick &&
        control.DblClick) {
      Dispatch(control.DblClick);
      return true;
    }
    // The keyboard does what the double click does: Enter on a list's row, Space or Enter on
    // a cell; the arrow keys move between cells.
    if (binding.widget == watched && event->type() == QEvent::KeyPress && control.DblClick) {
      const int key = static_cast<QKeyEvent*>(event)->key();
      const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
      const bool cell = qobject_cast<QLabel*>(binding.widget) != nullptr;
      if (enter || (cell && key == Qt::Key_Space)) {
        Dispatch(control.DblClick);
        return true;
      }
      if (cell && (key == Qt::Key_Left || key == Qt::Key_Right)) {
        focusNextPrevChild(key == Qt::Key_Right);
        return true;
      }
    }
    auto* tree = qobject_cast<QTreeWidget*>(binding.widget);
    if (tree && tree->viewport() == watched && event->type() == QEvent::MouseButtonPress &&
        control.MouseDown) {
      const auto* mouse = static_cast<QMouseEvent*>(event);
      const QPointF at = mouse->position();
      if (QTreeWidgetItem* row = tree->itemAt(at.toPoint())) tree->setCurrentItem(row);
      const int16_t button = ButtonCode(mouse->button());
      const int16_t shift = ShiftCode(mouse->modifiers());
      Dispatch([&] {
        control.MouseDown(button, shift, static_cast<float>(at.x()), static_cast<float>(at.y()));
      });
      // The press opened a dialog and closed this one meanwhile: nothing more to do with it.
      return !form_.Loaded();
    }
  }
  return QDialog::eventFilter(watched, event);
}

void FormDialog::PressOk() {
  for (Binding& binding : bindings_) {
    auto* button = qobject_cast<QPushButton*>(binding.widget);
    if (binding.control.Name == "cmdOk" && button && button->isEnabled()) button->click();
  }
}

void FormDialog::reject() {
  pressed_ = "cmdCancel";
  form_.Unload();
  if (!form_.Loaded()) QDialog::reject();
}

namespace {

// How the outermost form of the last modal run ended.
int g_depth = 0;
bool g_cancelled = false;

}  // namespace

void QtFormHost::RunModal(Form& form) {
  FormDialog dialog(form, QApplication::activeWindow());
  ++g_depth;
  if (form.Loaded()) dialog.exec();
  --g_depth;
  // Cancel, Escape or the window's close button.
  if (g_depth == 0) g_cancelled = dialog.Pressed() == "cmdCancel";
}

bool QtFormHost::LastRunCancelled() { return g_cancelled; }

}  // namespace kolvane::studio
