#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>

#include "charthost/chart_options.h"

namespace velumar {

// What the program remembers of its user, one store per user. Values that make no sense read as
// the built-in ones.
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
