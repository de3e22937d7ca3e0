#include "charthost/view/picture_dialog.h"

#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPointer>
#include <exception>

#include "charthost/view/chart_pane.h"
#include "charts/picture_file.h"

namespace velumar {
namespace {

void Save(ChartPane& chart, const QString& file, QWidget& parent) {
  try {
    SavePicture(chart.AsPicture(), file);
  } catch (const std::exception& failure) {
    auto* const box = new QMessageBox(QMessageBox::Warning, QObject::tr("Save picture"),
                                      QString::fromUtf8(failure.what()), QMessageBox::Ok, &parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
  }
}

// "PNG (*.png)", the usual format first.
QStringList Filters() {
  QStringList filters;
  for (const QString& ending : PictureFileEndings()) {
    const QString filter = QStringLiteral("%1 (*.%2)").arg(ending.toUpper(), ending);
    if (ending == u"png") {
      filters.prepend(filter);
    } else {
      filters.append(filter);
    }
  }
  return filters;
}

}  // namespace

void CopyPicture(ChartPane& chart) {
  QGuiApplication::clipboard()->setImage(BitmapOf(chart.AsPicture()));
}

void AskForPictureFile(ChartPane& chart, QWidget& parent) {
  auto* const dialog = new QFileDialog(&parent, QObject::tr("Save picture"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setNameFilters(Filters());
  dialog->setDefaultSuffix(QStringLiteral("png"));
  dialog->selectFile(chart.Title() + QStringLiteral(".png"));
  QObject::connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString& filter) {
    dialog->setDefaultSuffix(filter.section(u' ', 0, 0).toLower());
  });
  QObject::connect(dialog, &QFileDialog::fileSelected, &parent,
                   [chart = QPointer(&chart), &parent](const QString& file) {
                     if (chart != nullptr) Save(*chart, file, parent);
                   });
  dialog->show();
}

}  // namespace velumar
