#include "app/services/qt_dialogs.h"

#include <QClipboard>
#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QStandardPaths>
#include <utility>

#include "app/services/qt_message_boxes.h"
#include "app/theme/theme.h"
#include "base/ignoring.h"

namespace velumar {

namespace {

constexpr std::string_view kSaveFolder = "SaveFolder";

// In front of windows that stay on top, which the dialogs of the desktops can't be.
template <typename Dialog>
void KeepInFront(Dialog& dialog) {
  dialog.setOption(Dialog::DontUseNativeDialog);
  dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
}

// The first glob of a filter such as "Pictures (*.bmp)".
QString EndingOf(const QString& filter) {
  return filter.section(QStringLiteral("*."), -1).chopped(1);
}

// The dialog's own ending stands behind any name without one of these: "run v1.5" has none yet.
QString WithEnding(QString file, const std::vector<FileForm>& forms, const QString& ending) {
  for (const FileForm& form : forms) {
    if (file.endsWith(QLatin1Char('.') + QString::fromStdString(form.ending), Qt::CaseInsensitive))
      return file;
  }
  return file + QLatin1Char('.') + ending;
}

bool MayBeLost(const QString& file) {
  const std::string question =
      QFileInfo(file).fileName().toStdString() + " exists already. Replace it?";
  return QtMessageBoxes().Ask(question, {"Replace", "Cancel"}) == 0;
}

}  // namespace

std::string QtFolderDialog::BrowseForFolder(std::string_view prompt) {
  QFileDialog dialog(nullptr, QString::fromUtf8(prompt));
  KeepInFront(dialog);
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return QDir::toNativeSeparators(dialog.selectedFiles().constFirst()).toStdString();
}

QString QtSaveDialog::Folder() const {
  const QString kept = QString::fromStdString(settings_.Read(kSaveFolder).value_or(""));
  for (const QString& folder : {folder_, kept}) {
    if (!folder.isEmpty() && QFileInfo(folder).isDir()) return folder;
  }
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

void QtSaveDialog::KeepFolderOf(const QString& file) {
  const QString folder = QFileInfo(file).absolutePath();
  if (folder == std::exchange(folder_, folder)) return;
  IgnoringErrors([&] { settings_.Save(kSaveFolder, folder.toStdString()); });
}

std::optional<std::string> QtSaveDialog::ChooseFile(const std::vector<FileForm>& forms,
                                                    std::string_view suggestion) {
  QFileDialog dialog(nullptr, QStringLiteral("Save As"), Folder());
  KeepInFront(dialog);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  QStringList filters;
  for (const FileForm& form : forms) filters.append(QString::fromStdString(form.title));
  dialog.setNameFilters(filters);
  dialog.setDefaultSuffix(QString::fromStdString(forms.front().ending));
  dialog.selectFile(QString::fromUtf8(suggestion));
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                   [&dialog](const QString& chosen) { dialog.setDefaultSuffix(EndingOf(chosen)); });
  while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
    const QString typed = dialog.selectedFiles().constFirst();
    const QString file = WithEnding(typed, forms, EndingOf(dialog.selectedNameFilter()));
    if (file != typed && QFileInfo::exists(file) && !MayBeLost(file)) continue;
    KeepFolderOf(file);
    return QDir::toNativeSeparators(file).toStdString();
  }
  return std::nullopt;
}

std::optional<std::uint32_t> QtColourDialog::ChooseColour(std::uint32_t present) {
  QColorDialog dialog(ToQColor(present));
  KeepInFront(dialog);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  const QColor chosen = dialog.selectedColor();
  return static_cast<std::uint32_t>(chosen.red() | chosen.green() << 8 | chosen.blue() << 16);
}

void QtClipboard::SetText(std::string_view text) {
  QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
}

}  // namespace velumar
