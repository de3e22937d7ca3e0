#include "app/qt_folder_dialog.h"

#include <QDir>
#include <QFileDialog>

namespace velumar {

std::string QtFolderDialog::BrowseForFolder(std::string_view prompt) {
  QFileDialog dialog(nullptr,
                     QString::fromUtf8(prompt.data(), static_cast<qsizetype>(prompt.size())));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  // The dialogs of the desktops can't be kept in front of windows that stay on top.
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return QDir::toNativeSeparators(dialog.selectedFiles().constFirst()).toStdString();
}

}  // namespace velumar
