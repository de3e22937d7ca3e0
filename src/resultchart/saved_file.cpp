#include "resultchart/saved_file.h"

#include <QBuffer>
#include <QFileInfo>
#include <stdexcept>

#include "base/whole_file.h"

namespace velumar {

void FailToSave(const QString& file, const QString& why) {
  throw std::runtime_error((file + QStringLiteral(": ") + why).toStdString());
}

// Into memory first: the writers of the toolkit don't report a full disk.
void SaveWhole(const QString& file, const std::function<void(QIODevice& device)>& write) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  try {
    write(buffer);
  } catch (const std::runtime_error& error) {
    FailToSave(file, QString::fromUtf8(error.what()));
  }
  const QByteArray& bytes = buffer.data();
  ReplaceWholeFile(QFileInfo(file).filesystemFilePath(),
                   {bytes.constData(), static_cast<std::size_t>(bytes.size())}, FileAccess::kUsual);
}

QString RequireEnding(const QString& file, const QStringList& endings, const QString& what) {
  const QString ending = QFileInfo(file).suffix().toLower();
  if (endings.contains(ending)) return ending;
  FailToSave(file, what + QStringLiteral(" is saved as .") + endings.join(QStringLiteral(", .")));
}

}  // namespace velumar
