#include "charthost/view/chart_settings.h"

#include <algorithm>
#include <array>

#include "charts/qt_text.h"

namespace velumar {
namespace {

const QString kStyle = QStringLiteral("Style");
const QString kTheme = QStringLiteral("Theme");
const QString kSafeColours = QStringLiteral("ColourBlindSafe");
const QString kVolume = QStringLiteral("Volume");
const QString kLogarithmic = QStringLiteral("LogScale");  // before there were more scales
const QString kScale = QStringLiteral("Scale");
const QString kAxisAtLeft = QStringLiteral("PriceAxisAtLeft");
const QString kPositions = QStringLiteral("Positions");
const QString kDrawingBar = QStringLiteral("DrawingToolbar");
const QString kIndicators = QStringLiteral("Indicators");
const QString kIndicatorSets = QStringLiteral("IndicatorSets");
const QString kFrames = QStringLiteral("Intervals");
const QString kVolumeHeight = QStringLiteral("VolumeHeight");
const QString kLayout = QStringLiteral("Layout");
const QString kFolder = QStringLiteral("Folder");
const QString kGeometry = QStringLiteral("Geometry");

// In the order of ChartStyle, PriceScale and ChartTheme.
const std::array<QString, 6> kStyleNames = {QStringLiteral("candles"),     QStringLiteral("hollow"),
                                            QStringLiteral("heikin-ashi"), QStringLiteral("bars"),
                                            QStringLiteral("line"),        QStringLiteral("area")};
const std::array<QString, 3> kScaleNames = {QStringLiteral("linear"), QStringLiteral("logarithmic"),
                                            QStringLiteral("percent")};
const std::array<QString, 3> kThemeNames = {QStringLiteral("system"), QStringLiteral("light"),
                                            QStringLiteral("dark")};

template <typename T, std::size_t kCount>
T FromName(const std::array<QString, kCount>& names, const QVariant& name, T otherwise) {
  const auto found = std::ranges::find(names, name.toString());
  return found == names.end() ? otherwise : static_cast<T>(found - names.begin());
}

QString AverageKey(std::size_t index, const char* what) {
  return QStringLiteral("Average%1%2").arg(index + 1).arg(QLatin1String(what));
}

std::map<int, Frame> ReadFrames(const QStringList& texts) {
  std::map<int, Frame> frames;
  for (const QString& text : texts) ReadFrame(FromQt(text), frames);
  return frames;
}

QStringList FrameTexts(const std::map<int, Frame>& frames) {
  QStringList texts;
  for (const auto& [interval, frame] : frames) texts.append(ToQt(FrameText(interval, frame)));
  return texts;
}

// The two averages of settings from before there were other indicators.
std::vector<ChosenIndicator> OldAverages(const QSettings& settings) {
  std::vector<ChosenIndicator> averages = FirstIndicators();
  for (std::size_t i = 0; i < averages.size(); ++i) {
    ChosenIndicator& average = averages[i];
    average.shown = settings.value(AverageKey(i, "Shown"), average.shown).toBool();
    const int period = settings.value(AverageKey(i, "Period"), 0).toInt();
    if (period >= 1 && period <= 999) average.parameters = {static_cast<double>(period)};
  }
  return averages;
}

}  // namespace

ChartSettings::ChartSettings()
    : settings_(QSettings::defaultFormat(), QSettings::UserScope, QStringLiteral("Velumar"),
                QStringLiteral("Chart")) {
  settings_.setFallbacksEnabled(false);
}

ChartOptions ChartSettings::Options() const {
  ChartOptions options;
  options.style = FromName(kStyleNames, settings_.value(kStyle), options.style);
  options.theme = FromName(kThemeNames, settings_.value(kTheme), options.theme);
  options.safe_colours = settings_.value(kSafeColours, options.safe_colours).toBool();
  options.volume = settings_.value(kVolume, options.volume).toBool();
  if (settings_.value(kLogarithmic).toBool()) options.scale = PriceScale::kLogarithmic;
  options.scale = FromName(kScaleNames, settings_.value(kScale), options.scale);
  options.axis_at_left = settings_.value(kAxisAtLeft, options.axis_at_left).toBool();
  options.positions = settings_.value(kPositions, options.positions).toBool();
  options.drawing_bar = settings_.value(kDrawingBar, options.drawing_bar).toBool();
  options.indicators = Indicators().indicators;
  options.frames = ReadFrames(settings_.value(kFrames).toStringList());
  const int height = settings_.value(kVolumeHeight, options.volume_height).toInt();
  if (height >= ChosenIndicator::kLeastHeight && height <= ChosenIndicator::kMostHeight) {
    options.volume_height = height;
  }
  return options;
}

SavedIndicators ChartSettings::Indicators() const {
  if (!settings_.contains(kIndicators)) return {OldAverages(settings_), {}};
  return ReadIndicators(FromQt(settings_.value(kIndicators).toString()));
}

std::vector<std::string> ChartSettings::Problems() const { return Indicators().problems; }

IndicatorSets ChartSettings::Sets() const {
  return ReadSets(FromQt(settings_.value(kIndicatorSets).toString()));
}

void ChartSettings::SetSets(const IndicatorSets& sets) {
  settings_.setValue(kIndicatorSets, ToQt(SetsText(sets)));
}

void ChartSettings::SetOptions(const ChartOptions& options) {
  settings_.setValue(kStyle, kStyleNames[static_cast<std::size_t>(options.style)]);
  settings_.setValue(kTheme, kThemeNames[static_cast<std::size_t>(options.theme)]);
  settings_.setValue(kSafeColours, options.safe_colours);
  settings_.setValue(kVolume, options.volume);
  settings_.setValue(kScale, kScaleNames[static_cast<std::size_t>(options.scale)]);
  settings_.setValue(kAxisAtLeft, options.axis_at_left);
  settings_.setValue(kPositions, options.positions);
  settings_.setValue(kDrawingBar, options.drawing_bar);
  settings_.setValue(kIndicators, ToQt(IndicatorsText(options.indicators)));
  settings_.setValue(kVolumeHeight, options.volume_height);
  settings_.setValue(kFrames, FrameTexts(options.frames));
}

ChartLayout ChartSettings::Layout() const {
  return ReadLayout(FromQt(settings_.value(kLayout).toString()));
}

void ChartSettings::SetLayout(const ChartLayout& layout) {
  settings_.setValue(kLayout, ToQt(LayoutText(layout)));
}

QString ChartSettings::Folder() const { return settings_.value(kFolder).toString(); }

void ChartSettings::SetFolder(const QString& folder) { settings_.setValue(kFolder, folder); }

QByteArray ChartSettings::Geometry() const { return settings_.value(kGeometry).toByteArray(); }

void ChartSettings::SetGeometry(const QByteArray& geometry) {
  settings_.setValue(kGeometry, geometry);
}

}  // namespace velumar
