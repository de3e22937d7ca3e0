#include "resultchart/chart_file.h"

#include <gmock/gmock.h>

#include <QIODevice>
#include <functional>
#include <stdexcept>

#include "resultchart/report.h"
#include "resultchart/result_plot.h"
#include "support/full_disk.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

using testing::AllOf;
using testing::HasSubstr;

// Saves over an older file and expects an error that names it, and the folder unchanged.
void Refuse(const std::string& name, const std::function<void(const QString&)>& save,
            const std::string& why) {
  const ScratchFolder folder;
  folder.Write(name, "old");
  try {
    save(QString::fromStdString(folder.Sub(name)));
    ADD_FAILURE() << name << " was saved";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), AllOf(HasSubstr(folder.Sub(name)), HasSubstr(why)));
  }
  EXPECT_EQ(folder.Read(name), "old");
  EXPECT_EQ(folder.Names().size(), 1U) << name;
}

TEST(SavedFile, StaysAsItWasWhenTheDiskIsFull) {
  ResultPlot plot;
  const auto chart = [&](const QString& file) {
    const FullDisk full(1000);
    SaveChartFile(plot, QSize(400, 300), file);
  };
  for (const QString& ending : ChartFileEndings()) {
    Refuse("chart." + ending.toStdString(), chart, "File too large");
  }
  const auto report = [](const QString& file) {
    const FullDisk full(1000);
    SaveReport({}, file);
  };
  Refuse("report.pdf", report, "File too large");
}

TEST(SavedFile, StaysAsItWasWhenTheDrawingFails) {
  const auto half = [](QIODevice& device) {
    device.write("half a chart");
    throw std::runtime_error("no more ink");
  };
  Refuse(
      "chart.svg", [&](const QString& file) { SaveWhole(file, half); }, "no more ink");
}

TEST(SavedFile, HasTheEndingOfItsKind) {
  ResultPlot plot;
  Refuse(
      "r.txt", [&](const QString& file) { SaveReport({}, file); }, "a report is saved as .pdf");
  Refuse(
      "c.gif", [&](const QString& file) { SaveChartFile(plot, QSize(40, 30), file); },
      "a chart is saved as .bmp");
}

}  // namespace
}  // namespace velumar
