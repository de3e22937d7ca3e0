#include "resultchart/saved_file.h"

#include <QSaveFile>
#include <stdexcept>

namespace velumar {

void FailToSave(const QString& file, const QString& why) {
  throw std::runtime_error((file + QStringLiteral(": ") + why).toStdString());
}

void SaveWhole(const QString& file, const std::function<void(QIODevice& device)>& write) {
  QSaveFile saved(file);
  if (!saved.open(QIODevice::WriteOnly)) FailToSave(file, saved.errorString());
  try {
    write(saved);
  } catch (const std::runtime_error& error) {
    FailToSave(file, QString::fromUtf8(error.what()));
  }
  if (!saved.commit()) FailToSave(file, saved.errorString());
}

}  // namespace velumar
