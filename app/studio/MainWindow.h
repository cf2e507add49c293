#pragma once

#include <QMainWindow>
#include <QMenu>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Kolvane.h"
#include "Compare.h"
#include "ProfileItems.h"

class QLabel;
class QListWidget;
class QPlainTextEdit;
class QTreeWidget;
class QTreeWidgetItem;

class QLineEdit;

namespace kolvane::studio {

// The files a profile is read from; empty paths stand for the bundled examples.
struct ProfileFiles {
  std::string profile;  // a profile document, or a device interface file (.xif) to import
  std::string catalogue;
  std::string nvo_table;
};

// The studio's window: the profile's network variables and configuration properties as trees,
// the selected variable's connection facts beside them, and the library's messages below.
class MainWindow final : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow();
  ~MainWindow() override;

  // Reads the three documents and loads the profile; false (with a message box) when a file
  // cannot be read, the loaded profile then stays.
  bool Open(const ProfileFiles& files);
  // Writes the values, stored or interoperability form, atomically; false with a message box.
  bool SaveValues(const std::string& path, bool interoperability);
  // Writes every item and field as the command line's export does, CSV or JSON, atomically;
  // false with a message box.
  bool Export(const std::string& path, bool json);
  // Writes the profile document with the program identifier and the network variable options
  // as they are now, atomically; later saves go to path. False with a message box.
  bool SaveProfile(const std::string& path);
  // Writes the profile's device interface file through the generator; what it wrote, or why it
  // wrote nothing, goes to the Messages pane. False when it wrote nothing.
  bool GenerateDeviceInterface(const std::string& path);
  // Compares the profile as it is now with a profile, device interface file or values document
  // at path, as the command line's diff does, and lists the differences in a dialog; activating
  // one selects its item. False, with a message box, when the file cannot be compared.
  bool CompareWith(const std::string& path);
  // Sets the values a values document holds (File, Apply Values); the records naming items the
  // profile lacks go to the Messages pane. False when the file is no values document.
  bool ApplyValues(const std::string& path);

  // The two item trees; columns as in Column.
  QTreeWidget* VariablesTree() const { return variables_; }
  QTreeWidget* PropertiesTree() const { return properties_; }
  // Shows values in unit system (also in every dialog opened later), redraws the panes and
  // remembers the choice for the next run.
  void ChooseUnits(UnitSystem system);
  // The program identifier last accepted in the Device menu's dialog.
  const std::string& ProgramId() const { return program_id_; }

  enum Column { kName, kDirection, kType, kValue, kDefault, kLimits, kRaw, kColumns };

  // Shows only the rows whose name (any part), type or value holds text, without regard to
  // case; a field that matches keeps its owner shown. Empty text shows every row.
  void Filter(const QString& text);
  // The selected rows as text, one a line: name, type, value, unit, raw bytes (tab-separated).
  QString SelectedRowsText() const;
  // The profiles opened last, newest first (at most eight), remembered between runs.
  QStringList RecentProfiles() const;
  // Takes back the last value change made in the studio, or makes it again (Edit menu).
  bool Undo();
  bool Redo();
  // Whether anything differs from what was opened or saved last: values (the history's place
  // against the saved one, values applied from a document) or the profile document's own
  // facts (program identifier, network variable options).
  bool ValuesModified() const { return edited_ || position_ != saved_position_; }
  bool ProfileModified() const {
    return program_id_ != saved_program_id_ || options_ != saved_options_;
  }
  bool Modified() const { return ValuesModified() || ProfileModified(); }

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Row {
    app::ItemRef item;
    app::ItemRef top;  // the network variable or property the row belongs to
    QTreeWidgetItem* widget = nullptr;
  };

  void BuildMenus();
  void RememberRecent(const std::string& path);
  void RebuildRecentMenu();
  void Populate();
  void AddRows(QTreeWidget* tree, QTreeWidgetItem* parent, const app::ItemRef& item,
               const app::ItemRef& top);
  // Redraws every row; the findings of changed only (a top item) when given, else of all.
  void RefreshRows(const app::ItemRef* changed = nullptr);
  // Fits the panes' columns to their widths, but for a pane whose columns the user sized.
  void FitAllColumns();
  void RefreshTitle();
  void ShowVariable(QTreeWidgetItem* current);
  const Row* RowOf(QTreeWidgetItem* widget) const;
  // Opens the item's editor (a field's: its owner's) and redraws what it changed.
  void EditItem(QTreeWidgetItem* widget);
  void ChangeProgramId();
  // Asks for one of the three files and opens the profile again with it.
  void AskOpen(std::string ProfileFiles::*file, const QString& title);
  // File, Import Device Interface: a device interface file opened as a profile.
  void AskImportDevice();
  // Asks for a file and saves the values; false when nothing was written.
  bool AskSave(bool interoperability);
  // Saves the values to the file they were last saved to, asking when there is none.
  bool SaveValuesAgain();
  // Saves the profile document to its file, asking when it has none of its own (the bundled
  // example, an imported device) or when always_ask.
  bool AskSaveProfile(bool always_ask);
  // True when nothing the user changed would be lost, after asking to save what would.
  bool ConfirmDiscard();
  void ReportLoad(const std::vector<std::string>& messages);
  // The export rows of the profile file at path, loaded on a thread of its own so that the
  // library's state of the open profile stays; nothing, with why in error, when it fails.
  std::optional<std::vector<std::vector<std::string>>> RowsOfProfileFile(
      const std::string& path, std::vector<std::string>& messages, std::string& error);
  void ShowDifferences(const std::string& path, const std::vector<app::Difference>& differences);
  // Makes the row of the item at path current in its pane, clearing a filter that hides it.
  void GoToItem(const std::string& path);

  ProfileFiles files_;
  std::shared_ptr<pugi::xml_document> catalogue_;
  std::shared_ptr<pugi::xml_document> nvo_table_;
  std::shared_ptr<pugi::xml_document> units_table_;  // read when US units were chosen
  std::shared_ptr<pugi::xml_document> document_;
  std::shared_ptr<IProfile> profile_;
  std::string program_id_;
  std::string saved_program_id_;
  app::Options options_;
  app::Options saved_options_;
  std::string values_path_;  // where Save Values wrote last
  // The user changed values since the last load or save. The library's flag cannot tell: a
  // profile needs saving from the moment it is made.
  bool edited_ = false;
  std::vector<Row> rows_;
  // The value changes made in the studio: an item's values before and after, oldest first.
  struct Change {
    app::ItemRef top;
    std::vector<std::string> before;
    std::vector<std::string> after;
  };
  std::vector<Change> history_;
  size_t position_ = 0;        // changes in effect: history_[0 .. position_)
  size_t saved_position_ = 0;  // where the last open or save left the history

  QTreeWidget* variables_ = nullptr;
  QTreeWidget* properties_ = nullptr;
  QLabel* variable_facts_ = nullptr;
  QListWidget* compatibles_ = nullptr;
  QPlainTextEdit* messages_ = nullptr;
  QLineEdit* filter_ = nullptr;
  QMenu* recent_menu_ = nullptr;
  std::set<QTreeWidget*> sized_by_user_;
  std::map<std::string, std::vector<Finding>> findings_;  // by item or field path
  bool fitting_ = false;
};

}  // namespace kolvane::studio
