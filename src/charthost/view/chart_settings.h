#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>

#include "charthost/chart_model.h"

namespace velumar {

// The user's choices, saved between runs of the program. Invalid values read as the built-in ones.
class ChartSettings {
 public:
  ChartSettings();

  ChartOptions Options() const;
  void SetOptions(const ChartOptions& options);
  QString Folder() const;
  void SetFolder(const QString& folder);
  QByteArray Geometry() const;
  void SetGeometry(const QByteArray& geometry);

 private:
  QSettings settings_;
};

}  // namespace velumar
