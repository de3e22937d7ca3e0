#include <QApplication>
#include <QCommandLineParser>
#include <QUrl>
#include <iostream>

#include "charthost/series_source.h"
#include "charthost/view/chart_desktop.h"
#include "charthost/view/chart_settings.h"
#include "charthost/view/key_filter.h"
#include "charthost/view/link_server.h"
#include "charthost/view/main_window.h"
#include "charthost/view/theme.h"
#include "marketdata/index_cache.h"
#include "platform/system.h"
#include "platform/user_files.h"

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

struct Arguments {
  bool prints_states;
  QString opening;  // the symbol of the first chart, if Velumar will open one
  QString theme;    // of Velumar: "light", "dark" or empty
};

// Exits after --help, --version or an unknown option.
Arguments ReadArguments() {
  QCoreApplication::setApplicationVersion(QStringLiteral(VELUMAR_VERSION));
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Draws charts of market data directories."));
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption state(
      QStringLiteral("state"),
      QStringLiteral("Print a line of JSON after each change of the open charts."));
  parser.addOption(state);
  // For Velumar, which starts this program.
  QCommandLineOption opening(QStringLiteral("opening"), QString(), QStringLiteral("symbol"));
  QCommandLineOption theme(QStringLiteral("theme"), QString(), QStringLiteral("name"));
  for (QCommandLineOption* const option : {&opening, &theme}) {
    option->setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOption(*option);
  }
  parser.process(WithoutForeignSwitches(QCoreApplication::arguments()));
  return {parser.isSet(state), QUrl::fromPercentEncoding(parser.value(opening).toUtf8()),
          parser.value(theme)};
}

}  // namespace

int main(int argc, char** argv) {
  if (velumar::AsksForHelp(argc, argv)) {
    const QCoreApplication application(argc, argv);  // needs no display
    ReadArguments();
  }
  velumar::ChooseChartDisplay();
  QApplication application(argc, argv);
  const Arguments arguments = ReadArguments();
  velumar::IgnoreClosedPipes();  // the reader of the lines may end first

  velumar::InstallStyle();
  QApplication::setWindowIcon(velumar::ProgramIcon());
  velumar::IndexCache cache;
  const velumar::SeriesSource source(cache);
  velumar::ChartSettings settings;
  velumar::MainWindow window(source, settings, velumar::UserFile("drawings.json"),
                             arguments.prints_states ? velumar::MainWindow::Report(PrintLine)
                                                     : velumar::MainWindow::Report());
  if (!arguments.opening.isEmpty()) window.ShowOpening(arguments.opening);
  if (!arguments.theme.isEmpty()) window.FollowTheme(arguments.theme == u"dark");
  const velumar::KeyFilter keys(window);
  if (!arguments.opening.isEmpty()) {
    velumar::ShowMaximisedForTrader(window);
  } else {
    window.show();
  }
  const velumar::LinkServer link(window);
  return QApplication::exec();
}
