#include "app/services/desktop_services.h"

#include <QPrinter>
#include <QPrinterInfo>
#include <QtWidgets>
#include <algorithm>
#include <stdexcept>
#include <utility>

#include "app/theme/theme.h"
#include "app/theme/typed_date_edit.h"
#include "base/ignoring.h"
#include "charts/qt_text.h"
#include "forms/form.h"
#include "resultchart/coach_file.h"
#include "resultchart/report.h"

namespace velumar {

namespace {

QMessageBox::Icon QtIcon(BoxIcon icon) {
  if (icon == BoxIcon::kInformation) return QMessageBox::Information;
  return icon == BoxIcon::kExclamation ? QMessageBox::Warning : QMessageBox::NoIcon;
}

// In front of the windows, which stay on top too.
void SetUp(QMessageBox& box) {
  box.setWindowFlag(Qt::WindowStaysOnTopHint);
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
}

constexpr std::string_view kSaveFolder = "SaveFolder";

// In front of the windows, which stay on top; the desktop's own dialogs would be behind them.
template <typename Dialog>
void KeepInFront(Dialog& dialog) {
  dialog.setOption(Dialog::DontUseNativeDialog);
  dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
}

// "bmp" for a filter such as "Pictures (*.bmp)".
QString ExtensionOf(const QString& filter) {
  return filter.section(QStringLiteral("*."), -1).chopped(1);
}

// Adds the extension unless the name ends with one of the known ones: "run v1.5" has none yet.
QString WithExtension(const QString& file, const std::vector<FileForm>& forms,
                      const QString& extension) {
  for (const FileForm& form : forms) {
    if (file.endsWith(QLatin1Char('.') + ToQt(form.ending), Qt::CaseInsensitive)) return file;
  }
  return file + QLatin1Char('.') + extension;
}

bool MayReplace(const QString& file) {
  const std::string question =
      QFileInfo(file).fileName().toStdString() + " already exists. Replace it?";
  return QtMessageBoxes().Ask(question, {"Replace", "Cancel"}) == 0;
}

constexpr int kMedium = -3;

int DotsPerInch(int quality) {
  if (quality > kMedium) return 150;
  return quality == kMedium ? 300 : 600;
}

}  // namespace

void QtMessageBoxes::Show(std::string_view text, BoxIcon icon) {
  ShowTitled("Velumar", text, icon);
}

void QtMessageBoxes::ShowTitled(std::string_view title, std::string_view text, BoxIcon icon) {
  QMessageBox box(QtIcon(icon), ToQt(title), ToQt(text), QMessageBox::Ok);
  SetUp(box);
  box.exec();
}

std::size_t QtMessageBoxes::Ask(std::string_view text, const std::vector<std::string>& answers) {
  QMessageBox box(QMessageBox::Question, QStringLiteral("Velumar"), ToQt(text));
  std::vector<QAbstractButton*> buttons;
  buttons.reserve(answers.size());
  for (const std::string& answer : answers) {
    buttons.push_back(box.addButton(ToQt(answer), QMessageBox::ActionRole));
  }
  auto* const safest = static_cast<QPushButton*>(buttons.back());
  box.setDefaultButton(safest);
  box.setEscapeButton(safest);
  SetUp(box);
  box.exec();
  const auto clicked = std::find(buttons.begin(), buttons.end(), box.clickedButton());
  return clicked == buttons.end() ? answers.size() - 1
                                  : static_cast<std::size_t>(clicked - buttons.begin());
}

std::string QtFolderDialog::BrowseForFolder(std::string_view prompt) {
  QFileDialog dialog(nullptr, ToQt(prompt));
  KeepInFront(dialog);
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return QDir::toNativeSeparators(dialog.selectedFiles().constFirst()).toStdString();
}

QString QtSaveDialog::Folder() const {
  const QString saved = ToQt(settings_.Read(kSaveFolder).value_or(""));
  for (const QString& folder : {folder_, saved}) {
    if (!folder.isEmpty() && QFileInfo(folder).isDir()) return folder;
  }
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

std::optional<std::string> QtSaveDialog::ChooseFile(const std::vector<FileForm>& forms,
                                                    std::string_view suggestion) {
  QFileDialog dialog(nullptr, QStringLiteral("Save As"), Folder());
  KeepInFront(dialog);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  QStringList filters;
  for (const FileForm& form : forms) filters.append(ToQt(form.title));
  dialog.setNameFilters(filters);
  dialog.setDefaultSuffix(ToQt(forms.front().ending));
  dialog.selectFile(ToQt(suggestion));
  QObject::connect(
      &dialog, &QFileDialog::filterSelected, &dialog,
      [&dialog](const QString& chosen) { dialog.setDefaultSuffix(ExtensionOf(chosen)); });
  while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
    const QString typed = dialog.selectedFiles().constFirst();
    const QString file = WithExtension(typed, forms, ExtensionOf(dialog.selectedNameFilter()));
    if (file != typed && QFileInfo::exists(file) && !MayReplace(file)) continue;
    const QString folder = QFileInfo(file).absolutePath();
    if (folder != std::exchange(folder_, folder)) {
      IgnoringErrors([&] { settings_.Save(kSaveFolder, folder.toStdString()); });
    }
    return QDir::toNativeSeparators(file).toStdString();
  }
  return std::nullopt;
}

std::optional<std::int32_t> QtMessageBoxes::AskDate(std::string_view text, std::int32_t first,
                                                    std::int32_t last, std::int32_t present) {
  QDialog box;
  box.setWindowFlag(Qt::WindowStaysOnTopHint);
  box.setWindowTitle(QStringLiteral("Velumar"));
  auto* const day = new TypedDateEdit(&box);
  day->UseFormat(date_format_);
  day->clearMinimumDate();
  day->setDate(ToQDate(present));
  auto* const label = new QLabel(ToQt(text), &box);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &box);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &box, &QDialog::reject);
  auto* const layout = new QVBoxLayout(&box);
  for (QWidget* const part :
       {static_cast<QWidget*>(label), static_cast<QWidget*>(day), static_cast<QWidget*>(buttons)}) {
    layout->addWidget(part);
  }
  day->setFocus();
  if (box.exec() != QDialog::Accepted) return std::nullopt;
  return std::clamp(ToDateNumber(day->date()), first, last);
}

std::optional<std::uint32_t> QtColourDialog::ChooseColour(std::uint32_t current) {
  QColorDialog dialog(ToQColor(current));
  KeepInFront(dialog);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  const QColor chosen = dialog.selectedColor();
  return static_cast<std::uint32_t>(chosen.red() | chosen.green() << 8 | chosen.blue() << 16);
}

float QtScreen::WidthTwips() const {
  return static_cast<float>(QGuiApplication::primaryScreen()->geometry().width()) * kTwipsPerPixel;
}

float QtScreen::HeightTwips() const {
  return static_cast<float>(QGuiApplication::primaryScreen()->geometry().height()) * kTwipsPerPixel;
}

bool QtScreen::Shows(float left, float top, float width, float height) const {
  constexpr double kGrip = 24;  // logical pixels, enough to take hold of the window
  const QPointF origin = QGuiApplication::primaryScreen()->geometry().topLeft();
  const QRectF window(origin + QPointF(left, top) / kTwipsPerPixel,
                      QSizeF(width, height) / kTwipsPerPixel);
  const auto screens = QGuiApplication::screens();
  return std::any_of(screens.begin(), screens.end(), [&](const QScreen* screen) {
    const QRectF seen = QRectF(screen->geometry()).intersected(window);
    return seen.width() >= kGrip && seen.height() >= kGrip;
  });
}

void QtClipboard::SetText(std::string_view text) {
  QGuiApplication::clipboard()->setText(ToQt(text));
}

void PrintOnPaper(int quality, const std::function<void(QPagedPaintDevice& device)>& print) {
  QPrinter printer(QPrinter::HighResolution);
  printer.setFullPage(true);
  printer.setResolution(DotsPerInch(quality));
  const auto fail = [&printer](const std::string& why) {
    const std::string name = printer.printerName().toStdString();
    throw std::runtime_error("The printer " + (name.empty() ? name : name + " ") + why);
  };
  if (!printer.isValid()) fail("can't be used.");
  try {
    print(printer);
  } catch (const std::runtime_error& error) {
    fail(std::string("failed: ") + error.what() + ".");
  }
  if (printer.printerState() == QPrinter::Error) fail("reports an error.");
}

bool QtPrinters::Any() const { return !QPrinterInfo::availablePrinterNames().isEmpty(); }

void QtPrinters::PrintReport(LedgerScope scope, const std::string& pdf_file) {
  const Report report = ReadReport(ledger_, scope);
  if (pdf_file.empty()) {
    PrintOnPaper(kMedium, [&](QPagedPaintDevice& device) { velumar::PrintReport(report, device); });
  } else {
    SaveReport(report, ToQt(pdf_file));
  }
}

void QtPrinters::SaveCoachReport(const CoachReport& report, const std::string& file) {
  velumar::SaveCoachReport(report, ToQt(file));
}

}  // namespace velumar
