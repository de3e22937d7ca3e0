#include <QApplication>
#include <QCommandLineParser>
#include <iostream>

#include "charthost/series_source.h"
#include "charthost/view/chart_desktop.h"
#include "charthost/view/chart_settings.h"
#include "charthost/view/key_filter.h"
#include "charthost/view/main_window.h"
#include "charthost/view/theme.h"
#include "marketdata/index_cache.h"
#include "platform/system.h"

namespace {

// Programs that start this one add switches such as "/l", which mean nothing here.
QStringList WithoutForeignSwitches(const QStringList& arguments) {
  QStringList ours;
  for (const QString& argument : arguments) {
    if (ours.isEmpty() || !argument.startsWith(u'/')) ours.append(argument);
  }
  return ours;
}

void PrintLine(const std::string& line) { std::cout << line << std::endl; }

// Returns whether to print states. Exits after --help, --version or an unknown option.
bool ReadArguments() {
  QCoreApplication::setApplicationVersion(QStringLiteral(VELUMAR_VERSION));
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Draws charts of market data directories."));
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption state(
      QStringLiteral("state"),
      QStringLiteral("Print a line of JSON after each change of the open charts."));
  parser.addOption(state);
  parser.process(WithoutForeignSwitches(QCoreApplication::arguments()));
  return parser.isSet(state);
}

}  // namespace

int main(int argc, char** argv) {
  if (velumar::AsksForHelp(argc, argv)) {
    const QCoreApplication application(argc, argv);  // needs no display
    ReadArguments();
  }
  velumar::ChooseChartDisplay();
  QApplication application(argc, argv);
  const bool prints_states = ReadArguments();
  velumar::IgnoreClosedPipes();  // the reader of the lines may end first

  velumar::InstallStyle();
  QApplication::setWindowIcon(velumar::ProgramIcon());
  velumar::IndexCache cache;
  const velumar::SeriesSource source(cache);
  velumar::ChartSettings settings;
  velumar::MainWindow window(
      source, settings,
      prints_states ? velumar::MainWindow::Report(PrintLine) : velumar::MainWindow::Report());
  const velumar::KeyFilter keys(window);
  window.show();
  return QApplication::exec();
}
