#include "resultchart/page_file.h"

#include <QPdfWriter>
#include <QSaveFile>
#include <stdexcept>

namespace velumar {

void SavePages(const QString& file, const QString& title,
               const std::function<void(QPagedPaintDevice& device)>& print) {
  const auto fail = [&file](const QString& why) {
    throw std::runtime_error((file + QStringLiteral(": ") + why).toStdString());
  };
  QSaveFile saved(file);
  if (!saved.open(QIODevice::WriteOnly)) fail(saved.errorString());
  try {
    QPdfWriter writer(&saved);
    writer.setTitle(title);
    print(writer);
  } catch (const std::runtime_error& error) {
    fail(QString::fromUtf8(error.what()));
  }
  if (!saved.commit()) fail(saved.errorString());
}

}  // namespace velumar
