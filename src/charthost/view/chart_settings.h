#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>

#include "charthost/chart_layout.h"
#include "charthost/chart_model.h"
#include "charthost/indicators/indicator_text.h"

namespace velumar {

// The user's choices, saved between runs of the program. Invalid values read as the built-in ones.
class ChartSettings {
 public:
  ChartSettings();

  ChartOptions Options() const;
  void SetOptions(const ChartOptions& options);
  // Sentences about saved indicators that Options leaves out.
  std::vector<std::string> Problems() const;
  IndicatorSets Sets() const;
  void SetSets(const IndicatorSets& sets);
  // The charts of the next run.
  ChartLayout Layout() const;
  void SetLayout(const ChartLayout& layout);
  QString Folder() const;
  void SetFolder(const QString& folder);
  QByteArray Geometry() const;
  void SetGeometry(const QByteArray& geometry);

 private:
  SavedIndicators Indicators() const;

  QSettings settings_;
};

}  // namespace velumar
