#include "charthost/view/journal_pictures.h"

#include <QBuffer>
#include <QImageReader>
#include <QTimer>
#include <exception>
#include <utility>

#include "base/paths.h"
#include "base/raw_file.h"
#include "base/whole_file.h"
#include "charthost/view/chart_pane.h"
#include "charthost/view/chart_plot.h"
#include "charts/qt_text.h"
#include "platform/journal_picture.h"

namespace velumar {
namespace {

constexpr qsizetype kMostBytes = 200 * 1000;
constexpr double kMostPixels = 1920;  // across

// Marks the pictures that this program has written.
const QString kWriterKey = QStringLiteral("Software");
const QString kWriter = QStringLiteral("Velumar");

QImage Painted(ChartPane& chart) {
  chart.Plot().replot(QCustomPlot::rpQueuedRefresh);
  PlotPicture picture = chart.AsPicture();
  picture.scale = std::min(picture.scale, kMostPixels / std::max(1, picture.size.width()));
  return BitmapOf(picture);
}

QByteArray Png(QImage image) {
  image.setText(kWriterKey, kWriter);
  QBuffer buffer;
  if (!image.save(&buffer, "PNG")) throw std::runtime_error("the picture could not be written");
  return buffer.data();
}

QByteArray SmallPng(QImage image) {
  constexpr double kStep = 0.8;
  QByteArray bytes = Png(image);
  while (bytes.size() > kMostBytes) {
    image = image.scaledToWidth(static_cast<int>(image.width() * kStep), Qt::SmoothTransformation);
    bytes = Png(image);
  }
  return bytes;
}

bool MayWrite(const std::filesystem::path& file) {
  std::error_code none;
  if (!std::filesystem::exists(std::filesystem::symlink_status(file, none))) return true;
  if (IsLink(file)) return false;
  return QImageReader(QString::fromStdString(PathText(file)), "png").text(kWriterKey) == kWriter;
}

void Save(const QImage& image, const std::filesystem::path& file) {
  try {
    std::filesystem::create_directory(file.parent_path());
    if (!MayWrite(file)) {
      throw std::runtime_error(PathText(file) + ": this file is no picture of a journal");
    }
    const QByteArray bytes = SmallPng(image);
    ReplaceWholeFile(file, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
  } catch (const std::exception& failure) {
    qWarning("%s", failure.what());
  }
}

}  // namespace

JournalPictures::JournalPictures() { writer_.setMaxThreadCount(1); }

JournalPictures::~JournalPictures() { TakeWaiting(); }

bool JournalPictures::Take(ChartPane& chart, const std::string& file) {
  const std::filesystem::path path = NativePath(file);
  if (!IsJournalPicture(path)) return false;
  file_ = path;
  waiting_ = &chart;
  QTimer::singleShot(0, this, &JournalPictures::TakeWaiting);
  return true;
}

void JournalPictures::TakeWaiting() {
  ChartPane* const chart = std::exchange(waiting_, nullptr);
  if (chart == nullptr) return;
  writer_.start([image = Painted(*chart), file = file_] { Save(image, file); });
}

}  // namespace velumar
