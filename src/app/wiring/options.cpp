#include "app/wiring/options.h"

#include <QCommandLineParser>
#include <QHash>
#include <stdexcept>

namespace velumar {

namespace {

ThemeChoice ReadTheme(const QString& name) {
  static const QHash<QString, ThemeChoice> kThemes{{QStringLiteral("system"), ThemeChoice::kSystem},
                                                   {QStringLiteral("light"), ThemeChoice::kLight},
                                                   {QStringLiteral("dark"), ThemeChoice::kDark}};
  if (kThemes.contains(name)) return kThemes.value(name);
  throw std::invalid_argument("--theme " + name.toStdString() + ": choose system, light or dark");
}

int ReadBars(const QString& text) {
  bool is_number = false;
  const int bars = text.toInt(&is_number);
  if (is_number && bars > 0) return bars;
  throw std::invalid_argument("--play " + text.toStdString() +
                              ": the number of bars must be a whole number above 0");
}

bool KeysOnly(const QString& link) {
  if (link == u"keys") return true;
  if (link == u"direct") return false;
  throw std::invalid_argument("--chart-link " + link.toStdString() + ": choose direct or keys");
}

void Parse(QCommandLineParser& parser, const QStringList& arguments) {
  parser.setApplicationDescription(
      QStringLiteral("Replays the price history of a security bar by bar next to a chart."));
  const QCommandLineOption help = parser.addHelpOption();
  const QCommandLineOption version = parser.addVersionOption();
  const auto add = [&parser](const char* name, const char* text, const char* value) {
    parser.addOption(
        {QString::fromLatin1(name), QString::fromLatin1(text), QString::fromLatin1(value)});
  };
  add("settings-dir", "Store the settings in <folder> instead of the user's own folder.", "folder");
  add("theme", "Colours of the windows: system (the default), light or dark.", "name");
  add("play",
      "Start a run at once, play <bars> bars, save pictures of the windows and exit. "
      "Messages go to standard error.",
      "bars");
  add("screenshot-dir", "The folder in which --play saves its pictures.", "folder");
  add("chart-link",
      "How to reach the chart program: direct (the default) uses Velumar's own chart program "
      "without the keyboard, keys types into any chart program.",
      "way");
  add("chart-argument", "Pass <argument> to the chart program; can be repeated.", "argument");
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
  const auto value = [&parser](const char* name) {
    return parser.value(QString::fromLatin1(name));
  };
  Options options;
  options.settings_dir = value("settings-dir");
  if (parser.isSet(QStringLiteral("theme"))) options.theme = ReadTheme(value("theme"));
  options.screenshot_dir = value("screenshot-dir");
  if (parser.isSet(QStringLiteral("play"))) options.play = ReadBars(value("play"));
  if (options.PlaysAlone() == options.screenshot_dir.isEmpty()) {
    throw std::invalid_argument("use --play and --screenshot-dir together");
  }
  if (parser.isSet(QStringLiteral("chart-link")))
    options.chart_keys = KeysOnly(value("chart-link"));
  for (const QString& argument : parser.values(QStringLiteral("chart-argument"))) {
    options.chart_arguments.push_back(argument.toStdString());
  }
  return options;
}

}  // namespace velumar
