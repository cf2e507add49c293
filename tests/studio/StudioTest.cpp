// Drives the studio as a user does: the bundled profile in the main window, items double-clicked,
// keys typed into the rendered dialogs, buttons pressed, message boxes answered.

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>
#include <QPlainTextEdit>
#include <QtTest>
#include <functional>

#include "MainWindow.h"
#include "QtHost.h"

using kolvane::studio::MainWindow;

namespace {

// Runs action on the next modal window that opens (a form or a message box) from inside its
// event loop. A window left open by a failed check is closed, so a fault never hangs the run.
void OnNextModal(std::function<void(QWidget*)> action) {
  QWidget* const before = QApplication::activeModalWidget();
  auto* timer = new QTimer;
  const QDeadlineTimer deadline(5000);
  QObject::connect(timer, &QTimer::timeout, [=] {
    QWidget* modal = QApplication::activeModalWidget();
    const bool opened = modal && modal != before;
    if (!opened && !deadline.hasExpired()) return;
    timer->stop();
    timer->deleteLater();
    if (!opened) {
      QTest::qFail("no modal window opened", __FILE__, __LINE__);
      return;
    }
    action(modal);
    if (QTest::currentTestFailed() && modal->isVisible()) {
      if (auto* dialog = qobject_cast<QDialog*>(modal)) dialog->reject();
    }
  });
  timer->start(10);
}

template <class W>
W* Control(QWidget* form, const char* name) {
  W* widget = form->findChild<W*>(name);
  if (!widget) QTest::qFail(QByteArray("no control ") + name, __FILE__, __LINE__);
  return widget;
}

QTreeWidgetItem* Find(QTreeWidget* tree, const QString& path) {
  QTreeWidgetItem* item = nullptr;
  for (const QString& name : path.split('.')) {
    const int count = item ? item->childCount() : tree->topLevelItemCount();
    QTreeWidgetItem* next = nullptr;
    for (int i = 0; i < count && !next; ++i) {
      QTreeWidgetItem* candidate = item ? item->child(i) : tree->topLevelItem(i);
      if (candidate->text(MainWindow::kName) == name) next = candidate;
    }
    if (!next) return nullptr;
    item = next;
  }
  return item;
}

// A double-click as a mouse makes it: the first click, then the second as a double-click.
void DoubleClick(QTreeWidget* tree, QTreeWidgetItem* item) {
  tree->scrollToItem(item);
  const QPoint at = tree->visualItemRect(item).center();
  QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, at);
  QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, at);
}

// Replaces the text of a rendered text box by typing, as a user does over the selection.
void TypeOver(QLineEdit* edit, const QString& keys) {
  edit->setFocus();
  edit->selectAll();
  QTest::keyClicks(edit, keys);
}

}  // namespace

class StudioTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() {
    // Settings of a test run go to a folder of their own.
    QStandardPaths::setTestModeEnabled(true);
    QSettings().remove("units");
  }

  void init() {
    window_ = std::make_unique<MainWindow>();
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    QVERIFY(window_->Open({}));
    // A profile just opened is not changed.
    QVERIFY(!window_->isWindowModified());
    QVERIFY(!Save(false).isEmpty());
    QVERIFY(!window_->isWindowModified());
  }

  void cleanup() { window_.reset(); }

  void NumericPropertyTypedIntoTheDialog() {
    QTreeWidget* tree = window_->PropertiesTree();
    QTreeWidgetItem* item = Find(tree, "nciSetpoint");
    QVERIFY(item);
    QCOMPARE(item->text(MainWindow::kValue), QString("21.5 °C"));
    QString shown;
    OnNextModal([&](QWidget* form) {
      QCOMPARE(form->windowTitle(), QString("Numeric Value"));
      auto* edit = Control<QLineEdit>(form, "txtNewCPValue");
      QVERIFY(edit);
      shown = edit->text();
      TypeOver(edit, "2x3.5");  // the key filter drops the letter
      QCOMPARE(edit->text(), QString("23.5"));
      QVERIFY(Control<QPushButton>(form, "cmdOk")->isEnabled());
      QTest::keyClick(edit, Qt::Key_Return);  // Enter in the box presses OK
    });
    DoubleClick(tree, item);
    QCOMPARE(shown, QString("21.5"));
    QCOMPARE(item->text(MainWindow::kValue), QString("23.5 °C"));
    QCOMPARE(item->text(MainWindow::kRaw), QString("092E"));
    QVERIFY(window_->isWindowModified());
    QVERIFY(window_->windowTitle().startsWith("RoomController"));

    const QString saved = Save(false);
    QVERIFY2(saved.contains(R"(Name="nciSetpoint" Direction="In" Type="temp_p" Value="23.5")"),
             qPrintable(saved));
  }

  void StructurePropertyThroughTheNestedDialogs() {
    QTreeWidget* tree = window_->PropertiesTree();
    QTreeWidgetItem* item = Find(tree, "nciOccSetpoints");
    QVERIFY(item);
    OnNextModal([&](QWidget* form) {
      QCOMPARE(form->windowTitle(), QString("Structure Value"));
      auto* rows = Control<QTreeWidget>(form, "lvwMain");
      QVERIFY(rows);
      QTreeWidgetItem* row = rows->topLevelItem(1);
      QCOMPARE(row->text(0), QString("standby_cool"));
      // No value is cut: every column is as wide as its texts, the list as wide as its columns.
      int columns = 0;
      for (int c = 0; c < rows->columnCount(); ++c) {
        columns += rows->columnWidth(c);
        for (int i = 0; i < rows->topLevelItemCount(); ++i) {
          const QString text = rows->topLevelItem(i)->text(c);
          QVERIFY2(rows->columnWidth(c) >= rows->fontMetrics().horizontalAdvance(text), qPrintable(text));
        }
      }
      QVERIFY(rows->viewport()->width() >= columns);
      OnNextModal([](QWidget* field_form) {
        QCOMPARE(field_form->windowTitle(), QString("Numeric Value"));
        TypeOver(Control<QLineEdit>(field_form, "txtNewCPValue"), "26");
        QTest::mouseClick(Control<QPushButton>(field_form, "cmdOk"), Qt::LeftButton);
      });
      // Enter on the current row opens its field, as a double click does.
      rows->setFocus();
      rows->setCurrentItem(row);
      QTest::keyClick(rows, Qt::Key_Return);
      // The row is redrawn from the field once its dialog closes.
      QCOMPARE(rows->topLevelItem(1)->text(1), QString("26 °C"));
      // The right button opens a field's dialog too; Cancel leaves the field as it was.
      QString opened;
      OnNextModal([&](QWidget* field_form) {
        opened = Control<QLineEdit>(field_form, "txtNewCPValue")->text();
        QTest::mouseClick(Control<QPushButton>(field_form, "cmdCancel"), Qt::LeftButton);
      });
      QTest::mouseClick(rows->viewport(), Qt::RightButton, {},
                        rows->visualItemRect(rows->topLevelItem(0)).center());
      QCOMPARE(opened, QString("23"));
      QCOMPARE(rows->topLevelItem(0)->text(1), QString("23 °C"));
      QTest::mouseClick(Control<QPushButton>(form, "cmdOk"), Qt::LeftButton);
    });
    DoubleClick(tree, item);
    QCOMPARE(Find(tree, "nciOccSetpoints.standby_cool")->text(MainWindow::kValue),
             QString("26 °C"));
    QCOMPARE(item->text(MainWindow::kValue),
             QString("{ 23 °C  26 °C  28 °C  21.5 °C  20 °C  16 °C }"));
    const QString saved = Save(false);
    QVERIFY2(saved.contains(R"(Name="nciOccSetpoints" Direction="In" Type="temp_setpt" )"
                            R"(Value="{ 23  26  28  21.5  20  16 }")"),
             qPrintable(saved));
  }

  void OutOfRangeValueIsRefusedInAMessageBox() {
    QTreeWidget* tree = window_->PropertiesTree();
    QTreeWidgetItem* item = Find(tree, "nciSetpoint");
    QString warning;
    OnNextModal([&](QWidget* form) {
      auto* edit = Control<QLineEdit>(form, "txtNewCPValue");
      TypeOver(edit, "400");
      OnNextModal([&](QWidget* box) {
        auto* message = qobject_cast<QMessageBox*>(box);
        QVERIFY(message);
        warning = message->windowTitle() + ": " + message->text();
        message->accept();
      });
      QTest::keyClick(edit, Qt::Key_Return);  // OK through Enter, refused once
      // Still open, the limit offered in place of the refused value.
      QVERIFY(form->isVisible());
      QCOMPARE(edit->text(), QString("30"));
      QTest::mouseClick(Control<QPushButton>(form, "cmdCancel"), Qt::LeftButton);
    });
    DoubleClick(tree, item);
    // The property's own maximum, not its type's.
    QCOMPARE(warning, QString("Warning: The value is greater than 30"));
    QCOMPARE(item->text(MainWindow::kValue), QString("21.5 °C"));
    QVERIFY(!window_->isWindowModified());
  }

  void EnterOpensTheEditorAndInvalidMarkDisablesTheBox() {
    QTreeWidget* tree = window_->PropertiesTree();
    QTreeWidgetItem* item = Find(tree, "nciSndDelta");
    tree->setFocus();
    tree->setCurrentItem(item);
    OnNextModal([](QWidget* form) {
      auto* invalid = Control<QCheckBox>(form, "chkInvalid");
      QTest::mouseClick(invalid, Qt::LeftButton);
      auto* edit = Control<QLineEdit>(form, "txtNewCPValue");
      QCOMPARE(edit->text(), QString("Invalid"));
      QVERIFY(!edit->isEnabled());
      // Cleared: the box is enabled and focused with its text selected whole, OK enabled.
      QTest::mouseClick(invalid, Qt::LeftButton);
      QVERIFY(edit->isEnabled());
      QCOMPARE(form->focusWidget(), edit);
      QCOMPARE(edit->selectedText(), QString("Invalid"));
      QVERIFY(Control<QPushButton>(form, "cmdOk")->isEnabled());
      QTest::mouseClick(invalid, Qt::LeftButton);
      QTest::mouseClick(Control<QPushButton>(form, "cmdOk"), Qt::LeftButton);
    });
    QTest::keyClick(tree, Qt::Key_Return);
    QCOMPARE(item->text(MainWindow::kRaw), QString("7FFF"));

    // Closing asks before the change is lost: Cancel keeps the window, Discard closes it.
    for (const auto button : {QMessageBox::Cancel, QMessageBox::Discard}) {
      QString question;
      OnNextModal([&](QWidget* box) {
        auto* message = qobject_cast<QMessageBox*>(box);
        question = message->text();
        message->button(button)->click();
      });
      window_->close();
      QCOMPARE(question, QString("The values of RoomController were changed. Save them first?"));
      QCOMPARE(window_->isVisible(), button == QMessageBox::Cancel);
    }
  }

  void EnumerationAndTextThroughTheirDialogs() {
    QTreeWidget* tree = window_->PropertiesTree();
    QTreeWidgetItem* mode = Find(tree, "nciHvacType");
    OnNextModal([](QWidget* form) {
      auto* states = Control<QComboBox>(form, "cboEnum");
      QCOMPARE(states->currentText(), QString("(1,HVT_FAN_COIL)"));
      QTest::keyClick(states, Qt::Key_Down);  // the next state, as the arrow key picks it
      QVERIFY(Control<QPushButton>(form, "cmdOk")->isDefault());
      QTest::keyClick(states, Qt::Key_Return);  // Enter takes the default button, OK
    });
    DoubleClick(tree, mode);
    QCOMPARE(mode->text(MainWindow::kRaw), QString("02"));

    // Enter on a focused button presses that button: Cancel keeps the state.
    OnNextModal([](QWidget* form) {
      QTest::keyClick(Control<QComboBox>(form, "cboEnum"), Qt::Key_Down);
      auto* cancel = Control<QPushButton>(form, "cmdCancel");
      cancel->setFocus();
      QTest::keyClick(cancel, Qt::Key_Return);
      QVERIFY(!form->isVisible());
    });
    DoubleClick(tree, mode);
    QCOMPARE(mode->text(MainWindow::kRaw), QString("02"));

    QTreeWidgetItem* location = Find(tree, "nciLocation");
    OnNextModal([](QWidget* form) {
      auto* edit = Control<QLineEdit>(form, "txtNewCPValue");
      TypeOver(edit, "Room 12");  // a blank becomes "_"
      QTest::keyClick(edit, Qt::Key_Backspace);
      QCOMPARE(edit->text(), QString("Room_1"));
      QTest::keyClick(edit, Qt::Key_Return);  // Enter is OK
    });
    DoubleClick(tree, location);
    QCOMPARE(location->text(MainWindow::kValue), QString("Room_1"));
  }

  void OutputOptionsAndTheSidePanel() {
    QTreeWidget* tree = window_->VariablesTree();
    tree->setCurrentItem(Find(tree, "nviOutdoorTemp"));
    const QString facts = window_->findChild<QLabel*>("variableFacts")->text();
    QVERIFY2(facts.contains("Not connected, export number 2"), qPrintable(facts));
    // The bundled table lets a type of a quantity connect to those of the same layout and unit.
    tree->setCurrentItem(Find(tree, "nviFanSpeed"));
    QStringList compatible;
    auto* list = window_->findChild<QListWidget*>("compatibles");
    for (int i = 0; i < list->count(); ++i) compatible << list->item(i)->text();
    QCOMPARE(compatible, QStringList({"SNVT_lev_cont", "SNVT_40000"}));

    tree->setCurrentItem(Find(tree, "nviOccCmd"));
    const QString overridden = window_->findChild<QLabel*>("variableFacts")->text();
    QVERIFY2(overridden.contains("Type override: Enum with 3 states\n  OC_OCCUPIED = 0"),
             qPrintable(overridden));

    OnNextModal([](QWidget* form) {
      QCOMPARE(form->windowTitle(), QString("Output Options"));
      auto* threshold = Control<QLineEdit>(form, "txtSendOnDelta");
      QVERIFY(!threshold->isEnabled());
      QTest::mouseClick(Control<QCheckBox>(form, "chkSendOnDelta"), Qt::LeftButton);
      QVERIFY(threshold->isEnabled());
      QTest::keyClicks(threshold, "0.5");
      QTest::mouseClick(Control<QPushButton>(form, "cmdOk"), Qt::LeftButton);
    });
    DoubleClick(tree, Find(tree, "nvoSpaceTemp"));
    const QString saved = Save(true);
    QVERIFY2(saved.contains(R"(Name="nvoSpaceTemp" Direction="Output" Type="temp_p" Value="" )"
                            R"(Permanent="1" SendOnDelta="0.5")"),
             qPrintable(saved));
  }

  void BitFieldFlippedInItsCells() {
    QTemporaryDir folder;
    const QString path = folder.filePath("relay.xml");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(
        "<Profile><Name>Relay</Name><NVs/><CPs><nciRelayMask><SNVTType>state</SNVTType>"
        "<Default>5</Default></nciRelayMask></CPs></Profile>");
    file.close();
    QVERIFY(window_->Open({path.toStdString(), "", ""}));
    QTreeWidgetItem* item = Find(window_->PropertiesTree(), "nciRelayMask");
    QVERIFY(item);
    QString before;
    OnNextModal([&](QWidget* form) {
      QCOMPARE(form->windowTitle(), QString("Bit Field Value"));
      for (int bit = 3; bit >= 0; --bit) {
        before += Control<QLabel>(form, qPrintable(QString("bit(%1)").arg(bit)))->text();
      }
      // The two rows of bits line up column for column.
      for (int bit = 0; bit < 8; ++bit) {
        const QLabel* low = Control<QLabel>(form, qPrintable(QString("bit(%1)").arg(bit)));
        const QLabel* high = Control<QLabel>(form, qPrintable(QString("bit(%1)").arg(bit + 8)));
        QCOMPARE(low->geometry().left(), high->geometry().left());
        QVERIFY(low->geometry().top() > high->geometry().top());
      }
      QLabel* cell = Control<QLabel>(form, "bit(1)");
      QTest::mouseDClick(cell, Qt::LeftButton);
      QCOMPARE(cell->text(), QString("1"));
      // Without a mouse: Space flips the focused cell, the arrow keys move between cells.
      QLabel* third = Control<QLabel>(form, "bit(3)");
      third->setFocus();
      QCOMPARE(third->toolTip(), QString("bit(3)"));
      QTest::keyClick(third, Qt::Key_Space);
      QCOMPARE(third->text(), QString("1"));
      QTest::keyClick(third, Qt::Key_Right);
      QLabel* second = Control<QLabel>(form, "bit(2)");
      QCOMPARE(form->focusWidget(), second);
      QTest::keyClick(second, Qt::Key_Return);
      QCOMPARE(second->text(), QString("0"));  // 1 flipped back
      QTest::keyClick(second, Qt::Key_Return);
      QTest::keyClick(third, Qt::Key_Space);
      auto* ok = Control<QPushButton>(form, "cmdOk");
      ok->setFocus();
      QTest::keyClick(ok, Qt::Key_Return);  // Enter on the focused OK presses it
    });
    DoubleClick(window_->PropertiesTree(), item);
    QCOMPARE(before, QString("0101"));
    QCOMPARE(item->text(MainWindow::kRaw), QString("0007"));
  }

  void HourglassIsTheBusyCursor() {
    kolvane::SetMousePointer(11);
    QVERIFY(QGuiApplication::overrideCursor());
    QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    kolvane::SetMousePointer(11);  // not stacked: one reset restores the pointer
    kolvane::SetMousePointer(0);
    QVERIFY(!QGuiApplication::overrideCursor());
  }

  void UnreadableProfileIsReportedAndTheLoadedOneStays() {
    QTemporaryDir folder;
    const QString path = folder.filePath("broken.xml");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<Profile>\n  <Name>Broken</Name>\n  <NVs>\n</Profile>\n");
    file.close();
    QString error;
    OnNextModal([&](QWidget* box) {
      error = qobject_cast<QMessageBox*>(box)->text();
      qobject_cast<QMessageBox*>(box)->accept();
    });
    QVERIFY(!window_->Open({path.toStdString(), "", ""}));
    QVERIFY2(error.startsWith(path + ":4:"), qPrintable(error));
    QVERIFY(window_->windowTitle().startsWith("RoomController"));
    QVERIFY(Find(window_->PropertiesTree(), "nciSetpoint"));
  }

  // Opening reads nothing that changes the items: a structure variable shows the fields'
  // values as the tool's show does, and its bytes.
  void OpeningLeavesTheItemsAsLoaded() {
    QVERIFY(window_->Open({}));
    QTreeWidgetItem* lamp = Find(window_->VariablesTree(), "nvoLamp");
    QVERIFY(lamp);
    QCOMPARE(lamp->text(MainWindow::kValue), QString("{ 0 %  TOGGLE_OFF }"));
    QCOMPARE(lamp->text(MainWindow::kRaw), QString("0000"));
    QVERIFY(lamp->text(MainWindow::kDefault).isEmpty());
  }

  void UnitsChosenInTheViewMenuRedrawAndStay() {
    QTreeWidgetItem* setpoint = Find(window_->PropertiesTree(), "nciSetpoint");
    QCOMPARE(setpoint->text(MainWindow::kValue), QString("21.5 °C"));
    window_->findChild<QAction*>("unitsUS")->trigger();
    QCOMPARE(setpoint->text(MainWindow::kValue), QString("70.7 °F"));
    // The limits the dialog enforces (the property's own), the type's range in the tooltip.
    QCOMPARE(setpoint->text(MainWindow::kLimits), QString("50 °F .. 86 °F"));
    QCOMPARE(setpoint->toolTip(MainWindow::kLimits),
             QString("Limits: 50 °F .. 86 °F\nRange of SNVT_temp_p: -459.706 °F .. 621.788 °F"));
    // The numeric dialog shows and takes the value in °F; the property keeps its own unit.
    OnNextModal([](QWidget* form) {
      QCOMPARE(Control<QLabel>(form, "lblUnits")->text(), QString("[°F]"));
      QCOMPARE(Control<QLabel>(form, "lblMax")->text(), QString("86"));  // its own 30 °C
      TypeOver(Control<QLineEdit>(form, "txtNewCPValue"), "71.6");
      QTest::mouseClick(Control<QPushButton>(form, "cmdOk"), Qt::LeftButton);
    });
    DoubleClick(window_->PropertiesTree(), setpoint);
    QCOMPARE(setpoint->text(MainWindow::kValue), QString("71.6 °F"));
    QVERIFY2(Save(false).contains(R"(Name="nciSetpoint" Direction="In" Type="temp_p" Value="22")"),
             "saved in °C");
    // The next run starts in the units chosen last.
    window_ = std::make_unique<MainWindow>();
    QVERIFY(window_->Open({}));
    QVERIFY(window_->findChild<QAction*>("unitsUS")->isChecked());
    QCOMPARE(Find(window_->PropertiesTree(), "nciSetpoint")->text(MainWindow::kValue),
             QString("70.7 °F"));
    window_->findChild<QAction*>("unitsSI")->trigger();
    QCOMPARE(Find(window_->PropertiesTree(), "nciSetpoint")->text(MainWindow::kValue),
             QString("21.5 °C"));
  }

  // A value without raw bytes of its type's length shows why instead of short bytes.
  void RawColumnMarksAValueWithoutBytes() {
    QTemporaryDir folder;
    const QString path = folder.filePath("profile.xml");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"(<Profile><Name>Counts</Name><CPs>
      <nciCount><SNVTType>count_32</SNVTType><Default>Invalid</Default></nciCount>
      <nciTotal><SNVTType>count_32</SNVTType><Default>4294967294</Default></nciTotal>
      </CPs></Profile>)");
    file.close();
    kolvane::studio::ProfileFiles files;
    files.profile = path.toStdString();
    QVERIFY(window_->Open(files));
    QTreeWidgetItem* count = Find(window_->PropertiesTree(), "nciCount");
    QVERIFY(count);
    QVERIFY(count->text(MainWindow::kRaw).startsWith("! "));
    QVERIFY(count->toolTip(MainWindow::kRaw).contains("2 of the 4 bytes"));
    QCOMPARE(Find(window_->PropertiesTree(), "nciTotal")->text(MainWindow::kRaw),
             QString("FFFFFFFE"));
  }

  // Rows carry what check finds in them, as check words it, and lose the mark once mended.
  void PanesMarkFindings() {
    kolvane::studio::ProfileFiles files;
    files.profile = KOLVANE_SOURCE_DIR "/tests/data/profile-findings.xml";
    QVERIFY(window_->Open(files));
    QTreeWidgetItem* setpoint = Find(window_->PropertiesTree(), "nciSetpoint");
    QVERIFY(setpoint);
    QCOMPARE(setpoint->toolTip(MainWindow::kName),
             QString("error: nciSetpoint: value 400 °C is above the maximum 327.66 °C "
                     "[value-above-maximum]"));
    QVERIFY(!setpoint->icon(MainWindow::kName).isNull());
    QCOMPARE(Find(window_->VariablesTree(), "nviKelvin")->toolTip(MainWindow::kName),
             QString("error: nviKelvin: type SNVT_temp_kelvin is not in the catalogue [type-unknown]"));
    // A warning and an error of one item are both listed.
    const QString count = Find(window_->PropertiesTree(), "nciCount")->toolTip(MainWindow::kValue);
    QVERIFY2(count.startsWith("Invalid\nwarning: nciCount: \"Invalid\" is written as FFFF") &&
                 count.contains("\nerror: nciCount: value Invalid has no raw form"),
             qPrintable(count));
    // The load's own messages are in the Messages pane.
    const QString messages = window_->findChild<QPlainTextEdit*>("messages")->toPlainText();
    QVERIFY2(messages.contains("  Warning: nciUntyped: SNVT Type not defined into the XML file of the profile\n") &&
                 messages.contains("  Warning: nciText: Default value not defined into the XML file of the profile; 0 assumed."),
             qPrintable(messages));
    // A catalogue with a type of a bad kind and a looping structure: its messages go to the
    // pane as well, with no box to click away, and the rows say what check says.
    const int boxes = kolvane::studio::MessageBoxesShown();
    files.catalogue = KOLVANE_SOURCE_DIR "/tests/data/findings-catalogue.xml";
    QVERIFY(window_->Open(files));
    QCOMPARE(kolvane::studio::MessageBoxesShown(), boxes);
    QCOMPARE(Find(window_->VariablesTree(), "nviOdd")->toolTip(MainWindow::kName),
             QString("error: nviOdd: type SNVT_odd has a bad kind \"float\" [type-bad-kind]"));
    QCOMPARE(Find(window_->VariablesTree(), "nvoLoop")->toolTip(MainWindow::kName),
             QString("error: nvoLoop: structure SNVT_40099 contains itself [structure-loop]"));
    files.catalogue.clear();
    QVERIFY(window_->Open(files));
    QTreeWidgetItem* bypass = Find(window_->PropertiesTree(), "nciBypass");
    setpoint = Find(window_->PropertiesTree(), "nciSetpoint");
    QVERIFY(bypass->toolTip(MainWindow::kName).isEmpty());
    QVERIFY(bypass->icon(MainWindow::kName).isNull());

    OnNextModal([](QWidget* form) {
      TypeOver(Control<QLineEdit>(form, "txtNewCPValue"), "20");
      QTest::mouseClick(Control<QPushButton>(form, "cmdOk"), Qt::LeftButton);
    });
    DoubleClick(window_->PropertiesTree(), setpoint);
    QCOMPARE(setpoint->text(MainWindow::kValue), QString("20 °C"));
    QVERIFY(setpoint->toolTip(MainWindow::kName).isEmpty());
    QVERIFY(setpoint->icon(MainWindow::kName).isNull());
    // Taken back, the value is marked again; made again, it is not.
    QVERIFY(window_->Undo());
    QVERIFY(setpoint->toolTip(MainWindow::kName).contains("[value-above-maximum]"));
    QVERIFY(window_->Redo());
    QVERIFY(setpoint->toolTip(MainWindow::kName).isEmpty());
  }

  // File, Compare With: the values saved before an edit differ from the profile in that value
  // only, and Enter on the difference goes to its item, a filter that hid it cleared.
  void CompareWithValuesSavedBeforeAnEdit() {
    QTemporaryDir folder;
    const std::string saved = folder.filePath("before.xml").toStdString();
    QVERIFY(window_->SaveValues(saved, true));
    QTreeWidgetItem* setpoint = Find(window_->PropertiesTree(), "nciSetpoint");
    OnNextModal([](QWidget* form) {
      TypeOver(Control<QLineEdit>(form, "txtNewCPValue"), "23");
      QTest::mouseClick(Control<QPushButton>(form, "cmdOk"), Qt::LeftButton);
    });
    DoubleClick(window_->PropertiesTree(), setpoint);
    window_->findChild<QLineEdit*>("filter")->setText("nvo");
    QVERIFY(setpoint->isHidden());

    QStringList rows;
    OnNextModal([&](QWidget* form) {
      auto* list = Control<QTreeWidget>(form, "differences");
      for (int i = 0; i < list->topLevelItemCount(); ++i) {
        QStringList texts;
        for (int c = 0; c < 4; ++c) texts << list->topLevelItem(i)->text(c);
        rows << texts.join('|');
      }
      QTest::keyClick(list, Qt::Key_Return);
    });
    QVERIFY(window_->CompareWith(saved));
    QCOMPARE(rows, QStringList{"nciSetpoint|value|23 °C|21.5 °C"});
    QVERIFY(!setpoint->isHidden());
    QCOMPARE(window_->PropertiesTree()->currentItem(), setpoint);

    // Compared with what it holds now, in the stored form, the profile differs in nothing.
    QVERIFY(window_->SaveValues(saved, false));
    QString summary;
    OnNextModal([&](QWidget* form) {
      summary = Control<QLabel>(form, "summary")->text();
      QVERIFY(!Control<QTreeWidget>(form, "differences")->isVisible());
      QTest::keyClick(form, Qt::Key_Escape);
    });
    QVERIFY(window_->CompareWith(saved));
    QCOMPARE(summary, QString("The profile and before.xml hold the same."));
  }

  // Comparing reads and changes nothing: a structure variable whose fields the library's save
  // would write keeps them. A device file that cannot be read says why, in a box.
  void CompareChangesNothing() {
    QVERIFY(window_->Open({}));
    int rows = -1;
    OnNextModal([&](QWidget* form) {
      rows = Control<QTreeWidget>(form, "differences")->topLevelItemCount();
      QTest::keyClick(form, Qt::Key_Escape);
    });
    QVERIFY(window_->CompareWith(KOLVANE_SOURCE_DIR "/tests/cli/expected/values-interop.xml"));
    QCOMPARE(rows, 0);  // the file holds the example's values as loaded
    window_->ChooseUnits(kolvane::UnitSystem::kSI);  // redraws every row from its item
    QTreeWidgetItem* lamp = Find(window_->VariablesTree(), "nvoLamp");
    QCOMPARE(lamp->text(MainWindow::kValue), QString("{ 0 %  TOGGLE_OFF }"));
    QCOMPARE(lamp->text(MainWindow::kRaw), QString("0000"));
    QVERIFY(!window_->isWindowModified());

    QTemporaryDir folder;
    QFile bad(folder.filePath("broken.xif"));
    QVERIFY(bad.open(QIODevice::WriteOnly));
    bad.write("this is no device interface file\n");
    bad.close();
    QString text;
    OnNextModal([&](QWidget* box) {
      text = qobject_cast<QMessageBox*>(box)->text();
      QTest::keyClick(box, Qt::Key_Escape);
    });
    QVERIFY(!window_->CompareWith(bad.fileName().toStdString()));
    QVERIFY2(text.contains("broken.xif"), qPrintable(text));
    window_->ChooseUnits(kolvane::UnitSystem::kSI);
    QCOMPARE(Find(window_->VariablesTree(), "nvoLamp")->text(MainWindow::kRaw), QString("0000"));
  }

  // A device interface file compares as its profile, loaded beside the open one: the open
  // profile still generates its own device interface afterwards.
  void CompareWithADeviceLeavesTheOpenProfile() {
    QStringList rows;
    OnNextModal([&](QWidget* form) {
      auto* list = Control<QTreeWidget>(form, "differences");
      for (int i = 0; i < list->topLevelItemCount(); ++i) rows << list->topLevelItem(i)->text(0) + " " + list->topLevelItem(i)->text(1);
      QTest::keyClick(list, Qt::Key_Escape);
    });
    QVERIFY(window_->CompareWith(
        KOLVANE_SOURCE_DIR "/tests/data/xif/izot__smartserver-iot__6kEvbMultiSensor.XIF"));
    QVERIFY2(rows.contains("nciSetpoint only in first") &&
                 rows.contains("nciHighTempAlarm only in second"),
             qPrintable(rows.join('\n')));
    const QString text = GenerateDeviceInterface().second;
    QVERIFY(text.contains("\r\n9F:FF:FF:0A:0B:04:04:01\r\n"));
    QVERIFY(text.contains("VAR nciSetpoint "));
    // What cannot be compared says why.
    int boxes = 0;
    OnNextModal([&](QWidget* box) {
      ++boxes;
      QVERIFY(qobject_cast<QMessageBox*>(box)->text().contains("expected a profile"));
      QTest::keyClick(box, Qt::Key_Escape);
    });
    QVERIFY(!window_->CompareWith(KOLVANE_SOURCE_DIR "/examples/snvts.xml"));
    QCOMPARE(boxes, 1);
  }

  // On a 1024x700 screen the VAV example's panes show every column whole, the side panel
  // beside them; a value cut by its column is whole in the tooltip.
  void ColumnsFitASmallScreen() {
    kolvane::studio::ProfileFiles files;
    files.profile = KOLVANE_SOURCE_DIR "/examples/profile-vav.xml";
    QVERIFY(window_->Open(files));
    window_->resize(1024, 700);
    QTRY_COMPARE(window_->size(), QSize(1024, 700));
    for (QTreeWidget* tree : {window_->VariablesTree(), window_->PropertiesTree()}) {
      int used = 0;
      for (int c = 0; c < tree->columnCount(); ++c) used += tree->isColumnHidden(c) ? 0 : tree->columnWidth(c);
      QVERIFY2(used <= tree->viewport()->width(),
               qPrintable(QString("%1: %2 of %3").arg(tree->objectName()).arg(used).arg(tree->viewport()->width())));
    }
    QVERIFY(window_->findChild<QLabel*>("variableFacts")->width() >= 150);
    // Names and types are never cut; the value columns keep room to be read.
    for (QTreeWidget* tree : {window_->VariablesTree(), window_->PropertiesTree()}) {
      for (const int column : {int(MainWindow::kName), int(MainWindow::kType)}) {
        const int shown = tree->columnWidth(column);
        tree->resizeColumnToContents(column);
        QCOMPARE(shown, tree->columnWidth(column));
      }
      for (int column = MainWindow::kValue; column < MainWindow::kColumns; ++column) {
        QVERIFY(tree->columnWidth(column) >= 8 * tree->fontMetrics().averageCharWidth());
      }
    }
    QTreeWidgetItem* setpoints = Find(window_->PropertiesTree(), "nciSetpoints");
    const QString value = setpoints->text(MainWindow::kValue);
    QVERIFY(window_->PropertiesTree()->fontMetrics().horizontalAdvance(value) >
            window_->PropertiesTree()->columnWidth(MainWindow::kValue));
    QCOMPARE(setpoints->toolTip(MainWindow::kValue), value);
  }

  // A real device's interface file opens as a profile: its properties hold the file's values.
  void ImportDeviceInterfaceOpensARealDevice() {
    kolvane::studio::ProfileFiles files;
    files.profile = KOLVANE_SOURCE_DIR "/tests/data/xif/izot__smartserver-iot__6kEvbMultiSensor.XIF";
    QVERIFY(window_->Open(files));
    QVERIFY(window_->windowTitle().startsWith("6kEvbMultiSensor"));
    QTreeWidgetItem* alarm = Find(window_->PropertiesTree(), "nciHighTempAlarm");
    QVERIFY(alarm);
    QCOMPARE(alarm->text(MainWindow::kValue), QString("35 °C"));
    QCOMPARE(alarm->text(MainWindow::kRaw), QString("0DAC"));
    QVERIFY(Find(window_->VariablesTree(), "nvoTemperature"));
    QCOMPARE(QString::fromStdString(window_->ProgramId()), QString("9FFFFF0501840460"));
    const QString messages = window_->findChild<QPlainTextEdit*>("messages")->toPlainText();
    const qsizetype loaded = messages.lastIndexOf("Loaded 6kEvbMultiSensor");
    QVERIFY2(loaded >= 0, qPrintable(messages));
    QVERIFY2(!messages.mid(loaded).contains('\n'), qPrintable(messages.mid(loaded)));
  }

  // File, Export Device Interface writes the profile's file, with its program ID.
  void GenerateDeviceInterfaceWritesTheFile() {
    const auto [path, text] = GenerateDeviceInterface();
    QVERIFY(text.startsWith("File: room.xif generated by Kolvane, XIF Version 4.501"));
    QVERIFY(text.contains("\r\n9F:FF:FF:0A:0B:04:04:01\r\n"));
    QVERIFY(text.contains("VAR nciSetpoint "));
    const QString messages = window_->findChild<QPlainTextEdit*>("messages")->toPlainText();
    QVERIFY2(messages.contains("Device interface: wrote " + path),
             qPrintable(messages));
  }

  // A weekly program opens in the schedule editor with its week drawn: a click on Saturday's
  // row, a point typed and added, Down to Sunday, OK; the property holds the new point.
  void ScheduleEditorShowsTheWeekAndEditsIt() {
    kolvane::studio::ProfileFiles files;
    files.profile = KOLVANE_SOURCE_DIR "/examples/profile-schedules.xml";
    QVERIFY(window_->Open(files));
    QTreeWidgetItem* week = Find(window_->PropertiesTree(), "nciOccWeek");
    QVERIFY(week);
    OnNextModal([](QWidget* form) {
      QCOMPARE(form->windowTitle(), QString("Schedule"));
      auto* view = form->findChild<QWidget*>("weekView");
      QVERIFY(view);
      QVERIFY(view->height() >= 7 * 20);
      if (!qEnvironmentVariableIsEmpty("KOLVANE_SCREENSHOT")) {
        form->grab().save(qEnvironmentVariable("KOLVANE_SCREENSHOT"));
      }
      // Monday's band at 12:00 is occupied, drawn in the first state's colour.
      const QImage image = view->grab().toImage();
      const int x = 96 + (view->width() - 96 - 20) / 2;
      QCOMPARE(image.pixelColor(x, 18 + 10), QColor(76, 175, 80));
      QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(40, 18 + 5 * 24 + 10));
      auto* day = Control<QComboBox>(form, "cboDay");
      QCOMPARE(day->currentText(), QString("Saturday"));
      TypeOver(Control<QLineEdit>(form, "txtTime"), "09:00");
      auto* state = Control<QComboBox>(form, "cboValue");
      state->setCurrentIndex(state->findText("OC_OCCUPIED"));
      QTest::mouseClick(Control<QPushButton>(form, "cmdAdd"), Qt::LeftButton);
      auto* points = Control<QTreeWidget>(form, "lvwPoints");
      QCOMPARE(points->topLevelItemCount(), 2);
      QCOMPARE(points->topLevelItem(1)->text(0), QString("09:00"));
      view->setFocus();
      QTest::keyClick(view, Qt::Key_Down);
      QCOMPARE(day->currentText(), QString("Sunday"));
      QTest::mouseClick(Control<QPushButton>(form, "cmdOk"), Qt::LeftButton);
    });
    // Enter on the row opens its editor, as a double-click does.
    window_->PropertiesTree()->setFocus();
    window_->PropertiesTree()->setCurrentItem(week);
    QTest::keyClick(window_->PropertiesTree(), Qt::Key_Return);
    QTreeWidgetItem* saturday = Find(window_->PropertiesTree(), "nciOccWeek.sat2_time");
    QVERIFY(saturday);
    QVERIFY2(saturday->text(MainWindow::kValue).startsWith("540"),
             qPrintable(saturday->text(MainWindow::kValue)));
  }

  // File, Apply Values resumes a day's edits from a values document.
  void ApplyValuesResumesEdits() {
    QTemporaryDir folder;
    const QString path = folder.filePath("day.xml");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"(<ApplicationProfile><ApPoint Key="" Name="nciSetpoint" Value="23"/>)"
               R"(<ApPoint Key="P99" Name="nciGone" Value="1"/></ApplicationProfile>)");
    file.close();
    QVERIFY(window_->ApplyValues(path.toStdString()));
    QCOMPARE(Find(window_->PropertiesTree(), "nciSetpoint")->text(MainWindow::kValue), QString("23 °C"));
    QVERIFY(window_->isWindowModified());
    const QString messages = window_->findChild<QPlainTextEdit*>("messages")->toPlainText();
    QVERIFY2(messages.contains("nciGone (P99): no such item in the profile"), qPrintable(messages));
  }

  // Ctrl+F and two keystrokes find an item; a field that matches keeps its owner; Escape shows
  // every row again; Ctrl+C copies the selected rows; the profile is offered under Open Recent.
  void FilterFindsItemsAndCopiesRows() {
    kolvane::studio::ProfileFiles files;
    files.profile = KOLVANE_SOURCE_DIR "/examples/profile-vav.xml";
    QVERIFY(window_->Open(files));
    const auto visible = [this](QTreeWidget* tree) {
      QStringList names;
      for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        if (!tree->topLevelItem(i)->isHidden()) names << tree->topLevelItem(i)->text(MainWindow::kName);
      }
      return names;
    };
    QTest::keyClick(window_.get(), Qt::Key_F, Qt::ControlModifier);
    auto* filter = window_->findChild<QLineEdit*>("filter");
    QVERIFY(filter->hasFocus());
    QTest::keyClicks(filter, "xF");  // two keystrokes: nciMaxFlow alone
    QCOMPARE(visible(window_->PropertiesTree()), QStringList{"nciMaxFlow"});
    QCOMPARE(visible(window_->VariablesTree()), QStringList{"nvoBoxFlow"});  // boXFlow
    filter->clear();
    QTest::keyClicks(filter, "occupied_heat");
    QCOMPARE(visible(window_->PropertiesTree()), QStringList{"nciSetpoints"});
    QTreeWidgetItem* field = Find(window_->PropertiesTree(), "nciSetpoints.occupied_heat");
    QVERIFY(field && !field->isHidden());
    QVERIFY(Find(window_->PropertiesTree(), "nciSetpoints.occupied_cool")->isHidden());
    QTest::keyClick(filter, Qt::Key_Escape);
    QVERIFY(filter->text().isEmpty());
    QVERIFY(visible(window_->PropertiesTree()).size() > 10);

    QTreeWidgetItem* setpoint = Find(window_->PropertiesTree(), "nciMinSetpt");
    window_->PropertiesTree()->clearSelection();
    setpoint->setSelected(true);
    QCOMPARE(window_->SelectedRowsText(), QString("nciMinSetpt\tSNVT_temp_p\t18\t°C\t0708"));

    QVERIFY(window_->RecentProfiles().front().endsWith("profile-vav.xml"));
    auto* recent = window_->findChild<QAction*>("recent1");
    QVERIFY(recent);
  }

  // Every value change is taken back and made again through the Edit menu, whatever dialog made
  // it; the unsaved mark follows the history; Cancel in a structure dialog keeps the item as it
  // was although its field dialogs wrote through.
  void UndoRedoAndStructureCancel() {
    QTreeWidget* tree = window_->PropertiesTree();
    QTreeWidgetItem* setpoint = Find(tree, "nciSetpoint");
    OnNextModal([](QWidget* form) {
      TypeOver(Control<QLineEdit>(form, "txtNewCPValue"), "23.5");
      QTest::mouseClick(Control<QPushButton>(form, "cmdOk"), Qt::LeftButton);
    });
    DoubleClick(tree, setpoint);
    QCOMPARE(setpoint->text(MainWindow::kValue), QString("23.5 °C"));
    QTreeWidgetItem* mode = Find(tree, "nciHvacType");
    OnNextModal([](QWidget* form) {
      auto* states = Control<QComboBox>(form, "cboEnum");
      states->setCurrentIndex(states->findText("(3,HVT_HEAT_PUMP)") >= 0 ? states->findText("(3,HVT_HEAT_PUMP)") : 2);
      QTest::mouseClick(Control<QPushButton>(form, "cmdOk"), Qt::LeftButton);
    });
    DoubleClick(tree, mode);
    const QString changed_mode = mode->text(MainWindow::kValue);
    QVERIFY2(changed_mode.contains("HEAT_PUMP"), qPrintable(changed_mode));
    QVERIFY(window_->isWindowModified());

    // A structure dialog cancelled after a field was changed in it.
    QTreeWidgetItem* setpoints = Find(tree, "nciOccSetpoints");
    const QString before = setpoints->text(MainWindow::kValue);
    OnNextModal([](QWidget* form) {
      auto* rows = Control<QTreeWidget>(form, "lvwMain");
      OnNextModal([](QWidget* field_form) {
        TypeOver(Control<QLineEdit>(field_form, "txtNewCPValue"), "27");
        QTest::mouseClick(Control<QPushButton>(field_form, "cmdOk"), Qt::LeftButton);
      });
      DoubleClick(rows, rows->topLevelItem(1));
      QCOMPARE(rows->topLevelItem(1)->text(1), QString("27 °C"));
      QTest::mouseClick(Control<QPushButton>(form, "cmdCancel"), Qt::LeftButton);
    });
    DoubleClick(tree, setpoints);
    QCOMPARE(setpoints->text(MainWindow::kValue), before);

    // Two changes back: the saved state again, not marked; then forward.
    auto* undo = window_->findChild<QAction*>("undo");
    auto* redo = window_->findChild<QAction*>("redo");
    QCOMPARE(undo->shortcut(), QKeySequence(QKeySequence::Undo));
    QCOMPARE(redo->shortcut(), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z));
    undo->trigger();
    QVERIFY(mode->text(MainWindow::kValue) != changed_mode);
    QVERIFY(window_->Undo());
    QCOMPARE(setpoint->text(MainWindow::kValue), QString("21.5 °C"));
    QVERIFY(!window_->isWindowModified());
    QVERIFY(!window_->Undo());
    redo->trigger();
    QCOMPARE(setpoint->text(MainWindow::kValue), QString("23.5 °C"));
    QVERIFY(window_->isWindowModified());
    QVERIFY(window_->Redo());
    QCOMPARE(mode->text(MainWindow::kValue), changed_mode);
    QVERIFY(!window_->Redo());
  }

  void ProgramIdDialogFromTheDeviceMenu() {
    OnNextModal([](QWidget* form) {
      QCOMPARE(form->windowTitle(), QString("Program ID"));
      auto* edit = Control<QLineEdit>(form, "txtNid");
      auto* ok = Control<QPushButton>(form, "cmdOk");
      QCOMPARE(edit->text(), QString("9FFFFF0A0B040401"));  // from the profile document
      // "The profile is changed:" stands before the buttons it is the caption of.
      const QLabel* caption = nullptr;
      for (QLabel* label : form->findChildren<QLabel*>()) {
        if (label->text() == "The profile is changed:") caption = label;
      }
      QVERIFY(caption);
      QVERIFY(caption->geometry().top() > edit->geometry().bottom());
      QVERIFY(caption->geometry().right() < ok->geometry().left());
      QVERIFY(qAbs(caption->geometry().center().y() - ok->geometry().center().y()) < 8);
      edit->selectAll();
      QTest::keyClicks(edit, "9fffff0a0000000");  // 15 digits, upper-cased as typed
      QCOMPARE(edit->text(), QString("9FFFFF0A0000000"));
      QVERIFY(!ok->isEnabled());
      QTest::keyClicks(edit, "g1");  // no hexadecimal digit, then the sixteenth
      QVERIFY(ok->isEnabled());
      QCOMPARE(form->focusWidget(), ok);
      QTest::mouseClick(ok, Qt::LeftButton);
    });
    QAction* action = nullptr;
    for (QAction* candidate : window_->findChildren<QAction*>()) {
      if (candidate->text() == "&Program ID...") action = candidate;
    }
    QVERIFY(action);
    action->trigger();
    QCOMPARE(QString::fromStdString(window_->ProgramId()), QString("9FFFFF0A00000001"));
  }

  void ProgramIdAndOptionsAreSavedWithTheProfile() {
    QTreeWidget* tree = window_->VariablesTree();
    OnNextModal([](QWidget* form) {
      QTest::mouseClick(Control<QCheckBox>(form, "chkSendOnDelta"), Qt::LeftButton);
      QTest::keyClicks(Control<QLineEdit>(form, "txtSendOnDelta"), "0.5");
      QTest::mouseClick(Control<QPushButton>(form, "cmdOk"), Qt::LeftButton);
    });
    DoubleClick(tree, Find(tree, "nvoSpaceTemp"));
    QVERIFY(window_->ProfileModified());
    QVERIFY(!window_->ValuesModified());
    QVERIFY(window_->isWindowModified());
    OnNextModal([](QWidget* form) {
      auto* edit = Control<QLineEdit>(form, "txtNid");
      edit->selectAll();
      QTest::keyClicks(edit, "9FFFFF0A00000002");
      QTest::mouseClick(Control<QPushButton>(form, "cmdOk"), Qt::LeftButton);
    });
    for (QAction* candidate : window_->findChildren<QAction*>()) {
      if (candidate->text() == "&Program ID...") candidate->trigger();
    }
    QTemporaryDir folder;
    const QString path = folder.filePath("profile.xml");
    QVERIFY(window_->SaveProfile(path.toStdString()));
    QVERIFY(!window_->isWindowModified());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    QVERIFY2(text.contains("<ProgramID>9FFFFF0A00000002</ProgramID>"), qPrintable(text));
    QVERIFY2(text.contains(R"(<nvoSpaceTemp Type="temp_p" Direction="Out" Key="P2" SendOnDelta="0.5">)"),
             qPrintable(text));

    // Opened again, the profile has both; taking the option back marks it changed again.
    QVERIFY(window_->Open({path.toStdString(), "", ""}));
    QVERIFY(!window_->isWindowModified());
    QCOMPARE(QString::fromStdString(window_->ProgramId()), QString("9FFFFF0A00000002"));
    QVERIFY(Save(true).contains(R"(Permanent="1" SendOnDelta="0.5")"));
    OnNextModal([](QWidget* form) {
      QTest::mouseClick(Control<QCheckBox>(form, "chkSendOnDelta"), Qt::LeftButton);
      QTest::mouseClick(Control<QPushButton>(form, "cmdOk"), Qt::LeftButton);
    });
    DoubleClick(tree, Find(tree, "nvoSpaceTemp"));
    QVERIFY(window_->ProfileModified());
    QVERIFY(!Save(true).contains("SendOnDelta"));
  }

  void ExportWritesWhatTheCommandLineExports() {
    window_->ChooseUnits(kolvane::UnitSystem::kUSCustomary);
    QTemporaryDir folder;
    const QString csv = folder.filePath("rows.csv");
    const QString json = folder.filePath("rows.json");
    QVERIFY(window_->Export(csv.toStdString(), false));
    QVERIFY(window_->Export(json.toStdString(), true));
    window_->ChooseUnits(kolvane::UnitSystem::kSI);
    QFile rows(csv);
    QVERIFY(rows.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(rows.readAll()).split("\r\n");
    QCOMPARE(lines.first(), QString("path,kind,type,direction,value,default,minimum,maximum,unit,raw,raw_problem"));
    QVERIFY2(lines.contains("nciSetpoint,cp,temp_p,,70.7,70.7,50,86,°F,0866,"), qPrintable(lines.join('\n')));
    QFile document(json);
    QVERIFY(document.open(QIODevice::ReadOnly));
    const QJsonObject root = QJsonDocument::fromJson(document.readAll()).object();
    QCOMPARE(root["profile"].toString(), QString("RoomController"));
    QCOMPARE(root["rows"].toArray().size(), lines.size() - 2);  // header, last line break
  }

 private:
  // Saves the values through the window and returns the file's text.
  // File, Export Device Interface into a file room.xif: its path and text (empty when the
  // generator wrote none).
  std::pair<QString, QString> GenerateDeviceInterface() {
    const QString path = scratch_.filePath("room.xif");
    if (!window_->GenerateDeviceInterface(path.toStdString())) return {path, {}};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {path, {}};
    return {path, QString::fromUtf8(file.readAll())};
  }

  QString Save(bool interoperability) {
    QTemporaryDir folder;
    const QString path = folder.filePath("values.xml");
    if (!window_->SaveValues(path.toStdString(), interoperability)) return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(file.readAll());
  }

  kolvane::studio::QtHost host_;
  std::unique_ptr<MainWindow> window_;
  QTemporaryDir scratch_;
};

QTEST_MAIN(StudioTest)
#include "StudioTest.moc"
