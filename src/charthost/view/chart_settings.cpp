#include "charthost/view/chart_settings.h"

#include <algorithm>
#include <array>

namespace velumar {
namespace {

const QString kStyle = QStringLiteral("Style");
const QString kTheme = QStringLiteral("Theme");
const QString kVolume = QStringLiteral("Volume");
const QString kLogarithmic = QStringLiteral("LogScale");
const QString kPositions = QStringLiteral("Positions");
const QString kFolder = QStringLiteral("Folder");
const QString kGeometry = QStringLiteral("Geometry");

// In the order of ChartStyle and of ChartTheme.
const std::array<QString, 3> kStyleNames = {QStringLiteral("candles"), QStringLiteral("bars"),
                                            QStringLiteral("line")};
const std::array<QString, 3> kThemeNames = {QStringLiteral("system"), QStringLiteral("light"),
                                            QStringLiteral("dark")};

template <typename T>
T FromName(const std::array<QString, 3>& names, const QVariant& name, T otherwise) {
  const auto found = std::ranges::find(names, name.toString());
  return found == names.end() ? otherwise : static_cast<T>(found - names.begin());
}

QString AverageKey(std::size_t index, const char* what) {
  return QStringLiteral("Average%1%2").arg(index + 1).arg(QLatin1String(what));
}

}  // namespace

ChartSettings::ChartSettings()
    : settings_(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Velumar"),
                QStringLiteral("Chart")) {
  settings_.setFallbacksEnabled(false);
}

ChartOptions ChartSettings::Options() const {
  ChartOptions options;
  options.style = FromName(kStyleNames, settings_.value(kStyle), options.style);
  options.theme = FromName(kThemeNames, settings_.value(kTheme), options.theme);
  options.volume = settings_.value(kVolume, options.volume).toBool();
  options.logarithmic = settings_.value(kLogarithmic, options.logarithmic).toBool();
  options.positions = settings_.value(kPositions, options.positions).toBool();
  for (std::size_t i = 0; i < options.averages.size(); ++i) {
    AverageOptions& average = options.averages[i];
    average.shown = settings_.value(AverageKey(i, "Shown"), average.shown).toBool();
    const int period = settings_.value(AverageKey(i, "Period"), average.period).toInt();
    if (period >= 1 && period <= ChartOptions::kLongestPeriod) average.period = period;
  }
  return options;
}

void ChartSettings::SetOptions(const ChartOptions& options) {
  settings_.setValue(kStyle, kStyleNames[static_cast<std::size_t>(options.style)]);
  settings_.setValue(kTheme, kThemeNames[static_cast<std::size_t>(options.theme)]);
  settings_.setValue(kVolume, options.volume);
  settings_.setValue(kLogarithmic, options.logarithmic);
  settings_.setValue(kPositions, options.positions);
  for (std::size_t i = 0; i < options.averages.size(); ++i) {
    settings_.setValue(AverageKey(i, "Shown"), options.averages[i].shown);
    settings_.setValue(AverageKey(i, "Period"), options.averages[i].period);
  }
}

QString ChartSettings::Folder() const { return settings_.value(kFolder).toString(); }

void ChartSettings::SetFolder(const QString& folder) { settings_.setValue(kFolder, folder); }

QByteArray ChartSettings::Geometry() const { return settings_.value(kGeometry).toByteArray(); }

void ChartSettings::SetGeometry(const QByteArray& geometry) {
  settings_.setValue(kGeometry, geometry);
}

}  // namespace velumar
