#include "app/wiring/options.h"

#include <QCommandLineParser>
#include <stdexcept>

namespace velumar {

namespace {

const QCommandLineOption& SettingsDir() {
  static const QCommandLineOption option(
      QStringLiteral("settings-dir"),
      QStringLiteral("Keep the settings in <folder> instead of the user's own folder."),
      QStringLiteral("folder"));
  return option;
}

const QCommandLineOption& ThemeName() {
  static const QCommandLineOption option(
      QStringLiteral("theme"),
      QStringLiteral("Colours of the windows: system (the default), light or dark."),
      QStringLiteral("name"), QStringLiteral("system"));
  return option;
}

const QCommandLineOption& Play() {
  static const QCommandLineOption option(
      QStringLiteral("play"),
      QStringLiteral("Start a run at once, play <bars> bars, save pictures and end. "
                     "Message boxes go to the standard error output."),
      QStringLiteral("bars"));
  return option;
}

const QCommandLineOption& ScreenshotDir() {
  static const QCommandLineOption option(QStringLiteral("screenshot-dir"),
                                         QStringLiteral("Where --play saves its pictures."),
                                         QStringLiteral("folder"));
  return option;
}

const QCommandLineOption& ChartArgument() {
  static const QCommandLineOption option(
      QStringLiteral("chart-argument"),
      QStringLiteral("Start the chart program with <argument> too; may be given again."),
      QStringLiteral("argument"));
  return option;
}

ThemeChoice ReadTheme(const QString& name) {
  if (name == QLatin1String("system")) return ThemeChoice::kSystem;
  if (name == QLatin1String("light")) return ThemeChoice::kLight;
  if (name == QLatin1String("dark")) return ThemeChoice::kDark;
  throw std::invalid_argument("--theme " + name.toStdString() +
                              ": the themes are system, light and dark");
}

int ReadBars(const QString& text) {
  bool whole = false;
  const int bars = text.toInt(&whole);
  if (whole && bars > 0) return bars;
  throw std::invalid_argument("--play " + text.toStdString() +
                              ": the number of bars is a whole number above 0");
}

void Parse(QCommandLineParser& parser, const QStringList& arguments) {
  parser.setApplicationDescription(
      QStringLiteral("Replays the history of a security bar by bar beside a chart."));
  const QCommandLineOption help = parser.addHelpOption();
  const QCommandLineOption version = parser.addVersionOption();
  parser.addOptions({SettingsDir(), ThemeName(), Play(), ScreenshotDir(), ChartArgument()});
  if (!parser.parse(arguments)) throw std::invalid_argument(parser.errorText().toStdString());
  if (parser.isSet(help)) parser.showHelp();
  if (parser.isSet(version)) parser.showVersion();
  if (!parser.positionalArguments().isEmpty()) {
    throw std::invalid_argument("unexpected argument \"" +
                                parser.positionalArguments().constFirst().toStdString() + "\"");
  }
}

}  // namespace

Options ReadOptions(const QStringList& arguments) {
  QCommandLineParser parser;
  Parse(parser, arguments);
  Options options;
  options.settings_dir = parser.value(SettingsDir());
  options.theme = ReadTheme(parser.value(ThemeName()));
  options.screenshot_dir = parser.value(ScreenshotDir());
  if (parser.isSet(Play())) options.play = ReadBars(parser.value(Play()));
  if (options.PlaysAlone() == options.screenshot_dir.isEmpty()) {
    throw std::invalid_argument("--play and --screenshot-dir go together");
  }
  for (const QString& argument : parser.values(ChartArgument())) {
    options.chart_arguments.push_back(argument.toStdString());
  }
  return options;
}

}  // namespace velumar
