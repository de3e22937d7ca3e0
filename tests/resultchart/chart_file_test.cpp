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
  constexpr rlim_t kRoom = 1000;
  ResultPlot plot;
  for (const QString& ending : ChartFileEndings()) {
    Refuse(
        "chart." + ending.toStdString(),
        [&](const QString& file) {
          const FullDisk full(kRoom);
          SaveChartFile(plot, QSize(400, 300), file);
        },
        "File too large");
  }
  Refuse(
      "report.pdf",
      [&](const QString& file) {
        const FullDisk full(kRoom);
        SaveReport({}, file);
      },
      "File too large");
}

TEST_F(SavedFile, StaysAsItWasWhenTheDrawingFails) {
  const auto half = [](QIODevice& device) {
    device.write("half a chart");
    throw std::runtime_error("no more ink");
  };
  Refuse(
      "chart.svg", [&](const QString& file) { SaveWhole(file, half); }, "no more ink");
}

TEST_F(SavedFile, KeepsItsPermissionsAndItsLink) {
  const fs::path file = folder_ / "real.txt";
  std::ofstream(file) << "old";
  fs::permissions(file, fs::perms::owner_all);
  fs::create_symlink("real.txt", folder_ / "link.txt");
  SaveWhole(QString::fromStdString((folder_ / "link.txt").string()),
            [](QIODevice& device) { device.write("new chart"); });
  EXPECT_EQ(fs::file_size(file), 9U);
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_all);
  EXPECT_TRUE(fs::is_symlink(folder_ / "link.txt"));
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
