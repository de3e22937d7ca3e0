#include "resultchart/chart_file.h"

#include <gmock/gmock.h>

#include <QIODevice>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>

#include "resultchart/report_pages.h"
#include "resultchart/result_plot.h"
#include "support/full_disk.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;

// A folder with one file of an earlier day in it.
class SavedFile : public testing::Test {
 protected:
  ~SavedFile() override { fs::remove_all(folder_); }

  // Saves over an older file and expects an error that names it, and the folder unchanged.
  void Refuse(const std::string& name, const std::function<void(const QString&)>& save,
              const std::string& why) {
    const fs::path file = folder_ / name;
    std::ofstream(file) << "old";
    try {
      save(QString::fromStdString(file.string()));
      ADD_FAILURE() << name << " was saved";
    } catch (const std::runtime_error& error) {
      EXPECT_THAT(error.what(), AllOf(HasSubstr(file.string()), HasSubstr(why)));
    }
    std::string kept;
    std::ifstream(file) >> kept;
    EXPECT_EQ(kept, "old") << name;
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()), 1) << name;
    fs::remove(file);
  }

  fs::path folder_ = FreshFolder();
};

TEST_F(SavedFile, StaysAsItWasWhenTheDiskIsFull) {
  ResultPlot plot;
  const auto on_full_disk = [](const auto& save) {
    return [save](const QString& file) {
      const FullDisk full(1000);
      save(file);
    };
  };
  const auto chart = [&](const QString& file) { SaveChartFile(plot, QSize(400, 300), file); };
  for (const QString& ending : ChartFileEndings()) {
    Refuse("chart." + ending.toStdString(), on_full_disk(chart), "File too large");
  }
  const auto report = [](const QString& file) { SaveReport({}, file); };
  Refuse("report.pdf", on_full_disk(report), "File too large");
}

TEST_F(SavedFile, StaysAsItWasWhenTheDrawingFails) {
  const auto half = [](QIODevice& device) {
    device.write("half a chart");
    throw std::runtime_error("no more ink");
  };
  Refuse(
      "chart.svg", [&](const QString& file) { SaveWhole(file, half); }, "no more ink");
}

TEST_F(SavedFile, HasTheEndingOfItsKind) {
  ResultPlot plot;
  Refuse(
      "r.txt", [&](const QString& file) { SaveReport({}, file); }, "a report is saved as .pdf");
  Refuse(
      "c.gif", [&](const QString& file) { SaveChartFile(plot, QSize(40, 30), file); },
      "a chart is saved as .bmp");
}

}  // namespace
}  // namespace velumar
