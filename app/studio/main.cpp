// kolvane-studio: a desktop host for a device's application profile.
//
//   kolvane-studio [PROFILE] [--catalogue SNVTS.xml] [--nvo NVOTABLE.xml]

#include <QApplication>
#include <QCommandLineParser>

#include "MainWindow.h"
#include "QtHost.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setOrganizationName("Kolvane");
  QApplication::setApplicationName("Kolvane Studio");
  QApplication::setApplicationVersion(KOLVANE_VERSION);

  QCommandLineParser parser;
  parser.setApplicationDescription("Shows and edits the values of a LonWorks application profile.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument(
      "profile", "Profile document or device interface file (.xif) (default: the bundled example).");
  const QCommandLineOption catalogue({"c", "catalogue"}, "Type catalogue (default: bundled).",
                                     "snvts.xml");
  const QCommandLineOption nvo_table({"n", "nvo"}, "NVO compatibility table (default: bundled).",
                                     "nvotable.xml");
  parser.addOptions({catalogue, nvo_table});
  parser.process(application);

  kolvane::studio::QtHost host;
  kolvane::studio::MainWindow window;
  const QStringList positional = parser.positionalArguments();
  window.show();
  window.Open({positional.isEmpty() ? std::string() : positional.front().toStdString(),
               parser.value(catalogue).toStdString(), parser.value(nvo_table).toStdString()});
  return QApplication::exec();
}
