#include "MainWindow.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <sstream>

#include <QAction>
#include <QClipboard>
#include <QLineEdit>
#include <QShortcut>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QStyle>
#include <QStatusBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "DeviceFiles.h"
#include "Export.h"
#include "Files.h"
#include "Profiles.h"
#include "QtFormHost.h"
#include "QtHost.h"

namespace kolvane::studio {

namespace {

QTreeWidget* MakeTree(QWidget* parent, const QString& name, bool with_direction) {
  auto* tree = new QTreeWidget(parent);
  tree->setObjectName(name);
  tree->setHeaderLabels({"Name", "Direction", "Type", "Value", "Default", "Limits", "Raw bytes"});
  tree->setColumnHidden(MainWindow::kDirection, !with_direction);
  tree->setAlternatingRowColors(true);
  tree->setUniformRowHeights(true);
  tree->header()->setSectionResizeMode(QHeaderView::Interactive);
  tree->header()->setStretchLastSection(false);
  // A click on a column's header sorts by it; rows can be chosen several at a time to copy.
  tree->setSortingEnabled(true);
  tree->sortByColumn(-1, Qt::AscendingOrder);
  tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
  return tree;
}

// The value, default, limits and raw columns are at most about this many characters wide.
constexpr size_t kLongText = 28;

// Each column as wide as its texts. The value, default, limits and raw columns take at most
// about kLongText characters each, and share what the name, direction and type columns leave of
// the pane, the narrowest keeping its width first, so that the columns fit the pane down to a
// 1024-pixel screen. A cut text ends in "…"; a drag on the header widens its column.
void FitColumns(QTreeWidget* tree) {
  const int character = tree->fontMetrics().averageCharWidth();
  const int widest = character * static_cast<int>(kLongText);
  int room = tree->viewport()->width();
  std::vector<std::pair<int, int>> shared;  // natural width, column
  for (int column = 0; column < MainWindow::kColumns; ++column) {
    if (tree->isColumnHidden(column)) {
      // Shown and hidden again: the header otherwise goes on placing the next column after it.
      tree->setColumnHidden(column, false);
      tree->setColumnWidth(column, 0);
      tree->setColumnHidden(column, true);
      continue;
    }
    tree->resizeColumnToContents(column);
    if (column < MainWindow::kValue) {
      room -= tree->columnWidth(column);
    } else {
      shared.emplace_back(std::min(tree->columnWidth(column), widest), column);
    }
  }
  std::sort(shared.begin(), shared.end());
  for (size_t i = 0; i < shared.size(); ++i) {
    const int share = room / static_cast<int>(shared.size() - i);
    const int width = std::min(shared[i].first, std::max(share, character * 8));
    tree->setColumnWidth(shared[i].second, width);
    room -= width;
  }
}

std::string TypeText(const app::ItemRef& item) {
  return item.type ? "SNVT_" + item.type->ISNVType_ID() : "";
}

}  // namespace

MainWindow::MainWindow() {
  auto* left = new QWidget(this);
  auto* left_layout = new QVBoxLayout(left);
  left_layout->setContentsMargins(0, 0, 0, 0);
  filter_ = new QLineEdit(left);
  filter_->setObjectName("filter");
  filter_->setPlaceholderText("Filter by name, type or value (Ctrl+F)");
  filter_->setClearButtonEnabled(true);
  left_layout->addWidget(filter_);
  connect(filter_, &QLineEdit::textChanged, this, [this](const QString& text) { Filter(text); });
  auto* find = new QShortcut(QKeySequence::Find, this);
  connect(find, &QShortcut::activated, this, [this] {
    filter_->setFocus();
    filter_->selectAll();
  });
  // Escape in the filter clears it (a key handler, not a shortcut: a shortcut would take
  // Escape from a dialog whose window the platform has not activated yet).
  filter_->installEventFilter(this);
  auto* copy = new QShortcut(QKeySequence::Copy, this);
  connect(copy, &QShortcut::activated, this, [this] {
    if (const QString text = SelectedRowsText(); !text.isEmpty()) QApplication::clipboard()->setText(text);
  });

  auto* panes = new QSplitter(Qt::Vertical, left);
  left_layout->addWidget(panes, 1);
  variables_ = MakeTree(panes, "variables", true);
  properties_ = MakeTree(panes, "properties", false);
  panes->addWidget(variables_);
  panes->addWidget(properties_);

  auto* side = new QGroupBox("Network variable", this);
  auto* side_layout = new QVBoxLayout(side);
  variable_facts_ = new QLabel("Select a network variable.", side);
  variable_facts_->setObjectName("variableFacts");
  variable_facts_->setTextFormat(Qt::PlainText);
  variable_facts_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  variable_facts_->setWordWrap(true);
  compatibles_ = new QListWidget(side);
  compatibles_->setObjectName("compatibles");
  side_layout->addWidget(variable_facts_);
  side_layout->addWidget(new QLabel("Compatible types:", side));
  side_layout->addWidget(compatibles_, 1);

  auto* main = new QSplitter(Qt::Horizontal, this);
  main->addWidget(left);
  main->addWidget(side);
  main->setStretchFactor(0, 4);
  main->setStretchFactor(1, 1);
  main->setCollapsible(1, false);
  side->setMinimumWidth(200);
  setCentralWidget(main);

  messages_ = new QPlainTextEdit(this);
  messages_->setObjectName("messages");
  messages_->setReadOnly(true);
  messages_->setMaximumBlockCount(1000);
  auto* dock = new QDockWidget("Messages", this);
  dock->setObjectName("messagesDock");
  dock->setWidget(messages_);
  dock->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable);
  addDockWidget(Qt::BottomDockWidgetArea, dock);
  resizeDocks({dock}, {120}, Qt::Vertical);

  for (QTreeWidget* tree : {variables_, properties_}) {
    // The columns follow the pane's width until the user sizes one.
    tree->viewport()->installEventFilter(this);
    connect(tree->header(), &QHeaderView::sectionResized, this, [this, tree] {
      if (!fitting_ && (QGuiApplication::mouseButtons() & Qt::LeftButton)) sized_by_user_.insert(tree);
    });
    // Double-click or Enter.
    connect(tree, &QTreeWidget::itemActivated, this,
            [this](QTreeWidgetItem* item) { EditItem(item); });
  }
  // The side panel follows the variables pane, whatever the other pane does.
  connect(variables_, &QTreeWidget::currentItemChanged, this,
          [this](QTreeWidgetItem* current) { ShowVariable(current); });
  BuildMenus();
  // 1280x760, or the screen less its window frame when that is smaller.
  QSize size(1280, 760);
  if (const QScreen* shown = screen()) size = size.boundedTo(shown->availableSize() - QSize(16, 48));
  resize(size);
  RefreshTitle();
}

void MainWindow::FitAllColumns() {
  fitting_ = true;
  for (QTreeWidget* tree : {variables_, properties_}) {
    if (!sized_by_user_.count(tree)) FitColumns(tree);
  }
  fitting_ = false;
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize && variables_ && properties_ &&
      (watched == variables_->viewport() || watched == properties_->viewport())) {
    FitAllColumns();
  }
  if (watched == filter_ && event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && !filter_->text().isEmpty()) {
    filter_->clear();
    return true;
  }
  return QMainWindow::eventFilter(watched, event);
}

MainWindow::~MainWindow() {
  if (profile_) profile_->IProfile_ClearParent();
}

void MainWindow::BuildMenus() {
  QMenu* file = menuBar()->addMenu("&File");
  file->addAction("&Open Profile...", QKeySequence::Open, this,
                  [this] { AskOpen(&ProfileFiles::profile, "Open Profile"); });
  file->addAction("Import &Device Interface...", this, [this] { AskImportDevice(); });
  // Also under Device, beside the program identifier it carries.
  QAction* generate = file->addAction("Export Device &Interface...", this, [this] {
    const QString path = QFileDialog::getSaveFileName(this, "Export Device Interface", {},
                                                      "Device interface files (*.xif)");
    if (!path.isEmpty()) GenerateDeviceInterface(path.toStdString());
  });
  generate->setObjectName("exportDeviceInterface");
  file->addAction("&Apply Values...", this, [this] {
    const QString path = QFileDialog::getOpenFileName(this, "Apply Values", {}, "XML (*.xml)");
    if (!path.isEmpty()) ApplyValues(path.toStdString());
  });
  file->addAction("Co&mpare With...", this, [this] {
    const QString path = QFileDialog::getOpenFileName(
        this, "Compare With", {}, "Profiles and values (*.xml *.xif *.XIF);;All files (*)");
    if (!path.isEmpty()) CompareWith(path.toStdString());
  });
  file->addAction("Type &Catalogue...", this,
                  [this] { AskOpen(&ProfileFiles::catalogue, "Type Catalogue"); });
  file->addAction("&NVO Table...", this,
                  [this] { AskOpen(&ProfileFiles::nvo_table, "NVO Table"); });
  recent_menu_ = file->addMenu("Open &Recent");
  recent_menu_->setObjectName("recentMenu");
  RebuildRecentMenu();
  file->addSeparator();
  file->addAction("&Save Values", QKeySequence::Save, this, [this] { SaveValuesAgain(); });
  file->addAction("Save Values &As...", this, [this] { AskSave(false); });
  file->addAction("Save Values for &Interoperability...", this, [this] { AskSave(true); });
  file->addSeparator();
  for (const bool json : {false, true}) {
    file->addAction(json ? "Export as &JSON..." : "&Export as CSV...", this, [this, json] {
      const QString path = QFileDialog::getSaveFileName(this, "Export", {},
                                                        json ? "JSON (*.json)" : "CSV (*.csv)");
      if (!path.isEmpty()) Export(path.toStdString(), json);
    });
  }
  file->addSeparator();
  file->addAction("Save &Profile", QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_S), this,
                  [this] { AskSaveProfile(false); });
  file->addAction("Save Profile As...", this, [this] { AskSaveProfile(true); });
  file->addSeparator();
  file->addAction("&Quit", QKeySequence::Quit, this, [this] { close(); });

  QMenu* edit = menuBar()->addMenu("&Edit");
  QAction* undo = edit->addAction("&Undo", QKeySequence::Undo, this, [this] { Undo(); });
  undo->setObjectName("undo");
  QAction* redo = edit->addAction("&Redo", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), this,
                                  [this] { Redo(); });
  redo->setObjectName("redo");

  QMenu* device = menuBar()->addMenu("&Device");
  device->addAction("&Program ID...", this, [this] { ChangeProgramId(); });
  device->addAction(generate);

  QMenu* help = menuBar()->addMenu("&Help");
  help->addAction("&About Kolvane Studio", this, [this] {
    QMessageBox::about(this, "About Kolvane Studio",
                       QString("Kolvane Studio %1\n\nLonWorks device profiles: network variables, "
                               "configuration properties, device interface files and schedules.")
                           .arg(QApplication::applicationVersion()));
  });

  QMenu* view = menuBar()->addMenu("&View");
  QMenu* units = view->addMenu("&Units");
  auto* systems = new QActionGroup(this);
  const auto add = [&](const QString& text, UnitSystem system) {
    QAction* action = units->addAction(text, this, [this, system] { ChooseUnits(system); });
    action->setCheckable(true);
    action->setObjectName(system == UnitSystem::kSI ? "unitsSI" : "unitsUS");
    systems->addAction(action);
    return action;
  };
  QAction* si = add("&SI (catalogue units)", UnitSystem::kSI);
  QAction* us = add("&US customary", UnitSystem::kUSCustomary);
  // The choice of the last run.
  const bool chosen_us = QSettings().value("units").toString() == "us";
  (chosen_us ? us : si)->setChecked(true);
  if (chosen_us) ChooseUnits(UnitSystem::kUSCustomary);
}

void MainWindow::Filter(const QString& text) {
  const QString wanted = text.trimmed();
  // A row matches by its name, type or value; an owner stays shown for a field that matches.
  const std::function<bool(QTreeWidgetItem*)> show = [&](QTreeWidgetItem* item) {
    bool any_child = false;
    for (int i = 0; i < item->childCount(); ++i) any_child = show(item->child(i)) || any_child;
    const bool match = wanted.isEmpty() ||
                       item->text(kName).contains(wanted, Qt::CaseInsensitive) ||
                       item->text(kType).contains(wanted, Qt::CaseInsensitive) ||
                       item->text(kValue).contains(wanted, Qt::CaseInsensitive);
    item->setHidden(!match && !any_child);
    if (any_child && !wanted.isEmpty()) item->setExpanded(true);
    return match || any_child;
  };
  for (QTreeWidget* tree : {variables_, properties_}) {
    for (int i = 0; i < tree->topLevelItemCount(); ++i) show(tree->topLevelItem(i));
  }
}

QString MainWindow::SelectedRowsText() const {
  QStringList lines;
  for (QTreeWidget* tree : {variables_, properties_}) {
    for (QTreeWidgetItem* item : tree->selectedItems()) {
      // "21.5 °C" is value 21.5 and unit °C.
      QString value = item->text(kValue);
      QString unit;
      if (const qsizetype blank = value.lastIndexOf(' '); blank > 0 && !value.startsWith('{')) {
        bool number = false;
        value.left(blank).toDouble(&number);
        if (number) {
          unit = value.mid(blank + 1);
          value = value.left(blank);
        }
      }
      lines << QStringList{item->text(kName), item->text(kType), value, unit, item->text(kRaw)}.join('\t');
    }
  }
  return lines.join('\n');
}

QStringList MainWindow::RecentProfiles() const { return QSettings().value("recent").toStringList(); }

void MainWindow::RememberRecent(const std::string& path) {
  if (path.empty()) return;
  QStringList recent = RecentProfiles();
  const QString full = QFileInfo(QString::fromStdString(path)).absoluteFilePath();
  recent.removeAll(full);
  recent.prepend(full);
  while (recent.size() > 8) recent.removeLast();
  QSettings().setValue("recent", recent);
  RebuildRecentMenu();
}

void MainWindow::RebuildRecentMenu() {
  if (!recent_menu_) return;
  recent_menu_->clear();
  const QStringList recent = RecentProfiles();
  for (int i = 0; i < recent.size(); ++i) {
    const QString path = recent[i];
    QAction* action = recent_menu_->addAction(QString("&%1 %2").arg(i + 1).arg(path), this, [this, path] {
      if (!ConfirmDiscard()) return;
      ProfileFiles files = files_;
      files.profile = path.toStdString();
      Open(files);
    });
    action->setObjectName(QString("recent%1").arg(i + 1));
  }
  recent_menu_->setEnabled(!recent.isEmpty());
}

void MainWindow::ChooseUnits(UnitSystem system) {
  if (system == UnitSystem::kUSCustomary) {
    std::string error;
    auto table = app::ReadDocument("", "units.xml", "Units", error);
    if (!table) {
      QMessageBox::critical(this, "Units", QString::fromStdString(error));
      system = UnitSystem::kSI;
    }
    SetUnitTable(table);
    units_table_ = table;
  }
  SetUnitSystem(system);
  QSettings().setValue("units", system == UnitSystem::kUSCustomary ? "us" : "si");
  if (QAction* action = findChild<QAction*>(system == UnitSystem::kSI ? "unitsSI" : "unitsUS")) {
    action->setChecked(true);
  }
  RefreshRows();
  FitAllColumns();
  ShowVariable(variables_->currentItem());
}

bool MainWindow::Open(const ProfileFiles& files) {
  std::string error;
  auto catalogue = app::ReadDocument(files.catalogue, "snvts.xml", "SNVTS", error);
  auto nvo_table =
      catalogue ? app::ReadDocument(files.nvo_table, "nvotable.xml", "NVOTable", error) : nullptr;
  if (!nvo_table) {
    QMessageBox::critical(this, "Open Profile", QString::fromStdString(error));
    return false;
  }
  std::optional<app::LoadedProfile> loaded;
  std::vector<std::string> messages;
  {
    CollectedMessages collected;
    const bool ran = RunGuarded("Open Profile", [&] {
      loaded = app::LoadProfileFile(files.profile, catalogue, nvo_table, error);
    });
    if (!ran) return false;
    messages = collected.lines();
  }
  if (!loaded) {
    QMessageBox::critical(this, "Open Profile", QString::fromStdString(error));
    return false;
  }
  for (const std::string& note : loaded->notes) messages.push_back("Device interface: " + note);
  if (profile_) profile_->IProfile_ClearParent();
  files_ = files;
  catalogue_ = loaded->catalogue;
  nvo_table_ = std::move(nvo_table);
  document_ = loaded->document;
  profile_ = loaded->profile;
  program_id_ = saved_program_id_ = document_->child("Profile").child("ProgramID").text().get();
  {
    CollectedMessages quiet;
    RunGuarded("Open Profile", [&] { options_ = app::NetworkVariableOptions(*profile_); });
  }
  saved_options_ = options_;
  values_path_.clear();
  edited_ = false;
  history_.clear();
  position_ = saved_position_ = 0;
  Populate();
  ReportLoad(messages);
  RefreshTitle();
  RememberRecent(files.profile);
  if (filter_ && !filter_->text().isEmpty()) Filter(filter_->text());
  return true;
}

void MainWindow::ReportLoad(const std::vector<std::string>& messages) {
  const std::string file = files_.profile.empty() ? "bundled example" : files_.profile;
  messages_->appendPlainText(
      QString::fromStdString("Loaded " + profile_->IProfile_Name() + " from " + file));
  for (const std::string& line : messages)
    messages_->appendPlainText(QString::fromStdString("  " + line));
  statusBar()->showMessage(QString("%1 variables, %2 properties, %3 messages")
                               .arg(profile_->IProfile_NVs()->INetworkVariables_Count())
                               .arg(profile_->IProfile_CPs()->IConfigProperties_Count())
                               .arg(messages.size()));
}

std::optional<std::vector<std::vector<std::string>>> MainWindow::RowsOfProfileFile(
    const std::string& path, std::vector<std::string>& messages, std::string& error) {
  std::optional<std::vector<std::vector<std::string>>> rows;
  const UnitSystem units = CurrentUnitSystem();
  // The library keeps a loaded profile's documents, types and units per thread: loaded here,
  // the other profile would take the open one's place.
  const std::string failure = RunOnOwnThread(
      [&] {
        SetUnitTable(units_table_);
        SetUnitSystem(units);
        // The catalogue as read, without the types the open profile carries.
        const auto catalogue = app::ReadDocument(files_.catalogue, "snvts.xml", "SNVTS", error);
        if (!catalogue) return;
        if (const auto loaded = app::LoadProfileFile(path, catalogue, nvo_table_, error)) {
          rows = app::ExportRows(*loaded->profile);
        }
      },
      messages);
  if (!failure.empty()) error = path + ": " + failure;
  return rows;
}

bool MainWindow::CompareWith(const std::string& path) {
  if (!profile_) return false;
  std::string error;
  const auto file = app::ReadComparedFile(path, error);
  std::optional<std::vector<std::vector<std::string>>> other;
  std::vector<std::string> messages;
  if (file && file->kind == app::DocumentKind::kProfile) {
    other = RowsOfProfileFile(path, messages, error);
  } else if (file) {
    other.emplace();  // read below, with the profile's own values
  }
  if (!other) {
    QMessageBox::critical(this, "Compare", QString::fromStdString(error));
    return false;
  }
  std::vector<app::Difference> differences;
  CollectedMessages collected;
  const bool compared = RunGuarded("Compare", [&] {
    if (file->kind == app::DocumentKind::kProfile) {
      differences = app::CompareRows(app::ExportRows(*profile_), *other);
      return;
    }
    // The profile's values in the file's form: the interoperability form keys its points.
    const bool interoperability = file->document->select_node("//ApPoint[@ItemKey]");
    pugi::xml_document own;
    own.load_string(app::ValuesDocumentTextUnchanged(*profile_, interoperability).c_str());
    differences = app::CompareRows(app::ValuesRows(own), app::ValuesRows(*file->document));
  });
  if (!compared) return false;
  messages.insert(messages.end(), collected.lines().begin(), collected.lines().end());
  messages_->appendPlainText(QString("Compared with %1: %2 differences")
                                 .arg(QString::fromStdString(path))
                                 .arg(differences.size()));
  for (const std::string& line : messages) {
    messages_->appendPlainText(QString::fromStdString("  " + line));
  }
  ShowDifferences(path, differences);
  return true;
}

void MainWindow::ShowDifferences(const std::string& path,
                                 const std::vector<app::Difference>& differences) {
  QDialog dialog(this);
  dialog.setWindowTitle("Compare");
  auto* layout = new QVBoxLayout(&dialog);
  const QString file = QFileInfo(QString::fromStdString(path)).fileName();
  auto* summary = new QLabel(differences.empty()
                                 ? QString("The profile and %1 hold the same.").arg(file)
                                 : QString("%1 differences between the profile (first) and %2 "
                                           "(second). Enter or a double click goes to the item.")
                                       .arg(differences.size())
                                       .arg(file));
  summary->setObjectName("summary");
  summary->setWordWrap(true);
  layout->addWidget(summary);
  auto* list = new QTreeWidget;
  list->setObjectName("differences");
  list->setRootIsDecorated(false);
  list->setHeaderLabels({"Item", "What", "First", "Second"});
  for (const app::Difference& difference : differences) {
    auto* row = new QTreeWidgetItem(list);
    row->setText(0, QString::fromStdString(difference.path));
    row->setText(1, QString::fromStdString(difference.what));
    row->setText(2, QString::fromStdString(difference.first));
    row->setText(3, QString::fromStdString(difference.second));
    row->setToolTip(0, QString::fromStdString(app::DifferenceLine(difference)));
  }
  for (int column = 0; column < list->columnCount(); ++column) list->resizeColumnToContents(column);
  list->setVisible(!differences.empty());
  layout->addWidget(list);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  layout->addWidget(buttons);
  std::string chosen;
  connect(list, &QTreeWidget::itemActivated, &dialog, [&](QTreeWidgetItem* row) {
    chosen = row->text(0).toStdString();
    dialog.accept();
  });
  if (!differences.empty()) {
    list->setCurrentItem(list->topLevelItem(0));
    list->setFocus();
  }
  dialog.resize(760, 420);
  if (dialog.exec() == QDialog::Accepted && !chosen.empty()) GoToItem(chosen);
}

void MainWindow::GoToItem(const std::string& path) {
  for (const Row& row : rows_) {
    if (row.item.path != path) continue;
    if (row.widget->isHidden()) filter_->clear();
    QTreeWidget* tree = row.widget->treeWidget();
    tree->setCurrentItem(row.widget);
    tree->scrollToItem(row.widget);
    tree->setFocus();
    return;
  }
}

bool MainWindow::SaveValues(const std::string& path, bool interoperability) {
  if (!profile_) return false;
  std::string error;
  if (!app::WriteFileAtomically(path, app::ValuesDocumentText(*profile_, interoperability),
                                error)) {
    QMessageBox::critical(this, "Save Values", QString::fromStdString(error));
    return false;
  }
  edited_ = false;
  saved_position_ = position_;
  if (!interoperability) values_path_ = path;
  messages_->appendPlainText(QString::fromStdString("Saved values to " + path));
  RefreshTitle();
  return true;
}

void MainWindow::AskOpen(std::string ProfileFiles::*file, const QString& title) {
  if (!ConfirmDiscard()) return;
  const QString path = QFileDialog::getOpenFileName(this, title, {}, "XML (*.xml)");
  if (path.isEmpty()) return;
  ProfileFiles files = files_;
  files.*file = path.toStdString();
  Open(files);
}

void MainWindow::AskImportDevice() {
  if (!ConfirmDiscard()) return;
  const QString path = QFileDialog::getOpenFileName(this, "Import Device Interface", {},
                                                    "Device interface files (*.xif *.XIF)");
  if (path.isEmpty()) return;
  ProfileFiles files = files_;
  files.profile = path.toStdString();
  Open(files);
}

bool MainWindow::AskSave(bool interoperability) {
  const QString path = QFileDialog::getSaveFileName(
      this, interoperability ? "Save Values for Interoperability" : "Save Values", {},
      "XML (*.xml)");
  if (path.isEmpty()) return false;
  // The values file is a document of its own: never write it over the profile it came from.
  if (!files_.profile.empty() &&
      QFileInfo(path) == QFileInfo(QString::fromStdString(files_.profile))) {
    QMessageBox::warning(this, "Save Values",
                         "The values would replace the profile they came from.");
    return false;
  }
  return SaveValues(path.toStdString(), interoperability);
}

bool MainWindow::Export(const std::string& path, bool json) {
  if (!profile_) return false;
  std::ostringstream text;
  RunGuarded("Export", [&] {
    const auto rows = app::ExportRows(*profile_);
    if (json) {
      app::WriteExportJson(text, profile_->IProfile_Name(), rows);
    } else {
      app::WriteExportCsv(text, rows);
    }
  });
  std::string error;
  if (!app::WriteFileAtomically(path, text.str(), error)) {
    QMessageBox::critical(this, "Export", QString::fromStdString(error));
    return false;
  }
  messages_->appendPlainText(QString::fromStdString("Exported to " + path));
  return true;
}

bool MainWindow::SaveValuesAgain() {
  if (values_path_.empty()) return AskSave(false);
  return SaveValues(values_path_, false);
}

bool MainWindow::SaveProfile(const std::string& path) {
  if (!profile_) return false;
  app::StoreOptions(options_, *document_);
  std::ostringstream text;
  document_->save(text, "  ", pugi::format_default, pugi::encoding_utf8);
  std::string error;
  if (!app::WriteFileAtomically(path, text.str(), error)) {
    QMessageBox::critical(this, "Save Profile", QString::fromStdString(error));
    return false;
  }
  saved_program_id_ = program_id_;
  saved_options_ = options_;
  if (files_.profile != path) {
    files_.profile = path;
    RememberRecent(path);
  }
  messages_->appendPlainText(QString::fromStdString("Saved profile to " + path));
  RefreshTitle();
  return true;
}

bool MainWindow::AskSaveProfile(bool always_ask) {
  if (!profile_) return false;
  std::string path = files_.profile;
  if (always_ask || path.empty() || app::IsDeviceFile(path)) {
    const QString chosen = QFileDialog::getSaveFileName(this, "Save Profile", {}, "XML (*.xml)");
    if (chosen.isEmpty()) return false;
    path = chosen.toStdString();
  }
  return SaveProfile(path);
}

bool MainWindow::ConfirmDiscard() {
  if (!Modified()) return true;
  std::string what = ValuesModified() ? "The values" : "The program ID and options";
  if (ValuesModified() && ProfileModified()) what += ", program ID and options";
  const auto answer = QMessageBox::question(
      this, "Kolvane Studio",
      QString::fromStdString(what + " of " + profile_->IProfile_Name() +
                             " were changed. Save them first?"),
      QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
  if (answer == QMessageBox::Save) {
    if (ValuesModified() && !SaveValuesAgain()) return false;
    return !ProfileModified() || AskSaveProfile(false);
  }
  return answer == QMessageBox::Discard;
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (ConfirmDiscard()) {
    event->accept();
  } else {
    event->ignore();
  }
}

void MainWindow::Populate() {
  rows_.clear();
  findings_.clear();
  variables_->clear();
  properties_->clear();
  rows_.reserve(256);
  for (const app::ItemRef& item : app::TopItems(*profile_)) {
    AddRows(item.kind == "cp" ? properties_ : variables_, nullptr, item, item);
  }
  RefreshRows();
  sized_by_user_.clear();
  FitAllColumns();
  ShowVariable(nullptr);
}

void MainWindow::AddRows(QTreeWidget* tree, QTreeWidgetItem* parent, const app::ItemRef& item,
                         const app::ItemRef& top) {
  auto* widget = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(tree);
  widget->setText(kName, QString::fromStdString(item.path.substr(item.path.rfind('.') + 1)));
  widget->setData(kName, Qt::UserRole, static_cast<qulonglong>(rows_.size()));
  rows_.push_back({item, top, widget});
  for (const app::ItemRef& field : app::FieldsOf(item)) AddRows(tree, widget, field, top);
}

const MainWindow::Row* MainWindow::RowOf(QTreeWidgetItem* widget) const {
  if (!widget) return nullptr;
  const auto index = widget->data(kName, Qt::UserRole).toULongLong();
  return index < rows_.size() ? &rows_[index] : nullptr;
}

void MainWindow::RefreshRows(const app::ItemRef* changed) {
  // What check finds in each item and field, marked on its row: every item's, or after an edit
  // the edited one's.
  {
    CollectedMessages quiet;
    if (!changed) findings_.clear();
    for (const Row& row : rows_) {
      if (changed && row.top.object == changed->object) findings_.erase(row.item.path);
    }
    for (const Row& row : rows_) {
      if (row.item.object != row.top.object || (changed && row.top.object != changed->object)) {
        continue;
      }
      const std::string failure = FailureOf([&] {
        for (Finding& finding : CheckItem(row.top.object, row.top.path)) {
          findings_[finding.path].push_back(std::move(finding));
        }
      });
      if (!failure.empty()) {
        findings_[row.top.path].push_back({"check-failed", true, row.top.path, failure});
      }
    }
  }
  const auto& findings = findings_;
  for (const Row& row : rows_) {
    const std::vector<std::string> texts = app::DisplayOf(row.item);
    QTreeWidgetItem* widget = row.widget;
    widget->setText(kDirection, row.item.kind == "in"    ? "Input"
                                : row.item.kind == "out" ? "Output"
                                                         : "");
    widget->setText(kType, QString::fromStdString(TypeText(row.item)));
    widget->setText(kValue, QString::fromStdString(texts[0]));
    widget->setText(kDefault, QString::fromStdString(texts[1]));
    // The limits an edit enforces; the type's own range beside them when it is other.
    const std::string limits = app::EnforcedLimitsOf(row.item, texts);
    const std::string range = app::LimitsOf(row.item, texts);
    widget->setText(kLimits, QString::fromStdString(limits));
    QString limits_tip;
    if (!limits.empty()) limits_tip = QString::fromStdString("Limits: " + limits);
    if (!range.empty() && range != limits) {
      limits_tip += QString::fromStdString("\nRange of " + TypeText(row.item) + ": " + range);
    }
    widget->setToolTip(kLimits, limits_tip);
    // Columns may cut their texts: the tooltips have them whole.
    widget->setToolTip(kDefault, QString::fromStdString(texts[1]));
    const RawBytes bytes = app::RawBytesOf(row.item);
    widget->setText(kRaw, QString::fromStdString(app::RawColumnOf(bytes)));
    widget->setToolTip(kRaw, QString::fromStdString(bytes.problem.empty() ? bytes.raw : bytes.problem));
    QStringList lines;
    bool error = false;
    if (const auto found = findings.find(row.item.path); found != findings.end()) {
      for (const Finding& finding : found->second) {
        lines << QString::fromStdString(app::FindingLine(finding));
        error = error || finding.error;
      }
    }
    widget->setIcon(kName, lines.isEmpty() ? QIcon()
                                           : style()->standardIcon(error ? QStyle::SP_MessageBoxCritical
                                                                         : QStyle::SP_MessageBoxWarning));
    widget->setToolTip(kName, lines.join('\n'));
    // The value whole, above any finding.
    if (!texts[0].empty()) lines.prepend(QString::fromStdString(texts[0]));
    widget->setToolTip(kValue, lines.join('\n'));
  }
}

void MainWindow::RefreshTitle() {
  const std::string name = profile_ ? profile_->IProfile_Name() : "no profile";
  setWindowTitle(QString::fromStdString(name) + "[*] - Kolvane Studio");
  setWindowModified(profile_ && Modified());
}

namespace {

// The values an item holds: its value, or a structure's leaf fields' values in order.
std::vector<std::string> Snapshot(const app::ItemRef& item) {
  std::vector<std::string> values;
  for (const app::ItemRef& leaf : app::LeavesOf(item)) values.push_back(app::LeafValueOf(leaf));
  return values;
}

// Puts back what Snapshot took.
void Restore(const app::ItemRef& item, const std::vector<std::string>& values) {
  const std::vector<app::ItemRef> leaves = app::LeavesOf(item);
  for (size_t i = 0; i < leaves.size() && i < values.size(); ++i) app::SetValueOf(leaves[i], values[i]);
}

}  // namespace

void MainWindow::EditItem(QTreeWidgetItem* widget) {
  const Row* row = RowOf(widget);
  if (!row) return;
  const app::ItemRef top = row->top;
  const std::vector<std::string> before = Snapshot(top);
  // A field is edited through its owner's dialog.
  RunGuarded("Edit Value", [&] {
    if (auto nv = std::dynamic_pointer_cast<INetworkVariable>(top.object)) {
      nv->INetworkVariable_SetValue();
    } else if (auto cp = std::dynamic_pointer_cast<IConfigProperty>(top.object)) {
      cp->IConfigProperty_SetValue();
    }
  });
  // The structure dialog's field dialogs write through; its Cancel takes all of it back.
  if (QtFormHost::LastRunCancelled() && top.fields) RunGuarded("Edit Value", [&] { Restore(top, before); });
  // An input's or output's options dialog may have changed its options.
  if (std::dynamic_pointer_cast<INetworkVariable>(top.object)) {
    CollectedMessages quiet;
    RunGuarded("Edit Value", [&] { options_ = app::NetworkVariableOptions(*profile_); });
  }
  const std::vector<std::string> after = Snapshot(top);
  if (after != before) {
    history_.resize(position_);
    history_.push_back({top, before, after});
    if (saved_position_ > position_) saved_position_ = SIZE_MAX;  // the saved state is gone
    position_ = history_.size();
  }
  RefreshRows(&top);
  RefreshTitle();
  ShowVariable(variables_->currentItem());
}

bool MainWindow::Undo() {
  if (position_ == 0) return false;
  --position_;
  RunGuarded("Undo", [&] { Restore(history_[position_].top, history_[position_].before); });
  RefreshRows(&history_[position_].top);
  RefreshTitle();
  return true;
}

bool MainWindow::Redo() {
  if (position_ >= history_.size()) return false;
  RunGuarded("Redo", [&] { Restore(history_[position_].top, history_[position_].after); });
  RefreshRows(&history_[position_].top);
  ++position_;
  RefreshTitle();
  return true;
}

void MainWindow::ShowVariable(QTreeWidgetItem* current) {
  compatibles_->clear();
  const Row* row = RowOf(current);
  const auto nv = row ? std::dynamic_pointer_cast<INetworkVariable>(row->top.object) : nullptr;
  if (!nv) {
    variable_facts_->setText("Select a network variable.");
    return;
  }
  std::string facts = nv->INetworkVariable_Name() + "\n" + TypeText(row->top) + ", " +
                      (nv->INetworkVariable_Direction() == 0 ? "input" : "output") + "\n";
  facts += nv->INetworkVariable_IsConnected() ? "Connected" : "Not connected";
  const int32_t index = nv->INetworkVariable_ConnectionIndex();
  facts += index < 0 ? ", not exported" : ", export number " + std::to_string(index);
  std::string override_text = "none";
  if (auto overridable = std::dynamic_pointer_cast<IOverridableItem>(nv)) {
    if (auto over = overridable->IOverridableItem_TypeOverride()) {
      override_text = over->ITypeOverride_OverridingType();
      if (auto states = over->ITypeOverride_States()) {
        override_text += " with " + std::to_string(states->IStates_Count()) + " states";
        for (const auto& state : states->IStates_NewEnum()) {
          override_text +=
              "\n  " + state->iState_Name() + " = " + std::to_string(state->iState_Value());
        }
      }
    }
  }
  facts += "\nType override: " + override_text;
  variable_facts_->setText(QString::fromStdString(facts));
  if (auto compatible = nv->INetworkVariable_SNVTCompatibles()) {
    for (const auto& entry : compatible->ICompatibleSNVTs_NewEnum()) {
      compatibles_->addItem(QString::fromStdString("SNVT_" + entry->ICompatibleSNVT_ID()));
    }
  }
}

bool MainWindow::ApplyValues(const std::string& path) {
  if (!profile_) return false;
  std::string error;
  const auto values = app::ReadValuesDocument(path, error);
  if (!values) {
    QMessageBox::warning(this, "Apply Values", QString::fromStdString(error));
    return false;
  }
  std::vector<std::string> notes;
  RunGuarded("Apply Values", [&] { notes = app::ApplyValues(*profile_, *values); });
  messages_->appendPlainText(QString::fromStdString("Applied values from " + path));
  for (const std::string& note : notes) messages_->appendPlainText(QString::fromStdString("  " + note));
  edited_ = true;
  RefreshRows();
  RefreshTitle();
  return true;
}

bool MainWindow::GenerateDeviceInterface(const std::string& path) {
  if (!profile_) return false;
  std::vector<std::string> written;
  std::string refused;
  RunGuarded("Export Device Interface", [&] {
    auto generator = CreateObjectAs<IXIFAndTypesGen>("TarnXIFandTypesGen.XIFAndTypesGen");
    generator->Source("Profile");
    generator->XifFile(path);
    generator->SourceProfile(profile_);
    try {
      generator->Generate();
      written = generator->Messages();
    } catch (const Error& error) {
      refused = error.detail();
    }
  });
  if (!refused.empty()) {
    messages_->appendPlainText(QString::fromStdString("Device interface not written: " + refused));
    QMessageBox::warning(this, "Export Device Interface", QString::fromStdString(refused));
    return false;
  }
  for (const std::string& line : written) {
    messages_->appendPlainText(QString::fromStdString("Device interface: " + line));
  }
  return !written.empty();
}

void MainWindow::ChangeProgramId() {
  auto dialog = std::make_shared<frmNewPID>();
  dialog->ProgramID(program_id_);
  dialog->Show();
  const std::string accepted = dialog->ProgramID();
  if (accepted.empty()) return;
  program_id_ = accepted;
  RefreshTitle();
  // The profile document keeps it: a generated device interface file binds to it.
  pugi::xml_node root = document_->child("Profile");
  pugi::xml_node element = root.child("ProgramID");
  if (!element) element = root.insert_child_after("ProgramID", root.child("Name"));
  element.text() = program_id_.c_str();
  messages_->appendPlainText(QString::fromStdString("Program ID set to " + program_id_));
  statusBar()->showMessage(QString::fromStdString("Program ID " + program_id_));
}

}  // namespace kolvane::studio
