#include "resultchart/chart_file.h"

#include <QIODevice>
#include <functional>
#include <stdexcept>

#include "resultchart/report.h"
#include "resultchart/result_plot.h"
#include "support/full_disk.h"
#include "support/matchers.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

// Saves over an older file and expects an error that names it, and the folder unchanged.
void Refuse(const std::string& name, const std::string& why,
            const std::function<void(const QString&)>& save) {
  const ScratchFolder folder;
  folder.Write(name, "old");
  EXPECT_THAT(
      [&] { save(QString::fromStdString(folder.Sub(name))); },
      ThrowsMessage<std::runtime_error>(AllOf(HasSubstr(folder.Sub(name)), HasSubstr(why))));
  EXPECT_EQ(folder.Read(name), "old");
  EXPECT_EQ(folder.Names().size(), 1U) << name;
}

TEST(SavedFile, StaysAsItWasWhenTheDiskIsFull) {
  ResultPlot plot;
  const auto chart = [&](const QString& file) {
    const FullDisk full(1000);
    SaveChartFile(plot, QSize(400, 300), file);
  };
  for (const QString& ending : PictureFileEndings()) {
    Refuse("chart." + ending.toStdString(), "File too large", chart);
  }
  Refuse("report.pdf", "File too large", [](const QString& file) {
    const FullDisk full(1000);
    SaveReport({}, file);
  });
}

TEST(SavedFile, StaysAsItWasWhenTheDrawingFails) {
  Refuse("chart.svg", "no more ink", [](const QString& file) {
    SaveWhole(file, [](QIODevice& device) {
      device.write("half a chart");
      throw std::runtime_error("no more ink");
    });
  });
}

TEST(SavedFile, HasTheEndingOfItsKind) {
  ResultPlot plot;
  Refuse("r.txt", "saved as .pdf", [](const QString& file) { SaveReport({}, file); });
  Refuse("c.gif", "saved as .bmp",
         [&](const QString& file) { SaveChartFile(plot, QSize(40, 30), file); });
  const ScratchFolder folder;
  SaveChartFile(plot, QSize(40, 30), QString::fromStdString(folder.Sub("CHART.PNG")));
  EXPECT_EQ(folder.Read("CHART.PNG").substr(1, 3), "PNG");
}

}  // namespace
}  // namespace velumar
